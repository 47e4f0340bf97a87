#include "desktop/session/BusMenu.h"

#include <systemd/sd-bus.h>

#include <algorithm>
#include <utility>

#include "desktop/session/BusValues.h"
#include "desktop/words/DesktopWords.h"

namespace quibbits::session {
namespace {

constexpr const char* interface = "com.canonical.dbusmenu";
constexpr const char* unknownLine = "com.canonical.dbusmenu.Error.UnknownId";
constexpr std::uint32_t version = 3;
constexpr std::size_t mostAtOnce = 256;

bool isSeparator(const MenuItem& item) {
    return item.title.empty();
}

bool looksSame(const MenuItem& a, const MenuItem& b) {
    return a.title == b.title && a.key == b.key &&
           static_cast<bool>(a.run) == static_cast<bool>(b.run);
}

/// An underscore marks the next letter as a key; two stand for one.
std::string labelOf(const std::string& title) {
    std::string label;
    for (const char c : title) label.append(c == '_' ? 2 : 1, c);
    return busText(label);
}

/// The keys that are to be pressed together to choose a line.
struct Shortcut {
    std::string modifier;
    std::string key;  // as toolkits call it
};
using Property = std::variant<std::string, bool, Shortcut>;

/// The properties that differ from what everybody assumes, by name.
std::map<std::string, Property> propertiesOf(const MenuItem* item) {
    if (!item) return {{"children-display", "submenu"}};
    if (isSeparator(*item)) return {{"type", "separator"}};
    std::map<std::string, Property> all{{"label", labelOf(item->title)}};
    if (!item->run) all["enabled"] = false;
    if (item->key != 0) {
        const std::string key = item->key == ',' ? "comma" : std::string(1, item->key);
        all["shortcut"] = Shortcut{"Control", key};
    }
    return all;
}

int appendProperty(sd_bus_message* message, const Property& property) {
    if (const auto* text = std::get_if<std::string>(&property)) {
        return sd_bus_message_append(message, "v", "s", text->c_str());
    }
    if (const auto* flag = std::get_if<bool>(&property)) {
        return sd_bus_message_append(message, "v", "b", static_cast<int>(*flag));
    }
    const auto& [modifier, key] = std::get<Shortcut>(property);
    return sd_bus_message_append(message, "v", "aas", 1, 2, modifier.c_str(), key.c_str());
}

std::vector<std::int32_t> readIds(sd_bus_message* message) {
    std::vector<std::int32_t> ids;
    if (sd_bus_message_enter_container(message, 'a', "i") <= 0) return ids;
    std::int32_t id = 0;
    while (sd_bus_message_read_basic(message, 'i', &id) > 0) {
        if (ids.size() < mostAtOnce) ids.push_back(id);
    }
    sd_bus_message_exit_container(message);
    return ids;
}

int appendIds(sd_bus_message* message, const std::vector<std::int32_t>& ids) {
    return sd_bus_message_append_array(message, 'i', ids.data(), ids.size() * sizeof(ids[0]));
}

struct Reply {
    explicit Reply(sd_bus_message* call) { sd_bus_message_new_method_return(call, &message); }
    ~Reply() { sd_bus_message_unref(message); }
    Reply(const Reply&) = delete;
    Reply& operator=(const Reply&) = delete;
    int send() { return sd_bus_send(nullptr, message, nullptr); }
    sd_bus_message* message = nullptr;
};

}  // namespace

struct BusMenu::Methods {
    static BusMenu& self(void* data) { return *static_cast<BusMenu*>(data); }

    static int getLayout(sd_bus_message* call, void* data, sd_bus_error* error) {
        BusMenu& menu = self(data);
        std::int32_t parent = 0;
        std::int32_t depth = 0;
        if (const int bad = sd_bus_message_read(call, "ii", &parent, &depth); bad < 0) return bad;
        const Names names = readTexts(call);
        menu.refresh();
        if (!menu.isKnown(parent)) return sd_bus_error_setf(error, unknownLine, "no such line");
        Reply reply(call);
        sd_bus_message_append(reply.message, "u", menu.revision_);
        const int result = menu.appendLayout(reply.message, parent, names);
        return result < 0 ? result : reply.send();
    }

    static int getGroupProperties(sd_bus_message* call, void* data, sd_bus_error*) {
        BusMenu& menu = self(data);
        auto ids = readIds(call);
        const Names names = readTexts(call);
        if (ids.empty()) {
            ids.push_back(0);
            for (const auto& line : menu.lines_) ids.push_back(line.id);
        }
        Reply reply(call);
        sd_bus_message_open_container(reply.message, 'a', "(ia{sv})");
        for (const auto id : ids) {
            if (!menu.isKnown(id)) continue;
            sd_bus_message_open_container(reply.message, 'r', "ia{sv}");
            menu.appendProperties(reply.message, id, names);
            sd_bus_message_close_container(reply.message);
        }
        sd_bus_message_close_container(reply.message);
        return reply.send();
    }

    static int getProperty(sd_bus_message* call, void* data, sd_bus_error* error) {
        BusMenu& menu = self(data);
        std::int32_t id = 0;
        const char* name = nullptr;
        if (const int bad = sd_bus_message_read(call, "is", &id, &name); bad < 0) return bad;
        const Line* line = menu.lineOf(id);
        const auto all = propertiesOf(line ? &line->item : nullptr);
        const auto found = all.find(name);
        if (!menu.isKnown(id) || found == all.end()) {
            return sd_bus_error_setf(error, SD_BUS_ERROR_INVALID_ARGS, "no such property");
        }
        Reply reply(call);
        const int result = appendProperty(reply.message, found->second);
        return result < 0 ? result : reply.send();
    }

    static int event(sd_bus_message* call, void* data, sd_bus_error* error) {
        BusMenu& menu = self(data);
        std::int32_t id = 0;
        const char* what = nullptr;
        if (const int bad = sd_bus_message_read(call, "is", &id, &what); bad < 0) return bad;
        if (!menu.isKnown(id)) return sd_bus_error_setf(error, unknownLine, "no such line");
        menu.event(id, what);
        return sd_bus_reply_method_return(call, "");
    }

    static int eventGroup(sd_bus_message* call, void* data, sd_bus_error*) {
        BusMenu& menu = self(data);
        std::vector<std::int32_t> unknown;
        if (sd_bus_message_enter_container(call, 'a', "(isvu)") <= 0) return -EINVAL;
        while (sd_bus_message_enter_container(call, 'r', "isvu") > 0) {
            std::int32_t id = 0;
            const char* what = nullptr;
            sd_bus_message_read(call, "is", &id, &what);
            sd_bus_message_skip(call, "vu");
            sd_bus_message_exit_container(call);
            if (menu.isKnown(id) && what) {
                menu.event(id, what);
            } else if (unknown.size() < mostAtOnce) {
                unknown.push_back(id);
            }
        }
        Reply reply(call);
        appendIds(reply.message, unknown);
        return reply.send();
    }

    static int aboutToShow(sd_bus_message* call, void* data, sd_bus_error* error) {
        BusMenu& menu = self(data);
        std::int32_t id = 0;
        if (const int bad = sd_bus_message_read(call, "i", &id); bad < 0) return bad;
        if (!menu.isKnown(id)) return sd_bus_error_setf(error, unknownLine, "no such line");
        return sd_bus_reply_method_return(call, "b", static_cast<int>(menu.refresh()));
    }

    static int aboutToShowGroup(sd_bus_message* call, void* data, sd_bus_error*) {
        BusMenu& menu = self(data);
        std::vector<std::int32_t> unknown;
        for (const auto id : readIds(call)) {
            if (!menu.isKnown(id)) unknown.push_back(id);
        }
        std::vector<std::int32_t> changed;
        if (menu.refresh()) changed.push_back(0);
        Reply reply(call);
        appendIds(reply.message, changed);
        appendIds(reply.message, unknown);
        return reply.send();
    }

    static int getOwn(sd_bus*, const char*, const char*, const char* property,
                      sd_bus_message* reply, void*, sd_bus_error*) {
        const std::string name = property;
        if (name == "Version") return sd_bus_message_append(reply, "u", version);
        if (name == "TextDirection") return sd_bus_message_append(reply, "s", "ltr");
        if (name == "Status") return sd_bus_message_append(reply, "s", "normal");
        return sd_bus_message_append(reply, "as", 0);  // IconThemePath
    }

    static const sd_bus_vtable table[];
};

const sd_bus_vtable BusMenu::Methods::table[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("GetLayout", "iias", "u(ia{sv}av)", getLayout, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("GetGroupProperties", "aias", "a(ia{sv})", getGroupProperties,
                  SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("GetProperty", "is", "v", getProperty, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("Event", "isvu", "", event, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("EventGroup", "a(isvu)", "ai", eventGroup, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("AboutToShow", "i", "b", aboutToShow, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("AboutToShowGroup", "ai", "aiai", aboutToShowGroup, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_PROPERTY("Version", "u", getOwn, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("TextDirection", "s", getOwn, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("Status", "s", getOwn, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("IconThemePath", "as", getOwn, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_SIGNAL("LayoutUpdated", "ui", 0),
    SD_BUS_SIGNAL("ItemsPropertiesUpdated", "a(ia{sv})a(ias)", 0),
    SD_BUS_SIGNAL("ItemActivationRequested", "iu", 0),
    SD_BUS_VTABLE_END,
};

BusMenu::BusMenu(EventRunLoop& loop, Bus& bus, std::string path, std::function<Menu()> source)
    : loop_(loop), bus_(bus), path_(std::move(path)), source_(std::move(source)) {
    served_ =
        bus_.serve({.path = path_, .interface = interface, .table = Methods::table, .data = this});
}

/// Asks the source. True when the menu looks otherwise than it did.
bool BusMenu::refresh() {
    Menu menu = source_ ? words::worded(source_()) : Menu();
    const bool same = std::ranges::equal(
        lines_, menu.items,
        [](const Line& line, const MenuItem& item) { return looksSame(line.item, item); });
    if (same) {
        for (std::size_t i = 0; i < lines_.size(); ++i) lines_[i].item = std::move(menu.items[i]);
        return false;
    }
    lines_.clear();
    for (auto& item : menu.items) lines_.push_back({++lastId_, std::move(item)});
    ++revision_;
    bus_.emit(path_, interface, "LayoutUpdated", [this](sd_bus_message* signal) {
        return sd_bus_message_append(signal, "ui", revision_, 0);
    });
    return true;
}

const BusMenu::Line* BusMenu::lineOf(std::int32_t id) const {
    const auto found = std::ranges::find(lines_, id, &Line::id);
    return found == lines_.end() ? nullptr : &*found;
}

void BusMenu::event(std::int32_t id, const std::string& what) {
    const Line* line = lineOf(id);
    if (what == "clicked" && line && line->item.run) loop_.post(line->item.run);
}

/// One entry with what hangs below it.
int BusMenu::appendLayout(sd_bus_message* reply, std::int32_t parent, const Names& names) const {
    sd_bus_message_open_container(reply, 'r', "ia{sv}av");
    appendProperties(reply, parent, names);
    sd_bus_message_open_container(reply, 'a', "v");
    if (parent == 0) {
        for (const auto& line : lines_) {
            sd_bus_message_open_container(reply, 'v', "(ia{sv}av)");
            appendLayout(reply, line.id, names);
            sd_bus_message_close_container(reply);
        }
    }
    sd_bus_message_close_container(reply);
    return sd_bus_message_close_container(reply);
}

/// The number of an entry and those of its properties that are asked for; no names ask for all.
int BusMenu::appendProperties(sd_bus_message* reply, std::int32_t id, const Names& names) const {
    sd_bus_message_append(reply, "i", id);
    sd_bus_message_open_container(reply, 'a', "{sv}");
    const Line* line = lineOf(id);
    for (const auto& [name, value] : propertiesOf(line ? &line->item : nullptr)) {
        if (!names.empty() && std::ranges::find(names, name) == names.end()) continue;
        sd_bus_message_open_container(reply, 'e', "sv");
        sd_bus_message_append(reply, "s", name.c_str());
        appendProperty(reply, value);
        sd_bus_message_close_container(reply);
    }
    return sd_bus_message_close_container(reply);
}

}  // namespace quibbits::session
