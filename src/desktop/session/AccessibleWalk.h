#pragma once
// A walk through the objects that programs show to assistive ones: many small questions over the
// accessibility bus, all of them asynchronous. Ends by itself when no question is open any more.

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "desktop/session/Bus.h"
#include "platform/Geometry.h"

namespace quibbits::session {

/// Roles of accessible objects that matter here, by their numbers on the bus.
enum class Role : std::uint32_t {
    canvas = 6,
    desktopIcon = 13,
    filler = 20,
    frame = 23,
    icon = 26,
    image = 27,
    layeredPane = 30,
    list = 31,
    listItem = 32,
    panel = 39,
    radioButton = 44,
    scrollPane = 49,
    table = 55,
    tableCell = 56,
    text = 61,
    toggleButton = 62,
    tree = 65,
    treeTable = 66,
    unknown = 67,
    viewport = 68,
    window = 69,
    entry = 79,
    treeItem = 91,
};

/// States of an object, by their bits on the bus.
enum class AccessibleState : std::uint32_t {
    active = 1,
    checked = 4,
    expanded = 10,
    selected = 23,
    showing = 25,
};

class AccessibleStates {
public:
    explicit AccessibleStates(std::uint64_t bits = 0) : bits_(bits) {}
    bool has(AccessibleState state) const {
        return (bits_ >> static_cast<std::uint32_t>(state) & 1) != 0;
    }

private:
    std::uint64_t bits_;
};

/// File managers that draw a desktop or windows of files, by their accessible names, window
/// classes and application ids, in letters of any size.
bool isKnownFileManager(std::string_view name);

class AccessibleWalk {
public:
    /// Above 0 answers are waited for no longer than this.
    static constexpr Seconds longest = 5;

    virtual ~AccessibleWalk();
    AccessibleWalk(const AccessibleWalk&) = delete;
    AccessibleWalk& operator=(const AccessibleWalk&) = delete;

protected:
    /// An accessible object, and its place in the tree, which gives the order of the objects.
    struct Object {
        std::string service;
        std::string path;
        std::vector<std::size_t> place = {};
    };
    using EachObject = std::function<void(const Object&)>;

    AccessibleWalk(Bus& bus, std::size_t mostObjects);

    /// The file managers that run.
    void fileManagers(const EachObject& each);
    void children(const Object& parent, EachObject each);
    /// Those that the object itself says are selected; none told where it does not say.
    void selectedChildren(const Object& parent, std::function<void(int count)> told,
                          EachObject each);
    void roleOf(const Object& object, std::function<void(Role)> use);
    void statesOf(const Object& object, std::function<void(AccessibleStates)> use);
    void nameOf(const Object& object, std::function<void(const std::string&)> use);
    void textOf(const Object& object, std::function<void(const std::string&)> use);
    /// In pixels of the display, y downwards.
    void extentsOf(const Object& object, std::function<void(const Rect&)> use);

    /// There were more objects than are looked at.
    bool wasCut() const { return cut_; }
    /// Somebody did not answer what everybody does: there may be more than was told.
    bool hasMissed() const { return missed_; }
    /// All is answered. May end this object.
    virtual void ended() = 0;

private:
    static bool isNeeded(std::string_view member);
    void property(const Object& object, const char* interface, const char* name,
                  std::function<void(sd_bus_message*)> use);
    void ask(const Object& object, const char* interface, const char* member, const Bus::Fill& fill,
             std::function<void(sd_bus_message*)> use);
    void answered(std::uint64_t id);

    Bus& bus_;
    std::size_t mostObjects_;
    std::map<std::uint64_t, Subscription> calls_;
    std::uint64_t nextId_ = 0;
    std::size_t open_ = 0;
    std::size_t objects_ = 0;
    bool cut_ = false;
    bool missed_ = false;
};

}  // namespace quibbits::session
