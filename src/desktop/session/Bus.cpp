#include "desktop/session/Bus.h"

#include <fcntl.h>
#include <poll.h>
#include <systemd/sd-bus.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace quibbits::session {
namespace {

constexpr int messagesAtOnce = 64;  // other jobs get their turn between
constexpr Seconds longestRetry = 600;
constexpr const char* noBus = "org.freedesktop.DBus.Error.Disconnected";

struct SlotEnd {
    void operator()(sd_bus_slot* slot) const { sd_bus_slot_unref(slot); }
};
using Slot = std::unique_ptr<sd_bus_slot, SlotEnd>;

struct MessageEnd {
    void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};
using Message = std::unique_ptr<sd_bus_message, MessageEnd>;

int openAt(const std::string& address, sd_bus** bus) {
    int result = sd_bus_new(bus);
    if (result >= 0) result = sd_bus_set_address(*bus, address.c_str());
    if (result >= 0) result = sd_bus_set_bus_client(*bus, 1);
    if (result >= 0) result = sd_bus_start(*bus);
    if (result < 0) *bus = sd_bus_unref(*bus);
    return result;
}

int open(const Bus::Place& place, sd_bus** bus) {
    if (!place.address.empty()) return openAt(place.address, bus);
    return place.kind == Bus::Kind::session ? sd_bus_open_user(bus) : sd_bus_open_system(bus);
}

Bus::Failure failureOf(int error) {
    return {"org.freedesktop.DBus.Error.Failed", std::strerror(-error)};
}

Message compose(sd_bus* bus, const Bus::Call& call, const Bus::Fill& fill, int& result) {
    sd_bus_message* raw = nullptr;
    result = sd_bus_message_new_method_call(bus, &raw, call.destination.c_str(), call.path.c_str(),
                                            call.interface.c_str(), call.member.c_str());
    Message message(raw);
    if (result >= 0 && !call.startsService) result = sd_bus_message_set_auto_start(raw, 0);
    if (result >= 0 && fill) result = fill(raw);
    return message;
}

}  // namespace

struct Bus::Pending : std::enable_shared_from_this<Bus::Pending> {
    Bus* bus = nullptr;  // none once answered or given up
    Answer answer;
    Slot slot;

    static int answered(sd_bus_message* reply, void* data, sd_bus_error*) {
        const auto self = static_cast<Pending*>(data)->shared_from_this();
        if (!self->bus) return 0;
        if (const sd_bus_error* error = sd_bus_message_get_error(reply)) {
            self->bus->finish(
                *self, nullptr,
                {error->name ? error->name : "", error->message ? error->message : ""});
        } else {
            self->bus->finish(*self, reply, {});
        }
        return 0;
    }
};

struct Bus::Match : std::enable_shared_from_this<Bus::Match> {
    std::string rule;
    Heard heard;
    Slot slot;

    static int told(sd_bus_message* message, void* data, sd_bus_error*) {
        const auto self = static_cast<Match*>(data)->shared_from_this();
        const Heard heard = self->heard;  // it may end its own match
        if (heard) heard(message);
        return 0;
    }
    /// Without this a refused rule would end the connection.
    static int installed(sd_bus_message*, void*, sd_bus_error*) { return 0; }
};

struct Bus::Served {
    Object object;
    Slot slot;
};

struct Bus::Name {
    std::string name;
    Slot slot;

    /// Without this a refusal would end the connection.
    static int answered(sd_bus_message*, void*, sd_bus_error*) { return 0; }
};

Bus::Bus(EventRunLoop& loop, Place place)
    : loop_(loop), place_(std::move(place)), nextRetry_(place_.retry) {
    connect();
}

Bus::~Bus() {
    readable_.reset();
    writable_.reset();
    uninstallAll();
    for (const auto& pending : pending_) {
        pending->bus = nullptr;
        pending->slot.reset();
    }
    sd_bus_close_unref(bus_);
}

void Bus::connect() {
    lastAttempt_ = loop_.now();
    wasAccepted_ = false;
    retry_.cancel();
    if (open(place_, &bus_) < 0) {
        bus_ = nullptr;
        retryLater();
        return;
    }
    installAll();
    prepare();
}

void Bus::installAll() {
    for (const auto& match : matches_) install(*match);
    for (const auto& served : served_) install(*served);
    for (const auto& name : names_) request(*name);
}

void Bus::uninstallAll() {
    for (const auto& match : matches_) match->slot.reset();
    for (const auto& served : served_) served->slot.reset();
    for (const auto& name : names_) name->slot.reset();
}

void Bus::retryLater() {
    retry_ = loop_.timer(
        std::max(lastAttempt_ + nextRetry_ - loop_.now(), 0.0),
        [this] {
            connect();
            if (bus_) connected.emit();
        },
        nextRetry_ / 3);
    nextRetry_ = std::min(nextRetry_ * 2, std::max(longestRetry, place_.retry));
}

void Bus::end() {
    readable_.reset();
    writable_.reset();
    writeEnd_ = {};
    deadline_.cancel();
    deadlineAt_ = 0;
    uninstallAll();
    for (const auto& pending : pending_) {
        pending->slot.reset();
        failLater(pending, {noBus, "the connection to the message bus ended"});
    }
    sd_bus_close_unref(std::exchange(bus_, nullptr));
    retryLater();
    lost.emit();
}

void Bus::process() {
    for (int i = 0; bus_ && i < messagesAtOnce; ++i) {
        const int result = sd_bus_process(bus_, nullptr);
        if (result < 0) return end();
        if (result == 0) break;
    }
    if (!bus_) return;
    if (sd_bus_is_open(bus_) <= 0) return end();
    if (!wasAccepted_ && sd_bus_is_ready(bus_) > 0) {
        wasAccepted_ = true;
        nextRetry_ = place_.retry;
        readable_.reset();  // it may have moved to another address since
    }
    prepare();
}

/// Lets the loop wait for what the connection waits for.
void Bus::prepare() {
    if (!bus_) return;
    const int events = sd_bus_get_events(bus_);
    const int descriptor = sd_bus_get_fd(bus_);
    if (events < 0 || descriptor < 0) {
        loop_.post(lifetime_.guard([this] { process(); }));  // which finds the end
        return;
    }
    prepareWatches(descriptor, events);
    prepareTimer();
}

void Bus::prepareWatches(int descriptor, int events) {
    if (!wasAccepted_ || !readable_) {
        readable_.reset();
        readable_ = loop_.watch(descriptor, [this] { process(); });
    }
    const bool writes = (events & POLLOUT) != 0;
    if (writes == static_cast<bool>(writeEnd_)) return;
    writable_.reset();
    writeEnd_ = FileDescriptor(writes ? fcntl(descriptor, F_DUPFD_CLOEXEC, 3) : -1);
    if (writeEnd_) writable_ = loop_.watchWritable(writeEnd_.get(), [this] { process(); });
}

void Bus::prepareTimer() {
    std::uint64_t due = 0;
    if (sd_bus_get_timeout(bus_, &due) <= 0 || due == UINT64_MAX) {
        deadline_.cancel();
        deadlineAt_ = 0;
        return;
    }
    if (due != 0 && due == deadlineAt_) return;
    deadlineAt_ = due;
    deadline_ = loop_.timer(std::max(static_cast<double>(due) * 1e-6 - loop_.now(), 0.0), [this] {
        deadlineAt_ = 0;
        process();
    });
}

void Bus::install(Match& match) {
    sd_bus_slot* slot = nullptr;
    sd_bus_add_match_async(bus_, &slot, match.rule.c_str(), Match::told, Match::installed, &match);
    match.slot.reset(slot);
}

void Bus::install(Served& served) {
    sd_bus_slot* slot = nullptr;
    const Object& object = served.object;
    sd_bus_add_object_vtable(bus_, &slot, object.path.c_str(), object.interface.c_str(),
                             object.table, object.data);
    served.slot.reset(slot);
}

void Bus::request(Name& name) {
    sd_bus_slot* slot = nullptr;
    sd_bus_request_name_async(bus_, &slot, name.name.c_str(), SD_BUS_NAME_QUEUE, Name::answered,
                              nullptr);
    name.slot.reset(slot);
}

/// Does what is to be done at the handle's end, if the bus and what it stands for are still there.
template <typename Thing, typename End>
Subscription Bus::handleOf(const std::shared_ptr<Thing>& thing, End end) {
    return Subscription([alive = lifetime_.guard([] { return true; }), weak = std::weak_ptr(thing),
                         end = std::move(end)]() mutable {
        const auto given = weak.lock();
        if (!given || !alive()) return;
        given->slot.reset();
        end(given);
    });
}

Subscription Bus::serve(Object object) {
    const auto served = std::make_shared<Served>(Served{std::move(object), {}});
    served_.push_back(served);
    if (bus_) install(*served);
    return handleOf(served, [this](const auto& given) { std::erase(served_, given); });
}

Subscription Bus::own(std::string name) {
    const auto owned = std::make_shared<Name>(Name{std::move(name), {}});
    names_.push_back(owned);
    if (bus_) {
        request(*owned);
        prepare();
    }
    return handleOf(owned, [this](const auto& given) {
        if (bus_) sd_bus_release_name_async(bus_, nullptr, given->name.c_str(), nullptr, nullptr);
        std::erase(names_, given);
        prepare();
    });
}

void Bus::emit(const std::string& path, const std::string& interface, const std::string& member,
               const Fill& fill) {
    if (!bus_) return;
    sd_bus_message* raw = nullptr;
    int result =
        sd_bus_message_new_signal(bus_, &raw, path.c_str(), interface.c_str(), member.c_str());
    const Message message(raw);
    if (result >= 0 && fill) result = fill(raw);
    if (result < 0) return;
    sd_bus_send(bus_, raw, nullptr);
    prepare();
}

Subscription Bus::call(const Call& call, const Fill& fill, Answer answer) {
    const auto pending = std::make_shared<Pending>();
    pending->bus = this;
    pending->answer = std::move(answer);
    pending_.insert(pending);
    if (!bus_ && loop_.now() >= lastAttempt_ + place_.retry) {
        connect();
        if (bus_) loop_.post(lifetime_.guard([this] { connected.emit(); }));
    }
    if (!bus_) {
        failLater(pending, {noBus, "there is no message bus"});
    } else {
        int result = 0;
        const Message message = compose(bus_, call, fill, result);
        sd_bus_slot* slot = nullptr;
        if (result >= 0) {
            result = sd_bus_call_async(bus_, &slot, message.get(), Pending::answered, pending.get(),
                                       static_cast<std::uint64_t>(call.timeout * 1e6));
        }
        pending->slot.reset(slot);
        if (result < 0) failLater(pending, failureOf(result));
        prepare();
    }
    return Subscription([weak = std::weak_ptr(pending)] {
        const auto given = weak.lock();
        if (!given || !given->bus) return;
        Bus* const bus = std::exchange(given->bus, nullptr);
        given->slot.reset();
        bus->pending_.erase(given);
    });
}

void Bus::tell(const Call& call, const Fill& fill) {
    if (!bus_) return;
    int result = 0;
    const Message message = compose(bus_, call, fill, result);
    if (result < 0) return;
    sd_bus_message_set_expect_reply(message.get(), 0);
    sd_bus_send(bus_, message.get(), nullptr);
    prepare();
}

Subscription Bus::match(std::string rule, Heard heard) {
    const auto match = std::make_shared<Match>();
    match->rule = std::move(rule);
    match->heard = std::move(heard);
    matches_.push_back(match);
    if (bus_) {
        install(*match);
        prepare();
    }
    return handleOf(match, [this](const auto& given) {
        given->heard = nullptr;
        std::erase(matches_, given);
        prepare();
    });
}

void Bus::finish(Pending& pending, sd_bus_message* reply, const Failure& failure) {
    const auto self = pending.shared_from_this();
    self->bus = nullptr;
    pending_.erase(self);
    const Answer answer = std::move(self->answer);
    if (answer) answer(reply, failure);
}

void Bus::failLater(const std::shared_ptr<Pending>& pending, Failure failure) {
    loop_.post(lifetime_.guard([this, pending, failure = std::move(failure)] {
        if (pending->bus) finish(*pending, nullptr, failure);
    }));
}

}  // namespace quibbits::session
