// Paths and lists that must name the right file or none.
#include <gtest/gtest.h>

#include "TemporaryFolder.h"
#include "XTest.h"
#include "desktop/files/DiskFiles.h"

namespace quibbits {
namespace {

namespace fs = std::filesystem;

TEST(APathBehindALink, NamesWhatTheSystemFindsThere) {
    const TemporaryFolder folder;
    DiskFiles files(folder / "Trash");
    write(folder / "a/note.txt", "beside the link");
    write(folder / "x/note.txt", "beside what it leads to");
    fs::create_directories(folder / "x/y");
    fs::create_directory_symlink(folder / "x/y", folder / "a/link");
    EXPECT_TRUE(files.moveToTrash((folder / "a/link/../note.txt").native()));
    EXPECT_TRUE(fs::exists(folder / "a/note.txt"));
    EXPECT_FALSE(fs::exists(folder / "x/note.txt"));
    for (const char* path : {"a/link/..", "a/.", "a/link/../nothing"}) {
        EXPECT_FALSE(files.moveToTrash((folder / path).native())) << path;
    }
    EXPECT_TRUE(fs::exists(folder / "x/y"));
}

TEST(AFile, IsAnotherOnceItIsWrittenToOrReplaced) {
    const TemporaryFolder folder;
    const DiskFiles files(folder / "Trash");
    const auto print = [&](const char* name) {
        return files.fingerprint((folder / name).native());
    };
    write(folder / "a", "text");
    const auto before = print("a");
    EXPECT_FALSE(before.empty());
    EXPECT_EQ(print("a"), before);
    write(folder / "a", "longer text");
    EXPECT_NE(print("a"), before);
    fs::create_directories(folder / "folder");
    fs::create_symlink("a", folder / "link");
    for (const char* name : {"folder", "link", "nothing"}) EXPECT_EQ(print(name), "") << name;
}

/// A panel that takes every drop, and a program that drops a list of files.
struct LongDrop : XTest {
    void SetUp() override {
        XTest::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        desktop->startWindowManager();
        connect();
        panel = panels->makePanel({.frame = screens->main()->frame, .acceptsDrops = true});
        panel->onDragOver = [](const DragInfo&) { return true; };
        panel->onDrop = [this](const DragInfo& drag) {
            files = drag.files;
            return true;
        };
        panel->orderFront();
        settle();
        target = static_cast<x11::XPanel&>(*panel).window();
        source = other->open({.x = 0, .y = 0, .width = 10, .height = 10});
    }
    /// Drops a text that comes in one piece, however long it is. False when it is refused.
    bool drop(const std::string& list) {
        files.reset();
        other->message(target, "XdndEnter", {source, 5u << 24, other->atom("text/uri-list"), 0, 0});
        other->message(target, "XdndPosition", {source, 0, (300u << 16) | 300u, 0, 0});
        turnFor(0.1);
        other->message(target, "XdndDrop", {source, 0, 0});
        const auto selection = other->atom("XdndSelection");
        xcb_set_selection_owner(other->xcb(), source, selection, XCB_CURRENT_TIME);
        xcb_flush(other->xcb());
        std::optional<bool> taken;
        eventually([&] {
            while (auto* event = other->nextEvent()) {
                if ((event->response_type & 0x7f) == XCB_SELECTION_REQUEST) {
                    answer(*reinterpret_cast<xcb_selection_request_event_t*>(event), list);
                } else if ((event->response_type & 0x7f) == XCB_CLIENT_MESSAGE) {
                    const auto& message = *reinterpret_cast<xcb_client_message_event_t*>(event);
                    if (message.type == other->atom("XdndFinished")) {
                        taken = (message.data.data32[1] & 1) != 0;
                    }
                }
                std::free(event);
            }
            return taken.has_value();
        });
        return taken.value_or(false);
    }
    /// Writes the property as a whole, by as many requests as that takes.
    void answer(const xcb_selection_request_event_t& request, const std::string& list) {
        constexpr std::size_t most = 200'000;
        auto* xcb = other->xcb();
        for (std::size_t at = 0; at < list.size(); at += most) {
            const auto part = list.substr(at, most);
            xcb_change_property(xcb, at == 0 ? XCB_PROP_MODE_REPLACE : XCB_PROP_MODE_APPEND,
                                request.requestor, request.property, request.target, 8,
                                static_cast<std::uint32_t>(part.size()), part.data());
        }
        xcb_selection_notify_event_t note{};
        note.response_type = XCB_SELECTION_NOTIFY;
        note.requestor = request.requestor;
        note.selection = request.selection;
        note.target = request.target;
        note.property = request.property;
        xcb_send_event(xcb, 0, request.requestor, 0, reinterpret_cast<const char*>(&note));
        xcb_flush(xcb);
    }
    static std::string listOf(std::size_t bytes, const std::string& last) {
        std::string list;
        for (int i = 0; list.size() < bytes; ++i) {
            list += "file:///home/somebody/" + std::string(100, 'a') + std::to_string(i) + "\r\n";
        }
        return list + "file://" + last + "\r\n";
    }

    std::unique_ptr<Panel> panel;
    xcb_window_t target = 0, source = 0;
    std::optional<std::vector<std::string>> files;
};

TEST_F(LongDrop, IsReadToItsEndOrRefusedWhole) {
    const std::string last = "/home/somebody/precious/album/holiday.jpg";
    EXPECT_TRUE(drop("file://" + last + "\r\n"));
    EXPECT_EQ(files, std::vector{last});
    EXPECT_TRUE(drop(listOf(3'000'000, last))) << "longer than one answer of the server";
    ASSERT_TRUE(files && files->size() > 20'000);
    EXPECT_EQ(files->back(), last);
    for (std::size_t i = 0; i + 1 < files->size(); ++i) {
        ASSERT_TRUE((*files)[i].ends_with('a' + std::to_string(i))) << (*files)[i];
    }
    EXPECT_FALSE(drop(listOf(9'000'000, last)));
    EXPECT_FALSE(files) << "a part of a list may name other files than the whole";
}

}  // namespace
}  // namespace quibbits
