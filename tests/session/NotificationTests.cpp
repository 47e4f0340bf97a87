// Notifications through a service on the bus, and without one.

#include <gmock/gmock.h>
#include <systemd/sd-bus.h>

#include "BusTest.h"
#include "desktop/session/BusNotifications.h"
#include "desktop/session/BusValues.h"

namespace quibbits {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Kind = NotificationOutcome::Kind;

constexpr const char* service = "org.freedesktop.Notifications";
constexpr const char* servicePath = "/org/freedesktop/Notifications";

/// What the service was asked to show.
struct Note {
    std::string application, title, body;
    std::uint32_t replaces = 0;
    std::vector<std::string> actions;
    session::BusDictionary hints;
};

class NotificationTest : public BusTest {
protected:
    void startService(std::vector<std::string> abilities, std::uint32_t firstId = 41) {
        if (daemonService) end(daemonService);
        daemonService = serve(service);
        nextId = firstId;
        daemonService->on("GetCapabilities", [abilities](sd_bus_message* call) {
            sd_bus_message* reply = nullptr;
            sd_bus_message_new_method_return(call, &reply);
            sd_bus_message_open_container(reply, 'a', "s");
            for (const auto& each : abilities) sd_bus_message_append(reply, "s", each.c_str());
            sd_bus_message_close_container(reply);
            sd_bus_send(nullptr, reply, nullptr);
            sd_bus_message_unref(reply);
            return 1;
        });
        daemonService->on("Notify", [this](sd_bus_message* call) { return notify(call); });
        daemonService->on("CloseNotification", [this](sd_bus_message* call) {
            closed.push_back(session::readNumber(call).value_or(0));
            return sd_bus_reply_method_return(call, "");
        });
    }
    int notify(sd_bus_message* call) {
        Note note;
        note.application = *session::readText(call);
        note.replaces = *session::readNumber(call);
        session::readText(call);
        note.title = *session::readText(call);
        note.body = *session::readText(call);
        note.actions = session::readTexts(call);
        note.hints = session::readDictionary(call);
        notes.push_back(note);
        if (note.title == "refuse me") {
            return sd_bus_reply_method_errorf(call, "test.Error.Excess", "too many");
        }
        return sd_bus_reply_method_return(call, "u", note.replaces ? note.replaces : nextId++);
    }
    void startNotifications() {
        bus.emplace(loop, place());
        notifications.emplace(loop, *bus);
        notifications->setCategories({{"offer",
                                       {{"keep", "Keep it"}, {"trash", "Throw it away", true}},
                                       "Do it <yourself>."}});
        notifications->onResponse = [this](const auto& response) { responses.push_back(response); };
    }
    /// Sends and waits for the outcome.
    NotificationOutcome send(NotificationRequest request) {
        std::vector<NotificationOutcome> outcomes;
        notifications->send(std::move(request),
                            [&](const auto& outcome) { outcomes.push_back(outcome); });
        EXPECT_TRUE(eventually([&] { return !outcomes.empty(); }));
        letPass(0.05);
        EXPECT_EQ(outcomes.size(), 1U);
        return outcomes.empty() ? NotificationOutcome{Kind::failed, "no outcome"} : outcomes[0];
    }
    void invoke(std::uint32_t id, const std::string& action) {
        daemonService->emit(servicePath, service, "ActionInvoked", [&](sd_bus_message* signal) {
            sd_bus_message_append(signal, "us", id, action.c_str());
        });
        settle(*bus);
    }

    std::unique_ptr<FakeService> daemonService;
    std::optional<session::Bus> bus;
    std::optional<session::BusNotifications> notifications;
    std::uint32_t nextId = 0;
    std::vector<Note> notes;
    std::vector<std::uint32_t> closed;
    std::vector<NotificationResponse> responses;
};

TEST_F(NotificationTest, AnOfferShowsItsButtonsAndTheAnswerBringsItsFiles) {
    daemon.start();
    startService({"body", "actions", "body-markup"});
    startNotifications();
    const NotificationRequest offer{.identifier = "gift",
                                    .title = "A gift",
                                    .body = "<b> & \xff",
                                    .category = "offer",
                                    .pet = "one",
                                    .paths = {"/home/a b"}};
    EXPECT_EQ(send(offer).kind, Kind::shown);
    ASSERT_EQ(notes.size(), 1U);
    EXPECT_EQ(notes[0].application, "Quibbits");
    EXPECT_EQ(notes[0].body, "&lt;b&gt; &amp; \xef\xbf\xbd");
    EXPECT_THAT(notes[0].actions,
                ElementsAre("default", "", "keep", "Keep it", "trash", "Throw it away"));
    EXPECT_EQ(session::valueOf<bool>(notes[0].hints, "suppress-sound"), true);
    EXPECT_EQ(session::valueOf<std::int64_t>(notes[0].hints, "urgency"), 1);

    invoke(40, "keep");       // another program's
    invoke(41, "something");  // never offered
    EXPECT_THAT(responses, IsEmpty());
    invoke(41, "trash");
    invoke(41, "default");
    ASSERT_EQ(responses.size(), 2U);
    EXPECT_EQ(responses[0].action, "trash");
    EXPECT_EQ(responses[0].pet, "one");
    EXPECT_THAT(responses[0].paths, ElementsAre("/home/a b"));
    EXPECT_EQ(responses[1].action, "default");

    daemonService->emit(servicePath, service, "NotificationClosed", [](sd_bus_message* signal) {
        sd_bus_message_append(signal, "uu", 41U, 2U);
    });
    invoke(41, "trash");
    EXPECT_EQ(responses.size(), 2U) << "it was closed";
}

TEST_F(NotificationTest, AnOfferWithoutButtonsSaysWhatToDoAndHasItsEndAtOnce) {
    daemon.start();
    startService({"body", "body-markup"});
    startNotifications();
    send({.identifier = "a", .body = "A & B?", .category = "offer", .paths = {"/a"}});
    send({.identifier = "b", .category = "offer"});
    send({.identifier = "c", .body = "News"});
    ASSERT_EQ(notes.size(), 3U);
    EXPECT_EQ(notes[0].body, "A &amp; B? Do it &lt;yourself&gt;.");
    EXPECT_EQ(notes[1].body, "Do it &lt;yourself&gt;.");
    EXPECT_EQ(notes[2].body, "News");
    ASSERT_EQ(responses.size(), 2U) << "for the two that are offers";
    EXPECT_EQ(responses[0].action, NotificationResponse::closed);
    EXPECT_THAT(responses[0].paths, ElementsAre("/a"));
    notifications->removeOffers();
    settle(*bus);
    EXPECT_THAT(closed, IsEmpty()) << "there is nothing to press";
}

TEST_F(NotificationTest, WhoPutsAnOfferAwayHasAnsweredItAndAtTheEndOpenOnesAreTakenBack) {
    daemon.start();
    startService({"actions"});
    startNotifications();
    const auto end = [&](std::uint32_t id, std::uint32_t reason) {
        daemonService->emit(servicePath, service, "NotificationClosed",
                            [=](sd_bus_message* m) { sd_bus_message_append(m, "uu", id, reason); });
        settle(*bus);
    };
    for (const char* name : {"away", "late", "answered", "open"}) {
        send({.identifier = name, .category = "offer", .paths = {name}});
    }
    send({.identifier = "news"});
    end(41, 2);
    ASSERT_EQ(responses.size(), 1U);
    EXPECT_EQ(responses[0].action, NotificationResponse::closed);
    EXPECT_THAT(responses[0].paths, ElementsAre("away"));
    end(42, 1);  // its time was over
    invoke(43, "keep");
    end(43, 2);  // as services do after a press
    EXPECT_EQ(responses.size(), 2U);
    notifications->removeOffers();
    EXPECT_TRUE(eventually([&] { return !closed.empty(); }));
    settle(*bus);
    EXPECT_THAT(closed, ElementsAre(44U)) << "news has no buttons and stays";
}

TEST_F(NotificationTest, TheSameIdentifierReplacesAndATakenBackOneIsClosed) {
    daemon.start();
    startService({"body"});
    startNotifications();
    int outcomes = 0;
    for (int i = 0; i < 2; ++i) {  // the second before the first is answered
        notifications->send({.identifier = "a", .body = "<", .sound = true},
                            [&](const auto&) { ++outcomes; });
    }
    EXPECT_TRUE(eventually([&] { return outcomes == 2; }));
    send({.identifier = "b"});
    ASSERT_EQ(notes.size(), 3U);
    EXPECT_EQ(notes[0].replaces, 0U);
    EXPECT_EQ(notes[1].replaces, 41U);
    EXPECT_EQ(notes[2].replaces, 0U);
    EXPECT_THAT(notes[0].actions, IsEmpty()) << "the service shows no buttons";
    EXPECT_EQ(notes[0].body, "<") << "nor markup";
    EXPECT_FALSE(notes[0].hints.contains("suppress-sound"));

    notifications->removeDelivered("a");
    notifications->removeDelivered("a");
    notifications->removeDelivered("unknown");
    notifications->send({.identifier = "c"}, nullptr);
    notifications->removeDelivered("c");  // before it is shown
    EXPECT_TRUE(eventually([&] { return closed.size() == 2; }));
    EXPECT_THAT(closed, ElementsAre(41U, 43U));
    send({.identifier = "a"});
    EXPECT_EQ(notes.back().replaces, 0U);
}

TEST_F(NotificationTest, WithoutABusOrAServiceTheReasonIsTold) {
    startNotifications();
    const auto noBus = send({.identifier = "a"});
    EXPECT_EQ(noBus.kind, Kind::notAllowed);
    EXPECT_EQ(noBus.error, "no notification service is connected");
    daemon.start();
    EXPECT_TRUE(eventually([&] { return bus->isConnected(); }));
    const auto noService = send({.identifier = "a"});
    EXPECT_EQ(noService.kind, Kind::notAllowed);
    EXPECT_THAT(noService.error, testing::HasSubstr("org.freedesktop.Notifications"));
    startService({});
    settle(*bus);
    EXPECT_EQ(send({.identifier = "a"}).kind, Kind::shown);
    const auto refused = send({.identifier = "b", .title = "refuse me"});
    EXPECT_EQ(refused.kind, Kind::failed);
    EXPECT_EQ(refused.error, "too many");
    EXPECT_EQ(send({.identifier = "c"}).kind, Kind::shown);
}

TEST_F(NotificationTest, AServiceThatRestartsIsAskedAnewAndItsNumbersStartAnew) {
    daemon.start();
    startService({});
    startNotifications();
    send({.identifier = "a", .category = "offer"});
    responses.clear();
    startService({"actions"}, 7);
    settle(*bus);
    EXPECT_EQ(send({.identifier = "a", .category = "offer", .pet = "two"}).kind, Kind::shown);
    EXPECT_EQ(notes.back().replaces, 0U);
    EXPECT_EQ(notes.back().actions.size(), 6U);
    invoke(41, "keep");
    EXPECT_THAT(responses, IsEmpty()) << "a number of the service before";
    invoke(7, "keep");
    EXPECT_EQ(responses.size(), 1U);
}

TEST_F(NotificationTest, TheBusMayEndWhileAnAnswerIsAwaited) {
    daemon.start();
    startService({});
    startNotifications();
    services.clear();  // it never answers
    std::vector<NotificationOutcome> outcomes;
    const auto keep = [&](const auto& outcome) { outcomes.push_back(outcome); };
    notifications->send({.identifier = "a"}, keep);
    notifications->send({.identifier = "b"}, keep);
    letPass(0.2);
    EXPECT_THAT(outcomes, IsEmpty());
    daemon.stop();
    EXPECT_TRUE(eventually([&] { return outcomes.size() == 2; }));
    for (const auto& outcome : outcomes) EXPECT_EQ(outcome.kind, Kind::notAllowed);
}

TEST(BusText, AnythingBecomesValidText) {
    const std::string broken = "\xef\xbf\xbd";
    const std::pair<std::string, std::string> cases[] = {
        {"", ""},
        {"a\xc3\xa4\xe2\x82\xac\xf0\x9f\x90\xb1", "a\xc3\xa4\xe2\x82\xac\xf0\x9f\x90\xb1"},
        {"a\xe4"
         "b",
         "a" + broken + "b"},
        {"\xe2\x82", broken + broken},
        {"\xc0\x80", broken + broken},
        {"\xed\xa0\x80", broken + broken + broken},
        {std::string("a\0b", 3), "a" + broken + "b"},
    };
    for (const auto& [text, expected] : cases) EXPECT_EQ(session::busText(text), expected);
}

}  // namespace
}  // namespace quibbits
