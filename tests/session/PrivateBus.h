#pragma once
// A message bus of a test's own, and services on it that say what the test wants.

#include <sys/types.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "desktop/TemporaryFolder.h"

struct sd_bus;
struct sd_bus_message;

namespace quibbits {

/// Empty where a bus can be started, else the tool that is missing.
std::string missingBusTool();

class PrivateBus {
public:
    PrivateBus() = default;
    ~PrivateBus() { stop(); }
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    /// The same at every start.
    std::string address() const { return "unix:path=" + (folder_ / "bus").native(); }
    /// Returns when the bus can be reached.
    void start();
    void stop();

private:
    TemporaryFolder folder_;
    pid_t process_ = 0;
};

/// A service with one name. It answers when the test turns it.
class FakeService {
public:
    using Value = std::variant<bool, std::uint32_t, double, std::string>;
    using Values = std::map<std::string, Value>;
    using Method = std::function<int(sd_bus_message* call)>;

    FakeService(const std::string& address, const std::string& name);
    ~FakeService();
    FakeService(const FakeService&) = delete;
    FakeService& operator=(const FakeService&) = delete;

    /// Properties of one object and interface, told by GetAll.
    void set(const std::string& path, const std::string& interface, Values values);
    /// Changes some of them and tells everybody.
    void change(const std::string& path, const std::string& interface, Values values);
    /// What a method does; it replies itself.
    void on(const std::string& member, Method method) { methods_[member] = std::move(method); }
    void emit(const std::string& path, const std::string& interface, const std::string& member,
              const std::function<void(sd_bus_message*)>& fill);
    void turn();
    /// Returns when the bus has passed on everything that the service said.
    void sync();

private:
    static int heard(sd_bus_message* message, void* data, void* error);
    int getAll(sd_bus_message* call);

    sd_bus* bus_ = nullptr;
    std::map<std::pair<std::string, std::string>, Values> objects_;
    std::map<std::string, Method> methods_;
};

}  // namespace quibbits
