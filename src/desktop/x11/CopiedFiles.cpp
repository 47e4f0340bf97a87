#include "desktop/x11/CopiedFiles.h"

#include <xcb/xtest.h>

#include <algorithm>
#include <utility>

#include "desktop/x11/DropData.h"
#include "desktop/x11/Properties.h"

namespace quibbits::x11 {
namespace {

constexpr Seconds betweenLooks = 0.02;
constexpr Seconds longestHold = 1.2;  // of the keys that asked for this
constexpr Seconds longestCopying = 0.6;
constexpr std::uint32_t letterC = 0x63, controlLeft = 0xffe3;

}  // namespace

CopiedFiles::CopiedFiles(Connection& connection)
    : connection_(connection), clipboard_(connection) {}

void CopiedFiles::read(Done done) {
    done_ = std::move(done);
    window_ = windowInFront();
    givenUp_ = connection_.loop().now() + longestHold;
    waitForHands();
}

/// A key that is held would make another command of it.
void CopiedFiles::waitForHands() {
    if (isAnyKeyDown()) {
        if (connection_.loop().now() > givenUp_) return end(std::nullopt);
        next_ = connection_.loop().timer(betweenLooks, [this] { waitForHands(); });
        return;
    }
    clipboard_.readAll([this](std::optional<Clipboard::Contents> before) {
        if (!before) return end(std::nullopt);
        before_ = *std::move(before);
        press();
    });
}

void CopiedFiles::press() {
    const auto control = codeOf(controlLeft);
    const auto letter = codeOf(letterC);
    const bool mayPress = connection_.xfixes && control != 0 && letter != 0 && window_ &&
                          window_ == windowInFront() && !isAnyKeyDown();
    if (!mayPress) return end(std::nullopt);
    taken_ = clipboard_.taken.subscribe([this] { copied(); });
    next_ = connection_.loop().timer(longestCopying, [this] { end(std::vector<std::string>()); });
    auto* xcb = connection_.xcb();
    const auto key = [&](std::uint8_t way, xcb_keycode_t code) {
        xcb_test_fake_input(xcb, way, code, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
    };
    key(XCB_KEY_PRESS, control);
    key(XCB_KEY_PRESS, letter);
    key(XCB_KEY_RELEASE, letter);
    key(XCB_KEY_RELEASE, control);
    xcb_flush(xcb);
}

void CopiedFiles::copied() {
    taken_.reset();
    next_.cancel();
    clipboard_.read(Atom::uriList, [this](const std::optional<std::string>& list) {
        clipboard_.offer(std::exchange(before_, {}));
        end(list ? filesOfUriList(*list) : std::vector<std::string>());
    });
}

void CopiedFiles::end(const Files& files) {
    taken_.reset();
    next_.cancel();
    before_.clear();
    if (const auto done = std::exchange(done_, nullptr)) done(files);
}

bool CopiedFiles::isAnyKeyDown() const {
    auto* xcb = connection_.xcb();
    const auto keys = reply(xcb, xcb_query_keymap_reply, xcb_query_keymap(xcb));
    return !keys || std::ranges::any_of(keys->keys, [](std::uint8_t eight) { return eight != 0; });
}

std::optional<std::uint32_t> CopiedFiles::windowInFront() const {
    return propertyOf(connection_, connection_.root(), Atom::activeWindow).number();
}

xcb_keycode_t CopiedFiles::codeOf(std::uint32_t symbol) const {
    auto* xcb = connection_.xcb();
    const auto* setup = xcb_get_setup(xcb);
    const auto count = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
    const auto keys = reply(xcb, xcb_get_keyboard_mapping_reply,
                            xcb_get_keyboard_mapping(xcb, setup->min_keycode, count));
    if (!keys || keys->keysyms_per_keycode == 0) return 0;
    const xcb_keysym_t* first = xcb_get_keyboard_mapping_keysyms(keys.get());
    const xcb_keysym_t* last = first + xcb_get_keyboard_mapping_keysyms_length(keys.get());
    const auto* found = std::find(first, last, symbol);
    if (found == last) return 0;
    return static_cast<xcb_keycode_t>(setup->min_keycode +
                                      (found - first) / keys->keysyms_per_keycode);
}

}  // namespace quibbits::x11
