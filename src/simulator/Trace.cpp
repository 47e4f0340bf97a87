#include "simulator/Trace.h"

#include <cmath>
#include <cstdio>

namespace quibbits {

namespace {

/// Rounded to thousandths, so that a trace reads well and compares between machines.
double brief(double value) {
    return std::round(value * 1000) / 1000;
}

std::string text(const LocalTime& time) {
    char buffer[40];
    std::snprintf(buffer, sizeof buffer, "%04d-%02d-%02dT%02d:%02d", time.year, time.month,
                  time.day, time.hour, time.minute);
    return buffer;
}

Json json(const DefaultsValue& value) {
    if (const auto* flag = std::get_if<bool>(&value)) return *flag;
    if (const auto* whole = std::get_if<std::int64_t>(&value)) return *whole;
    if (const auto* real = std::get_if<double>(&value)) return *real;
    if (const auto* words = std::get_if<std::string>(&value)) return *words;
    if (const auto* date = std::get_if<Date>(&value)) {
        return Json::Object{{"date", date->secondsSince1970}};
    }
    Json::Array list;
    for (const auto& word : std::get<std::vector<std::string>>(value)) list.emplace_back(word);
    return list;
}

Json json(const Option& option) {
    Json::Array reasons;
    double product = 1;
    for (const Reason& reason : option.reasons) {
        reasons.emplace_back(Json::Array{std::string(reason.label), reason.value});
        product *= reason.value;
    }
    Json::Object fields{{"intent", std::string(rawValue(option.intent))},
                        {"score", option.score},
                        {"reasons", std::move(reasons)}};
    if (product != 0) fields.emplace_back("base", option.score / product);
    return fields;
}

}  // namespace

void Trace::write(const std::string& event, Json::Object fields) {
    Json::Object line{{"t", brief(computer_.runLoop.now())},
                      {"local", text(computer_.runLoop.localTime(computer_.runLoop.date()))},
                      {"event", event}};
    for (auto& member : fields) line.push_back(std::move(member));
    const Json whole(std::move(line));
    if (out_) *out_ << whole.dump() << '\n';
    if (onLine) onLine(whole);
}

void Trace::followComputer() {
    computer_.defaults.onChange = [this](const std::string& key, const DefaultsValue* value) {
        if (value)
            write("saved", {{"key", key}, {"value", json(*value)}});
        else
            write("removed", {{"key", key}});
    };
    computer_.notifications.onSend = [this](const NotificationRequest& request) {
        Json::Array paths;
        for (const auto& path : request.paths) paths.emplace_back(path);
        write("notification", {{"identifier", request.identifier},
                               {"title", request.title},
                               {"body", request.body},
                               {"category", request.category},
                               {"pet", request.pet},
                               {"paths", std::move(paths)}});
    };
    computer_.notifications.onRemove = [this](const std::string& identifier) {
        write("withdrawn", {{"identifier", identifier}});
    };
    computer_.files.onTrash = [this](const std::string& path, bool moved) {
        write("trash", {{"path", path}, {"moved", moved}});
    };
    computer_.statusItem.onPopUp = [this](const Menu& opened) { menu(opened); };
    computer_.panels().onPopUp = [this](const Menu& opened) { menu(opened); };
}

void Trace::follow(PartyDial& dial) {
    dial.onOpened = [this] { write("dial", {{"open", true}}); };
    dial.onClosed = [this] { write("dial", {{"open", false}}); };
}

void Trace::menu(const Menu& menu) {
    Json::Array lines;
    for (const MenuItem& item : menu.items) lines.emplace_back(item.title);
    write("menu", {{"lines", std::move(lines)}});
}

void Trace::follow(Companion& creature) {
    creature.listen(
        {.onDecision = [this](const Companion& who, const Mind& mind) { decision(who, mind); },
         .onUtterance =
             [this](const Companion& who, const Utterance& said) {
                 Json::Object fields{{"pet", who.store()},
                                     {"face", std::string(rawValue(said.face))}};
                 if (said.speaker) fields.emplace_back("speaker", *said.speaker);
                 if (said.caption) fields.emplace_back("caption", *said.caption);
                 fields.emplace_back("seconds", said.seconds);
                 write("bubble", std::move(fields));
             }});
}

void Trace::decision(const Companion& creature, const Mind& mind) {
    const Why why = creature.why();
    Json::Array options;
    for (const Option& option : why.options) options.push_back(json(option));
    const Point at = creature.pet().position();
    write("decision", {{"pet", creature.store()},
                       {"choice", std::string(rawValue(*why.choice))},
                       {"mood", std::string(rawValue(creature.mood()))},
                       {"energy", brief(mind.energy)},
                       {"hunger", brief(mind.hunger)},
                       {"friendship", brief(creature.needs().friendship)},
                       {"boredom", brief(mind.boredom)},
                       {"level", creature.level()},
                       {"x", brief(at.x)},
                       {"y", brief(at.y)},
                       {"options", std::move(options)}});
}

void Trace::position(const Companion& creature) {
    const Point at = creature.pet().position();
    write("position", {{"pet", creature.store()},
                       {"x", brief(at.x)},
                       {"y", brief(at.y)},
                       {"out", creature.presence().isOut()},
                       {"facing", creature.pet().facesRight() ? "right" : "left"}});
}

}  // namespace quibbits
