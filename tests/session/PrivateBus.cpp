#include "PrivateBus.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <systemd/sd-bus.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <thread>

extern char** environ;

namespace quibbits {
namespace {

using namespace std::chrono_literals;

void check(int result, const char* what) {
    if (result < 0) throw std::runtime_error(what);
}

/// Whether somebody listens: the file of a socket is there a moment before.
bool accepts(const std::filesystem::path& path) {
    sockaddr_un name{};
    name.sun_family = AF_UNIX;
    if (path.native().size() >= sizeof name.sun_path) throw std::runtime_error("path too long");
    path.native().copy(name.sun_path, sizeof name.sun_path - 1);
    const int probe = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    check(probe, "no socket");
    const bool answered = connect(probe, reinterpret_cast<sockaddr*>(&name), sizeof name) == 0;
    close(probe);
    return answered;
}

void append(sd_bus_message* message, const FakeService::Values& values) {
    sd_bus_message_open_container(message, 'a', "{sv}");
    for (const auto& [name, value] : values) {
        const char* key = name.c_str();
        if (const auto* flag = std::get_if<bool>(&value)) {
            sd_bus_message_append(message, "{sv}", key, "b", static_cast<int>(*flag));
        } else if (const auto* number = std::get_if<std::uint32_t>(&value)) {
            sd_bus_message_append(message, "{sv}", key, "u", *number);
        } else if (const auto* real = std::get_if<double>(&value)) {
            sd_bus_message_append(message, "{sv}", key, "d", *real);
        } else {
            sd_bus_message_append(message, "{sv}", key, "s", std::get<std::string>(value).c_str());
        }
    }
    sd_bus_message_close_container(message);
}

}  // namespace

std::string missingBusTool() {
    const std::string path = std::getenv("PATH") ? std::getenv("PATH") : "/usr/bin";
    for (std::size_t at = 0; at < path.size();) {
        const auto end = std::min(path.find(':', at), path.size());
        if (access((path.substr(at, end - at) + "/dbus-daemon").c_str(), X_OK) == 0) return {};
        at = end + 1;
    }
    return "dbus-daemon";
}

void PrivateBus::start() {
    write(folder_ / "bus.conf", "<busconfig><type>session</type><listen>" + address() +
                                    "</listen><auth>EXTERNAL</auth>"
                                    "<policy context=\"default\"><allow send_destination=\"*\"/>"
                                    "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy>"
                                    "</busconfig>");
    std::string program = "dbus-daemon";
    std::string config = "--config-file=" + (folder_ / "bus.conf").native();
    std::string stay = "--nofork";
    char* arguments[] = {program.data(), config.data(), stay.data(), nullptr};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
    const int error =
        posix_spawnp(&process_, program.c_str(), &actions, nullptr, arguments, environ);
    posix_spawn_file_actions_destroy(&actions);
    check(-error, "no message bus could be started");
    const auto end = std::chrono::steady_clock::now() + 60s;
    while (!accepts(folder_ / "bus")) {
        if (std::chrono::steady_clock::now() > end) throw std::runtime_error("the bus is silent");
        std::this_thread::sleep_for(10ms);
    }
}

void PrivateBus::stop() {
    if (process_ <= 0) return;
    kill(process_, SIGTERM);
    waitpid(process_, nullptr, 0);
    process_ = 0;
    std::error_code error;
    std::filesystem::remove(folder_ / "bus", error);
}

FakeService::FakeService(const std::string& address, const std::string& name) {
    check(sd_bus_new(&bus_), "no bus");
    check(sd_bus_set_address(bus_, address.c_str()), "no address");
    check(sd_bus_set_bus_client(bus_, 1), "no client");
    check(sd_bus_start(bus_), "no connection");
    check(sd_bus_add_filter(
              bus_, nullptr,
              [](sd_bus_message* message, void* data, sd_bus_error* error) {
                  return heard(message, data, error);
              },
              this),
          "no filter");
    check(sd_bus_request_name(bus_, name.c_str(), 0), "no name");
}

FakeService::~FakeService() {
    sd_bus_flush_close_unref(bus_);
}

void FakeService::set(const std::string& path, const std::string& interface, Values values) {
    objects_[{path, interface}] = std::move(values);
}

void FakeService::change(const std::string& path, const std::string& interface, Values values) {
    for (const auto& [name, value] : values) objects_[{path, interface}][name] = value;
    emit(path, "org.freedesktop.DBus.Properties", "PropertiesChanged", [&](sd_bus_message* signal) {
        sd_bus_message_append(signal, "s", interface.c_str());
        append(signal, values);
        sd_bus_message_append(signal, "as", 0);
    });
}

void FakeService::emit(const std::string& path, const std::string& interface,
                       const std::string& member,
                       const std::function<void(sd_bus_message*)>& fill) {
    sd_bus_message* signal = nullptr;
    check(sd_bus_message_new_signal(bus_, &signal, path.c_str(), interface.c_str(), member.c_str()),
          "no signal");
    fill(signal);
    sd_bus_send(bus_, signal, nullptr);
    sd_bus_message_unref(signal);
    sd_bus_flush(bus_);
}

void FakeService::turn() {
    while (sd_bus_process(bus_, nullptr) > 0) {
    }
    sd_bus_flush(bus_);
}

void FakeService::sync() {
    sd_bus_message* reply = nullptr;
    sd_bus_call_method(bus_, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                       "org.freedesktop.DBus", "GetId", nullptr, &reply, nullptr);
    sd_bus_message_unref(reply);
}

int FakeService::heard(sd_bus_message* message, void* data, void*) {
    auto& self = *static_cast<FakeService*>(data);
    if (sd_bus_message_is_method_call(message, nullptr, nullptr) <= 0) return 0;
    const std::string member = sd_bus_message_get_member(message);
    if (member == "GetAll") return self.getAll(message);
    const auto method = self.methods_.find(member);
    return method == self.methods_.end() ? 0 : method->second(message);
}

int FakeService::getAll(sd_bus_message* call) {
    const char* interface = "";
    sd_bus_message_read(call, "s", &interface);
    const auto object = objects_.find({sd_bus_message_get_path(call), interface});
    if (object == objects_.end()) return 0;  // answered with an unknown object
    sd_bus_message* reply = nullptr;
    check(sd_bus_message_new_method_return(call, &reply), "no reply");
    append(reply, object->second);
    sd_bus_send(bus_, reply, nullptr);
    sd_bus_message_unref(reply);
    return 1;
}

}  // namespace quibbits
