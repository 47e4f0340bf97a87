#pragma once
// A connection to the session's or the system's message bus, served by the run loop: calls are
// asynchronous, and nothing here ever waits. A bus that is missing or goes away is an ordinary
// answer: calls fail, match rules stay and are told to the next connection.

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "desktop/EventRunLoop.h"
#include "platform/Lifetime.h"

struct sd_bus;
struct sd_bus_message;
struct sd_bus_vtable;

namespace quibbits::session {

class Bus {
public:
    enum class Kind { session, system };
    struct Place {
        Kind kind = Kind::session;
        std::string address;  // empty for the usual one
        Seconds retry = 30;   // least time between attempts to connect; longer after each failure
    };
    struct Call {
        std::string destination;
        std::string path;
        std::string interface;
        std::string member;
        bool startsService = true;  // the bus may start the service for this call
        Seconds timeout = 25;
    };
    struct Failure {
        std::string name;  // as org.freedesktop.DBus.Error.ServiceUnknown
        std::string text;
    };
    /// Appends the arguments; a negative result fails the call.
    using Fill = std::function<int(sd_bus_message*)>;
    /// The reply, or null and the reason.
    using Answer = std::function<void(sd_bus_message*, const Failure&)>;
    using Heard = std::function<void(sd_bus_message*)>;

    /// Tries to connect at once. The loop must outlive the bus, the bus its subscriptions' use.
    Bus(EventRunLoop& loop, Place place);
    ~Bus();
    Bus(const Bus&) = delete;
    Bus& operator=(const Bus&) = delete;

    /// There is a connection, though the bus may still have to accept it.
    bool isConnected() const { return bus_ != nullptr; }

    /// Calls a method. The answer comes once, later, on the loop, unless the handle ends before.
    [[nodiscard]] Subscription call(const Call& call, const Fill& fill, Answer answer);
    /// Calls a method whose answer nobody wants.
    void tell(const Call& call, const Fill& fill);
    /// Hears every signal that fits the rule, through all connections, until the handle ends.
    [[nodiscard]] Subscription match(std::string rule, Heard heard);

    /// An object of this program that others may call, by a table of its methods and properties.
    struct Object {
        std::string path;
        std::string interface;
        const sd_bus_vtable* table = nullptr;
        void* data = nullptr;  // what the table's functions get
    };
    /// Answers for the object through all connections, until the handle ends.
    [[nodiscard]] Subscription serve(Object object);
    /// Has the name in every connection, or waits for it while another program has it, until the
    /// handle ends. Asked for before anything that is called later.
    [[nodiscard]] Subscription own(std::string name);
    /// Tells everybody something of an object of this program.
    void emit(const std::string& path, const std::string& interface, const std::string& member,
              const Fill& fill);

    Signal<> connected;  // again; the connection of the beginning is not told
    Signal<> lost;

private:
    struct Pending;
    struct Match;
    struct Served;
    struct Name;
    void connect();
    void retryLater();
    void end();
    void process();
    void prepare();
    void prepareWatches(int descriptor, int events);
    void prepareTimer();
    void install(Match& match);
    void install(Served& served);
    void request(Name& name);
    void installAll();
    void uninstallAll();
    void finish(Pending& pending, sd_bus_message* reply, const Failure& failure);
    void failLater(const std::shared_ptr<Pending>& pending, Failure failure);
    template <typename Thing, typename End>
    Subscription handleOf(const std::shared_ptr<Thing>& thing, End end);

    EventRunLoop& loop_;
    Place place_;
    sd_bus* bus_ = nullptr;
    bool wasAccepted_ = false;
    Instant lastAttempt_ = 0;
    Seconds nextRetry_;
    FileDescriptor writeEnd_;  // the same socket again, to watch it for writing
    std::optional<Subscription> readable_;
    Subscription writable_;
    Timer deadline_;
    std::uint64_t deadlineAt_ = 0;  // microseconds; 0 for none
    Timer retry_;
    std::set<std::shared_ptr<Pending>> pending_;
    std::vector<std::shared_ptr<Match>> matches_;
    std::vector<std::shared_ptr<Served>> served_;
    std::vector<std::shared_ptr<Name>> names_;
    Lifetime lifetime_;
};

}  // namespace quibbits::session
