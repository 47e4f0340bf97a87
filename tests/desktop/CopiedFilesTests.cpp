// What is selected in another program's window, found out by its own copy command.

#include "XTest.h"
#include "desktop/x11/CopiedFiles.h"

namespace quibbits {
namespace {

using Files = x11::CopiedFiles::Files;

// Key codes of the usual keyboard.
constexpr int super = 133, alt = 64, letterC = 54;

struct CopiedFilesTest : XTest {
    void SetUp() override {
        XTest::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        connect();
        manager = x11::Connection::open(loop, desktop->display());
        managersClipboard = std::make_unique<x11::Clipboard>(*manager);
        editor = x11::Connection::open(loop, desktop->display());
        editorsClipboard = std::make_unique<x11::Clipboard>(*editor);
        copying = std::make_unique<x11::CopiedFiles>(*connection);
        openManager();
    }
    void TearDown() override {
        copying.reset();
        managersClipboard.reset();
        editorsClipboard.reset();
        XTest::TearDown();
    }
    /// A window that has the keyboard and answers Control-C with what is selected in it.
    void openManager() {
        auto* xcb = manager->xcb();
        window = xcb_generate_id(xcb);
        const std::uint32_t events = XCB_EVENT_MASK_KEY_PRESS;
        xcb_create_window(xcb, XCB_COPY_FROM_PARENT, window, manager->root(), 0, 0, 300, 200, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                          &events);
        xcb_map_window(xcb, window);
        xcb_set_input_focus(xcb, XCB_INPUT_FOCUS_NONE, window, XCB_CURRENT_TIME);
        other->setNumbers(manager->root(), "_NET_ACTIVE_WINDOW", XCB_ATOM_WINDOW, {window});
        keys = manager->listen(XCB_KEY_PRESS, [this](const xcb_generic_event_t& event) {
            const auto& key = reinterpret_cast<const xcb_key_press_event_t&>(event);
            if (key.detail != letterC) return;
            states.push_back(key.state & 0xff);
            if (!selected.empty()) managersClipboard->offer({piece(x11::Atom::uriList, selected)});
        });
        xcb_flush(xcb);
        settle();
    }
    x11::Clipboard::Piece piece(x11::Atom form, std::string bytes) const {
        return {manager->atom(form), manager->atom(form), std::move(bytes)};
    }
    void keep(std::string text) {
        editorsClipboard->offer({piece(x11::Atom::utf8String, std::move(text))});
        settle();
    }
    Files read() {
        std::optional<Files> found;
        copying->read([&](const Files& files) { found = files; });
        EXPECT_TRUE(eventually([&] { return found.has_value(); }));
        settle();
        return found.value_or(Files());
    }
    /// What a third program would paste now.
    std::string pasted() {
        const auto reader = x11::Connection::open(loop, desktop->display());
        x11::Clipboard clipboard(*reader);
        std::optional<std::string> text;
        bool isDone = false;
        clipboard.read(x11::Atom::utf8String, [&](const std::optional<std::string>& found) {
            text = found;
            isDone = true;
        });
        EXPECT_TRUE(eventually([&] { return isDone; }));
        return text.value_or("nothing");
    }

    std::unique_ptr<x11::Connection> manager, editor;
    std::unique_ptr<x11::Clipboard> managersClipboard, editorsClipboard;
    std::unique_ptr<x11::CopiedFiles> copying;
    xcb_window_t window = 0;
    std::string selected = "file:///tmp/a%20b\r\nfile:///tmp/c\r\n";
    std::vector<int> states;  // of the modifiers, at each press of the letter
    Subscription keys;
};

TEST_F(CopiedFilesTest, AreToldAndTheClipboardHoldsWhatItHeldBefore) {
    keep("kept");
    for (int time = 0; time < 2; ++time) {
        EXPECT_EQ(read(), (std::vector<std::string>{"/tmp/a b", "/tmp/c"}));
        EXPECT_EQ(pasted(), "kept");
    }
    EXPECT_EQ(states, (std::vector<int>{XCB_MOD_MASK_CONTROL, XCB_MOD_MASK_CONTROL}));
    keep("newer");
    EXPECT_EQ(pasted(), "newer");
    read();
    EXPECT_EQ(pasted(), "newer");
}

TEST_F(CopiedFilesTest, AreAskedForWhenTheUserHoldsNoKeyAnyMore) {
    for (const int key : {super, alt}) other->key(key, true);
    settle();
    Files found;
    copying->read([&](const Files& files) { found = files; });
    turnFor(0.3);
    EXPECT_TRUE(states.empty());
    for (const int key : {super, alt}) other->key(key, false);
    EXPECT_TRUE(eventually([&] { return found.has_value(); }));
    EXPECT_EQ(found->size(), 2u);
    EXPECT_EQ(states, std::vector<int>{XCB_MOD_MASK_CONTROL});
}

TEST_F(CopiedFilesTest, AreNoneWhereNothingIsSelected) {
    keep("kept");
    selected.clear();
    EXPECT_EQ(read(), std::vector<std::string>());
    EXPECT_EQ(pasted(), "kept");
}

TEST_F(CopiedFilesTest, AreNotAskedForWhereThatWouldHarm) {
    // More than could be put back.
    keep(std::string(5'000'000, 'x'));
    EXPECT_EQ(read(), std::nullopt);
    // Another window, to which the keys might mean something else.
    keep("kept");
    other->key(super, true);
    settle();
    std::optional<Files> found;
    copying->read([&](const Files& files) { found = files; });
    other->setNumbers(manager->root(), "_NET_ACTIVE_WINDOW", XCB_ATOM_WINDOW, {window + 1});
    other->key(super, false);
    EXPECT_TRUE(eventually([&] { return found.has_value(); }));
    EXPECT_EQ(*found, std::nullopt);
    // Keys that are never let go of.
    other->key(super, true);
    settle();
    EXPECT_EQ(read(), std::nullopt);
    other->key(super, false);
    EXPECT_TRUE(states.empty());
}

}  // namespace
}  // namespace quibbits
