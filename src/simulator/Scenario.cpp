#include "simulator/Scenario.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <optional>

#include "sim/VirtualRunLoop.h"

namespace quibbits {

namespace {

constexpr bool required = true;
constexpr bool optional = false;
constexpr std::size_t mostEvents = 1'000'000;

// What the simulated computer can bear.
constexpr double largest = 1e9;
constexpr double farthest = 1e6;  // points
constexpr Seconds longest = 86'400;
constexpr double largestSide = 8192;  // points
constexpr double largestScale = 4;

const std::vector<EventSpec>& specs() {
    using enum FieldType;
    static const std::vector<EventSpec> list{
        {"begin",
         "How the computer is when it is switched on. The first line only.",
         {{"date", date, optional, "local date and time"},
          {"seed", count, optional, "of all chance; the same seed gives the same life"}}},
        {"defaults",
         "Writes and deletes user defaults.",
         {{"set", values, optional, "keys and their values"},
          {"remove", texts, optional, "keys to delete"}}},
        {"screen",
         "Changes the screen.",
         {{"width", side, required, ""},
          {"height", side, required, ""},
          {"scale", scale, optional, "device pixels per point; 1 unless told"}}},
        {"screenGone", "The screen is disconnected.", {}},
        {"dock",
         "Puts a dock along the bottom of the screen; without a frame it goes away.",
         {{"frame", rectangle, optional, "global coordinates"},
          {"panels", rectangles, optional, "instead of one dock, panels along any edges"}}},
        {"pointer",
         "Moves the pointer.",
         {{"to", point, required, "global coordinates, y upwards"},
          {"over", duration, optional, "seconds that the way takes; at once unless told"},
          {"pet", text, optional, "count the point from the middle of this creature"}}},
        {"press", "Presses a mouse button.", {{"button", button, optional, "left unless told"}}},
        {"release", "Releases a mouse button.", {{"button", button, optional, "left unless told"}}},
        {"drag",
         "Presses the left button, moves and releases it.",
         {{"to", point, required, "global coordinates"},
          {"over", duration, optional, "seconds that the way takes"},
          {"pet", text, optional, "count the point from the middle of this creature"}}},
        {"tray",
         "Puts the program's icon somewhere else; without a frame, into the upper right corner.",
         {{"frame", rectangle, optional, "global coordinates"}}},
        {"trayClick", "Moves the pointer to the program's icon and clicks it.", {}},
        {"trayRightClick", "The same with the right button, for the icon's menu.", {}},
        {"choose",
         "Chooses a line of an open menu; nothing happens when no menu has such a line.",
         {{"title", text, required, "the line"}}},
        {"use",
         "Does something to an ordinary window of the program: presses, switches or chooses what "
         "has the identity.",
         {{"window", text, required, "its title"},
          {"id", text, required, "of the view"},
          {"on", boolean, optional, "the new position of a switch, or the answer to a question"},
          {"choice", text, optional, "of a picker, or the page of a list"},
          {"number", wholeNumber, optional, "of a stepper or of a tab"}}},
        {"dismiss",
         "Closes an ordinary window of the program.",
         {{"window", text, required, "its title"}}},
        {"keys",
         "Holds modifier keys down from now on.",
         {{"option", boolean, optional, ""},
          {"command", boolean, optional, ""},
          {"control", boolean, optional, ""},
          {"shift", boolean, optional, ""}}},
        {"user",
         "Whether somebody is at the computer, typing now and then; at first somebody is.",
         {{"present", boolean, required, ""}}},
        {"touch", "A key is pressed once.", {}},
        {"window",
         "Opens a window in front, or changes one.",
         {{"id", text, required, "the window's name in this scenario"},
          {"process", count, required, "whose window it is"},
          {"frame", rectangle, required, "global coordinates"},
          {"alpha", number, optional, "its opacity"},
          {"layer", wholeNumber, optional, "0 for ordinary windows"}}},
        {"closeWindow", "Closes a window.", {{"id", text, required, ""}}},
        {"front",
         "An application comes to the front.",
         {{"application", text, required, "its id"},
          {"process", count, required, ""},
          {"title", text, optional, "of a browser's front window"},
          {"address", text, optional, "of its page, where the browser tells it"}}},
        {"launch",
         "An application starts.",
         {{"application", text, required, "its id"}, {"process", count, required, ""}}},
        {"terminate", "An application ends.", {{"process", count, required, ""}}},
        {"space", "Another workspace is shown.", {}},
        {"icons",
         "The desktop shows these icons; without a list it does not tell.",
         {{"icons", icons, optional, "in the file manager's order"}}},
        {"battery",
         "The battery's charge; without a level there is no battery.",
         {{"level", count, optional, "percent"},
          {"charging", boolean, optional, "mains power is connected"}}},
        {"heat", "The machine's thermal state.", {{"state", heat, required, ""}}},
        {"network", "The network reports.", {{"online", boolean, required, ""}}},
        {"camera", "For each camera, whether it is in use.", {{"inUse", booleans, required, ""}}},
        {"music",
         "A music player reports; \"Playing\" is music.",
         {{"state", text, optional, "none: a report without a state"}}},
        {"address",
         "An address is opened, such as quibbits://celebrate.",
         {{"url", text, required, ""}}},
        {"answer",
         "The user answers a notification.",
         {{"identifier", text, required, "of the notification"},
          {"action", text, required, "the button's identifier; closed: it is put away"}}},
        {"buttons",
         "Whether notifications have buttons from now on.",
         {{"shown", boolean, required, ""}}},
        {"refuse",
         "Notifications are refused from now on, for this reason; empty allows them.",
         {{"reason", text, required, ""}}},
        {"file",
         "Files exist from now on.",
         {{"paths", texts, required, "absolute paths"},
          {"size", wholeNumber, optional, "bytes of each"},
          {"contents", text, optional, "what they hold; files of the same contents are copies"},
          {"age", number, optional, "seconds since they were created; unknown unless told"},
          {"stubborn", boolean, optional, "cannot be moved to the Trash"}}},
        {"mount",
         "A disk image is mounted.",
         {{"image", text, required, "the absolute path of its file"},
          {"place", text, required, "where it is mounted"}}},
        {"eject", "A volume is ejected.", {{"place", text, required, "where it was mounted"}}},
        {"select",
         "Files are selected in the file manager, whose application is \"files\".",
         {{"files", texts, required, "absolute paths"},
          {"icons", icons, optional, "where its window draws them"}}},
        {"deleteKey", "Command-Option-Delete is pressed.", {}},
        {"drop",
         "Something is dropped.",
         {{"place", point, required, "global coordinates"},
          {"pet", text, optional, "count the place from the middle of this creature"},
          {"files", texts, optional, "absolute paths"},
          {"item", text, optional, "a private item, such as azurine"}}},
        {"clock", "The wall clock jumps, as after a sleep.", {{"by", number, required, "seconds"}}},
        {"position",
         "Writes where every creature is; with a period, again and again.",
         {{"every", duration, optional, "seconds"}}},
        {"restart",
         "A creature starts over as an egg, as the settings offer it.",
         {{"pet", text, required, "its id"}}},
        {"expect",
         "The trace must have held such a line since the last expect, or the scenario has failed.",
         {{"seen", object, required, "members that the line has, such as {\"event\": \"trash\"}"}}},
        {"quit", "The program ends.", {}},
        {"start", "The program starts; it does so by itself at the first event after begin.", {}},
        {"end", "The scenario ends here.", {}},
    };
    return list;
}

bool isNumber(const Json& value, double lowest, double highest) {
    const auto number = value.number();
    return number && *number >= lowest && *number <= highest;
}

bool isWholeNumber(const Json& value, double lowest) {
    return value.as<std::int64_t>() && isNumber(value, lowest, largest);
}

bool areCoordinates(const Json& value, std::size_t count) {
    const auto* list = value.as<Json::Array>();
    return list && list->size() == count && std::ranges::all_of(*list, [](const Json& v) {
               return isNumber(v, -farthest, farthest);
           });
}

std::optional<Date> parsedDate(const Json& value) {
    const auto* text = value.as<std::string>();
    if (!text) return std::nullopt;
    LocalTime at;
    int second = 0;
    const int read = std::sscanf(text->c_str(), "%4d-%2d-%2dT%2d:%2d:%2d", &at.year, &at.month,
                                 &at.day, &at.hour, &at.minute, &second);
    constexpr std::array<std::size_t, 7> lengths{0, 0, 0, 10, 0, 16, 19};  // by what was read
    if (read < 3 || text->size() != lengths[static_cast<std::size_t>(read)]) return std::nullopt;
    using namespace std::chrono;
    const year_month_day day{year{at.year}, month{static_cast<unsigned>(at.month)},
                             std::chrono::day{static_cast<unsigned>(at.day)}};
    const auto isBelow = [](int part, int limit) { return part >= 0 && part < limit; };
    if (!day.ok() || !isBelow(at.hour, 24) || !isBelow(at.minute, 60) || !isBelow(second, 60)) {
        return std::nullopt;
    }
    return utcDate(at, second);
}

template <typename Check>
bool all(const Json& value, Check check) {
    const auto* list = value.as<Json::Array>();
    return list && std::ranges::all_of(*list, check);
}

bool isText(const Json& value) {
    return value.as<std::string>() != nullptr;
}
bool isRectangle(const Json& value) {
    return areCoordinates(value, 4) && rectOf(value).width >= 0 && rectOf(value).height >= 0;
}

bool isDefault(const Json& value) {
    if (const auto* object = value.as<Json::Object>()) {
        return object->size() == 1 && object->front().first == "date" &&
               object->front().second.number().has_value();
    }
    return isText(value) || value.as<bool>() || value.number() || all(value, isText);
}

bool isIcon(const Json& value) {
    const Json* name = value.find("name");
    const Json* frame = value.find("frame");
    return name && isText(*name) && frame && isRectangle(*frame);
}

bool isOneOf(const Json& value, std::initializer_list<std::string_view> words) {
    const auto* word = value.as<std::string>();
    return word && std::ranges::find(words, *word) != words.end();
}

bool matches(const Json& value, FieldType type) {
    switch (type) {
        case FieldType::number: return isNumber(value, -largest, largest);
        case FieldType::wholeNumber: return isWholeNumber(value, -largest);
        case FieldType::count: return isWholeNumber(value, 0);
        case FieldType::duration: return isNumber(value, 0, longest);
        case FieldType::side: return isNumber(value, 1, largestSide);
        case FieldType::scale: return isNumber(value, 1, largestScale);
        case FieldType::date: return parsedDate(value).has_value();
        case FieldType::boolean: return value.as<bool>() != nullptr;
        case FieldType::text: return isText(value);
        case FieldType::point: return areCoordinates(value, 2);
        case FieldType::rectangle: return isRectangle(value);
        case FieldType::rectangles: return all(value, isRectangle);
        case FieldType::texts: return all(value, isText);
        case FieldType::booleans:
            return all(value, [](const Json& v) { return v.as<bool>() != nullptr; });
        case FieldType::object: return value.as<Json::Object>() != nullptr;
        case FieldType::values: {
            const auto* object = value.as<Json::Object>();
            return object && std::ranges::all_of(*object, [](const auto& member) {
                       return isDefault(member.second);
                   });
        }
        case FieldType::icons: return all(value, isIcon);
        case FieldType::button: return isOneOf(value, {"left", "right", "middle"});
        case FieldType::heat: return isOneOf(value, {"nominal", "fair", "serious", "critical"});
    }
    return false;
}

std::string quoted(std::string_view word) {
    return "\"" + std::string(word) + "\"";
}

/// Why the object's fields do not suit the event, or nothing.
std::optional<std::string> fault(const Json::Object& object, const EventSpec& spec) {
    for (const auto& [name, value] : object) {
        if (name == "at" || name == "event") continue;
        const auto field = std::ranges::find(spec.fields, name, &FieldSpec::name);
        if (field == spec.fields.end()) {
            return quoted(spec.kind) + " has no field " + quoted(name);
        }
        if (!matches(value, field->type)) {
            return quoted(name) + " of " + quoted(spec.kind) + " must be " +
                   std::string(describe(field->type));
        }
    }
    for (const FieldSpec& field : spec.fields) {
        const bool there =
            std::ranges::find(object, field.name, &Json::Member::first) != object.end();
        if (field.required && !there) {
            return quoted(spec.kind) + " needs the field " + quoted(field.name);
        }
    }
    return std::nullopt;
}

std::variant<ScenarioEvent, std::string> parseLine(std::string_view text, Seconds earliest) {
    JsonResult parsed = Json::parse(text);
    if (!parsed) return "no JSON: " + parsed.error.message;
    const auto* object = parsed.value->as<Json::Object>();
    if (!object) return "not a JSON object";
    const Json* at = parsed.value->find("at");
    if (!at || !at->number()) return "needs a time, \"at\", in seconds";
    const Seconds time = *at->number();
    if (!std::isfinite(time) || time < 0) return "\"at\" must not be negative";
    if (time < earliest) return "\"at\" is earlier than the line before";
    const Json* event = parsed.value->find("event");
    const std::string* kind = event ? event->as<std::string>() : nullptr;
    if (!kind) return "needs an \"event\"";
    const auto spec = std::ranges::find(specs(), *kind, &EventSpec::kind);
    if (spec == specs().end()) return "unknown event " + quoted(*kind);
    if (auto reason = fault(*object, *spec)) return *reason;
    return ScenarioEvent{time, *kind, std::move(*parsed.value), 0};
}

}  // namespace

std::span<const EventSpec> eventSpecs() {
    return specs();
}

std::string_view describe(FieldType type) {
    switch (type) {
        case FieldType::number: return "a number";
        case FieldType::wholeNumber: return "a whole number";
        case FieldType::count: return "a whole number, 0 or more";
        case FieldType::duration: return "seconds, 0 to 86400";
        case FieldType::side: return "a number of points, 1 to 8192";
        case FieldType::scale: return "a number from 1 to 4";
        case FieldType::date: return "a date such as \"2026-03-02T10:00:00\"";
        case FieldType::boolean: return "true or false";
        case FieldType::text: return "a text";
        case FieldType::point: return "[x, y]";
        case FieldType::rectangle: return "[x, y, width, height]";
        case FieldType::rectangles: return "a list of [x, y, width, height]";
        case FieldType::texts: return "a list of texts";
        case FieldType::booleans: return "a list of true and false";
        case FieldType::object: return "an object";
        case FieldType::values:
            return "an object of texts, numbers, true, false, lists of texts or {\"date\": "
                   "seconds}";
        case FieldType::icons: return "a list of {\"name\": text, \"frame\": [x, y, w, h]}";
        case FieldType::button: return "\"left\", \"right\" or \"middle\"";
        case FieldType::heat: return "\"nominal\", \"fair\", \"serious\" or \"critical\"";
    }
    return "";
}

std::variant<Scenario, ScenarioError> parseScenario(std::string_view text) {
    Scenario events;
    int number = 0;
    Seconds earliest = 0;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        std::string_view line = text.substr(at, end - at);
        at = end + 1;
        ++number;
        const auto first = line.find_first_not_of(" \t\r");
        if (first == std::string_view::npos || line[first] == '#') continue;
        auto parsed = parseLine(line, earliest);
        if (const auto* reason = std::get_if<std::string>(&parsed)) {
            return ScenarioError{number, *reason};
        }
        ScenarioEvent event = std::get<ScenarioEvent>(std::move(parsed));
        event.line = number;
        if (event.kind == "begin" && !events.empty()) {
            return ScenarioError{number, "\"begin\" must be the first line"};
        }
        if (events.size() >= mostEvents) return ScenarioError{number, "too many events"};
        earliest = event.at;
        events.push_back(std::move(event));
    }
    return events;
}

Point pointOf(const Json& value) {
    const auto& list = *value.as<Json::Array>();
    return {*list[0].number(), *list[1].number()};
}

Date dateOf(const Json& value) {
    return *parsedDate(value);
}

Rect rectOf(const Json& value) {
    const auto& list = *value.as<Json::Array>();
    return {*list[0].number(), *list[1].number(), *list[2].number(), *list[3].number()};
}

}  // namespace quibbits
