#pragma once
// A scenario file: what the simulated user and world do, and when. One JSON object a line; each has
// a time, an event and that event's fields. Reading checks every field, so that a player meets
// nothing malformed.

#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "codecs/Json.h"
#include "platform/Date.h"

namespace quibbits {

enum class FieldType {
    number,       // up to a thousand million either way, as all that follow
    wholeNumber,  // as is the next
    count,        // not negative
    duration,     // a number of seconds, up to a day
    side,         // of a screen, in points
    scale,        // device pixels per point
    date,         // "2026-03-02", with or without "T10:00" or "T10:00:30"
    boolean,
    text,
    point,       // [x, y], up to a million points away
    rectangle,   // [x, y, width, height], the sizes not negative
    rectangles,  // a list of them
    texts,       // a list of texts
    booleans,    // a list of true and false
    object,      // an object of anything
    values,  // an object of defaults: texts, numbers, true, false, lists of texts, {"date": …}
    icons,   // a list of {"name": text, "frame": rectangle}
    button,  // "left", "right" or "middle"
    heat,    // "nominal", "fair", "serious" or "critical"
};

struct FieldSpec {
    std::string_view name;
    FieldType type;
    bool required;
    std::string_view help;
};

/// One kind of event and the fields that it may have.
struct EventSpec {
    std::string_view kind;
    std::string_view help;
    std::vector<FieldSpec> fields;
};
std::span<const EventSpec> eventSpecs();
/// How a field's type is written, for the help.
std::string_view describe(FieldType type);

struct ScenarioEvent {
    Seconds at = 0;  // from the scenario's beginning
    std::string kind;
    Json fields;
    int line = 0;
};

struct ScenarioError {
    int line = 0;  // 0 for the file as a whole
    std::string reason;
};

using Scenario = std::vector<ScenarioEvent>;

/// Blank lines and lines that begin with # are passed over. Times never go back from one line to
/// the next.
std::variant<Scenario, ScenarioError> parseScenario(std::string_view text);

// Fields that parseScenario has checked.
Point pointOf(const Json& value);
Rect rectOf(const Json& value);
/// The local date and time, as if it were UTC.
Date dateOf(const Json& value);

}  // namespace quibbits
