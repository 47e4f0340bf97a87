#include "desktop/x11/XSettings.h"

#include "desktop/x11/Properties.h"

namespace quibbits::x11 {
namespace {

/// Reads numbers of either byte order and never past the end.
class Bytes {
public:
    explicit Bytes(std::string_view all) : rest_(all) {}

    std::uint32_t number(std::size_t size) {
        std::uint32_t value = 0;
        const auto bytes = take(size);
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            const auto byte = static_cast<unsigned char>(bytes[bigEndian_ ? i : size - 1 - i]);
            value = value << 8 | byte;
        }
        return value;
    }
    std::string_view take(std::size_t size) {
        if (size > rest_.size()) {
            good_ = false;
            return {};
        }
        const auto taken = rest_.substr(0, size);
        rest_.remove_prefix(size);
        return taken;
    }
    void setBigEndian(bool big) { bigEndian_ = big; }
    bool good() const { return good_; }

private:
    std::string_view rest_;
    bool bigEndian_ = false;
    bool good_ = true;
};

constexpr std::size_t padded(std::size_t size) {
    return (size + 3) & ~std::size_t{3};
}

}  // namespace

std::optional<int> integerSetting(std::string_view settings, std::string_view name) {
    enum Type : std::uint32_t { integer = 0, text = 1, color = 2 };
    Bytes bytes(settings);
    bytes.setBigEndian(bytes.number(1) == 1);
    bytes.take(7);  // padding and serial
    const auto count = bytes.number(4);
    for (std::uint32_t i = 0; i < count && bytes.good(); ++i) {
        const auto type = bytes.number(1);
        bytes.take(1);
        const auto length = bytes.number(2);
        const auto key = bytes.take(padded(length)).substr(0, length);
        bytes.take(4);  // serial of the last change
        switch (type) {
            case integer: {
                const auto value = bytes.number(4);
                if (key == name && bytes.good()) return static_cast<int>(value);
                break;
            }
            case text: bytes.take(padded(bytes.number(4))); break;
            case color: bytes.take(8); break;
            default: return std::nullopt;
        }
    }
    return std::nullopt;
}

int windowScalingFactor(const Connection& connection) {
    auto* xcb = connection.xcb();
    const auto owner = reply(xcb, xcb_get_selection_owner_reply,
                             xcb_get_selection_owner(xcb, connection.atom(Atom::xsettingsOwner)));
    if (!owner || owner->owner == XCB_NONE) return 1;
    const auto settings = propertyOf(connection, owner->owner, Atom::xsettings);
    return integerSetting(settings.text(), "Gdk/WindowScalingFactor").value_or(1);
}

}  // namespace quibbits::x11
