#pragma once
// A menu that desktops show themselves: com.canonical.dbusmenu for a menu of plain lines, asked for
// afresh each time it is about to be shown.

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "desktop/session/Bus.h"
#include "platform/Menu.h"

namespace quibbits::session {

class BusMenu {
public:
    /// The source gives the menu as it is now. The bus and the loop outlive this.
    BusMenu(EventRunLoop& loop, Bus& bus, std::string path, std::function<Menu()> source);

    const std::string& path() const { return path_; }

private:
    struct Methods;
    /// A line with the number by which the other side knows it. Lines that have changed get new
    /// numbers, so that a late click never runs another line.
    struct Line {
        std::int32_t id = 0;
        MenuItem item;
    };
    using Names = std::vector<std::string>;

    bool refresh();
    const Line* lineOf(std::int32_t id) const;
    bool isKnown(std::int32_t id) const { return id == 0 || lineOf(id); }
    void event(std::int32_t id, const std::string& what);
    int appendLayout(sd_bus_message* reply, std::int32_t parent, const Names& names) const;
    int appendProperties(sd_bus_message* reply, std::int32_t id, const Names& names) const;

    EventRunLoop& loop_;
    Bus& bus_;
    std::string path_;
    std::function<Menu()> source_;
    std::uint32_t revision_ = 1;
    std::int32_t lastId_ = 0;
    std::vector<Line> lines_;
    Subscription served_;
};

}  // namespace quibbits::session
