// A sheet's description and its pictures: whatever the text says, building a set from it comes to
// an end, and what it plays can be played.

#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "body/Sheets.h"
#include "codecs/Xml.h"

namespace {

using namespace quibbits;

/// Every image exists and is of one small size.
class AnySheet final : public Resources {
public:
    explicit AnySheet(std::string_view text) : events_(xmlEvents(text)) {}
    std::optional<PixelSize> imageSize(std::string_view) const override {
        return PixelSize{24, 16};
    }
    Image imageRows(std::string_view, int first, int count) const override {
        const int height = std::min(count, 16 - first);
        if (first < 0 || height <= 0) return {};
        return Image::fromArgb(24, height, std::vector<Argb>(24u * 16u, 0xff00ff00u));
    }
    std::optional<std::vector<XmlEvent>> xml(std::string_view) const override { return events_; }

private:
    std::vector<XmlEvent> events_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const AnySheet sheet({reinterpret_cast<const char*>(data), size});
    const Sheets sheets(sheet, "any", {{"nap", {"Sleep"}}});
    for (const NamedAnim& each : sheets.all) {
        if (each.anim.duration < 0 || each.anim.frames.size() > 5000) std::abort();
    }
    return 0;
}
