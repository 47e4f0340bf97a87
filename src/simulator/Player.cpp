#include "simulator/Player.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace quibbits {

namespace {

constexpr Seconds pointerSample = 1.0 / 60;

std::string textOf(const Json& fields, std::string_view name, std::string otherwise = {}) {
    const Json* value = fields.find(name);
    const auto* words = value ? value->as<std::string>() : nullptr;
    return words ? *words : otherwise;
}

double numberOf(const Json& fields, std::string_view name, double otherwise = 0) {
    const Json* value = fields.find(name);
    return value ? value->number().value_or(otherwise) : otherwise;
}

bool flagOf(const Json& fields, std::string_view name) {
    const Json* value = fields.find(name);
    const bool* flag = value ? value->as<bool>() : nullptr;
    return flag && *flag;
}

std::vector<std::string> textsOf(const Json& fields, std::string_view name) {
    std::vector<std::string> texts;
    const Json* value = fields.find(name);
    const auto* list = value ? value->as<Json::Array>() : nullptr;
    if (list) {
        for (const Json& text : *list) texts.push_back(*text.as<std::string>());
    }
    return texts;
}

MouseButton buttonOf(const Json& fields) {
    const std::string name = textOf(fields, "button", "left");
    if (name == "right") return MouseButton::right;
    return name == "middle" ? MouseButton::middle : MouseButton::left;
}

Application applicationOf(const Json& fields) {
    return {.id = textOf(fields, "application"),
            .process = static_cast<std::int64_t>(numberOf(fields, "process"))};
}

DefaultsValue defaultOf(const Json& value) {
    if (const auto* flag = value.as<bool>()) return *flag;
    if (const auto* whole = value.as<std::int64_t>()) return *whole;
    if (const auto* real = value.as<double>()) return *real;
    if (const auto* words = value.as<std::string>()) return *words;
    if (const Json* date = value.find("date")) return Date{*date->number()};
    std::vector<std::string> list;
    for (const Json& word : *value.as<Json::Array>()) list.push_back(*word.as<std::string>());
    return list;
}

std::optional<Date> dateOf(const std::string& text) {
    LocalTime time;
    int second = 0;
    const int read = std::sscanf(text.c_str(), "%d-%d-%dT%d:%d:%d", &time.year, &time.month,
                                 &time.day, &time.hour, &time.minute, &second);
    if (read < 3) return std::nullopt;
    return utcDate(time, second);
}

}  // namespace

Player::Player(const Scenario& scenario, const Options& options, Resources& resources,
               TextMeasure& text)
    : scenario_(scenario), options_(options), resources_(resources), text_(text) {
    const bool begins = !scenario_.empty() && scenario_.front().kind == "begin";
    begin(begins ? scenario_.front().fields : Json());
}

Player::~Player() {
    quit();
}

void Player::begin(const Json& fields) {
    SimulatedComputer::Settings settings{.painting = options_.painting};
    if (const auto date = dateOf(textOf(fields, "date"))) settings.begin = *date;
    settings.seed = static_cast<std::uint64_t>(numberOf(fields, "seed", 1));
    computer_ = std::make_unique<SimulatedComputer>(settings, resources_, text_);
    if (options_.trace) {
        trace_ = std::make_unique<Trace>(*options_.trace, *computer_);
        trace_->followComputer();
    }
}

void Player::play() {
    bool started = false;
    for (const ScenarioEvent& event : scenario_) {
        if (ended_) break;
        // What stands at time 0 is the computer as the program finds it.
        if (!started && event.at > 0 && !app_) start();
        started = started || event.at > 0 || event.kind == "start";
        advanceTo(event.at);
        apply(event);
    }
    if (ended_) return;
    if (!started && !app_) start();
    advanceTo(computer_->runLoop.now() + options_.lasting);
}

void Player::advanceTo(Instant instant) {
    VirtualRunLoop& loop = computer_->runLoop;
    if (options_.frameEvery > 0) {
        for (; nextFrame_ <= instant; nextFrame_ += options_.frameEvery) {
            loop.advanceTo(std::max(nextFrame_, loop.now()));
            if (options_.onFrame) options_.onFrame(*computer_);
        }
    }
    loop.advanceTo(instant);
}

void Player::start() {
    if (app_) return;
    if (trace_) trace_->write("start");
    app_ = std::make_unique<AppDelegate>(computer_->computer(), computer_->panels());
    if (trace_) app_->onCreature = [this](Companion& creature) { trace_->follow(creature); };
    app_->applicationDidFinishLaunching();
}

void Player::quit() {
    if (!app_) return;
    app_->applicationWillTerminate();
    app_.reset();
    if (trace_) trace_->write("quit");
}

void Player::apply(const ScenarioEvent& event) {
    if (event.kind == "begin") return;
    if (applyToProgram(event) || applyToUser(event) || applyToDesktop(event)) return;
    applyToMachine(event);
}

bool Player::applyToProgram(const ScenarioEvent& event) {
    const Json& fields = event.fields;
    if (event.kind == "defaults") {
        writeDefaults(fields);
    } else if (event.kind == "start") {
        start();
    } else if (event.kind == "quit") {
        quit();
    } else if (event.kind == "end") {
        ended_ = true;
    } else if (event.kind == "address") {
        open(textOf(fields, "url"));
    } else if (event.kind == "position") {
        tellPositions(numberOf(fields, "every"));
    } else {
        return false;
    }
    return true;
}

bool Player::applyToUser(const ScenarioEvent& event) {
    const Json& fields = event.fields;
    SimulatedComputer& c = *computer_;
    if (event.kind == "pointer") {
        movePointer(pointOf(*fields.find("to")), numberOf(fields, "over"), {});
    } else if (event.kind == "press") {
        c.press(buttonOf(fields));
    } else if (event.kind == "release") {
        c.release(buttonOf(fields));
    } else if (event.kind == "drag") {
        c.press(MouseButton::left);
        movePointer(pointOf(*fields.find("to")), numberOf(fields, "over"),
                    [&c] { c.release(MouseButton::left); });
    } else if (event.kind == "keys") {
        c.pointer.keys = {.command = flagOf(fields, "command"),
                          .option = flagOf(fields, "option"),
                          .control = flagOf(fields, "control"),
                          .shift = flagOf(fields, "shift")};
    } else if (event.kind == "user") {
        c.setUserPresent(flagOf(fields, "present"));
    } else if (event.kind == "touch") {
        c.touchKey();
    } else if (event.kind == "drop") {
        DragInfo drag{.location = pointOf(*fields.find("place")), .files = textsOf(fields, "files")};
        if (fields.find("item")) drag.item = textOf(fields, "item");
        const bool taken = c.dropOnStage(std::move(drag));
        if (trace_) trace_->write("drop", {{"taken", taken}});
    } else if (event.kind == "answer") {
        const auto request = c.notifications.delivered.find(textOf(fields, "identifier"));
        if (request != c.notifications.delivered.end() && c.notifications.onResponse) {
            c.notifications.onResponse(
                {textOf(fields, "action"), request->second.pet, request->second.paths});
        }
    } else {
        return false;
    }
    return true;
}

bool Player::applyToDesktop(const ScenarioEvent& event) {
    const Json& fields = event.fields;
    SimulatedComputer& c = *computer_;
    if (event.kind == "screen") {
        c.setScreen({numberOf(fields, "width"), numberOf(fields, "height")},
                    std::max(numberOf(fields, "scale", 1), 1.0));
    } else if (event.kind == "screenGone") {
        c.screens.screen.reset();
        c.screens.changed.emit();
    } else if (event.kind == "dock") {
        const Json* frame = fields.find("frame");
        c.setDock(frame ? std::optional(rectOf(*frame)) : std::nullopt);
    } else if (event.kind == "window") {
        WindowInfo info{.process = static_cast<std::int64_t>(numberOf(fields, "process")),
                        .layer = static_cast<int>(numberOf(fields, "layer")),
                        .frame = rectOf(*fields.find("frame"))};
        if (const Json* alpha = fields.find("alpha")) info.alpha = alpha->number();
        c.putWindow(textOf(fields, "id"), info);
    } else if (event.kind == "closeWindow") {
        c.closeWindow(textOf(fields, "id"));
    } else if (event.kind == "front") {
        c.bringToFront(applicationOf(fields));
    } else if (event.kind == "launch") {
        c.workspace.applications.push_back(applicationOf(fields));
        c.workspace.launched.emit();
    } else if (event.kind == "terminate") {
        const auto process = static_cast<std::int64_t>(numberOf(fields, "process"));
        std::erase_if(c.workspace.applications,
                      [&](const Application& a) { return a.process == process; });
        c.workspace.terminated.emit();
    } else if (event.kind == "space") {
        c.workspace.spaceChanged.emit();
    } else if (event.kind == "icons") {
        c.fileBrowser.icons.reset();
        if (const Json* list = fields.find("icons")) {
            c.fileBrowser.icons.emplace();
            for (const Json& icon : *list->as<Json::Array>()) {
                c.fileBrowser.icons->push_back({textOf(icon, "name"), rectOf(*icon.find("frame"))});
            }
        }
    } else {
        return false;
    }
    return true;
}

bool Player::applyToMachine(const ScenarioEvent& event) {
    const Json& fields = event.fields;
    SimulatedComputer& c = *computer_;
    if (event.kind == "battery") {
        std::optional<int> level;
        if (fields.find("level")) level = static_cast<int>(numberOf(fields, "level"));
        c.setBattery(level, flagOf(fields, "charging"));
    } else if (event.kind == "heat") {
        constexpr std::array<std::string_view, 4> states{"nominal", "fair", "serious", "critical"};
        const auto state = std::ranges::find(states, textOf(fields, "state"));
        c.setHeat(static_cast<ThermalState>(state - states.begin()));
    } else if (event.kind == "network") {
        c.setNetwork(flagOf(fields, "online"));
    } else if (event.kind == "camera") {
        std::vector<bool> inUse;
        for (const Json& on : *fields.find("inUse")->as<Json::Array>()) {
            inUse.push_back(*on.as<bool>());
        }
        c.setCameras(std::move(inUse));
    } else if (event.kind == "music") {
        c.setMusic(fields.find("state") ? std::optional(textOf(fields, "state")) : std::nullopt);
    } else if (event.kind == "refuse") {
        c.notifications.refusal = textOf(fields, "reason");
    } else if (event.kind == "file") {
        for (const auto& path : textsOf(fields, "paths")) {
            c.files.files.insert(path);
            if (flagOf(fields, "stubborn")) c.files.stubborn.insert(path);
        }
    } else if (event.kind == "clock") {
        c.runLoop.shiftClock(numberOf(fields, "by"));
    } else {
        return false;
    }
    return true;
}

void Player::movePointer(Point to, Seconds over, std::function<void()> then) {
    SimulatedComputer& c = *computer_;
    const Point from = c.pointer.place;
    const int samples = std::max(static_cast<int>(over / pointerSample), 1);
    for (int i = 1; i <= samples; ++i) {
        const double share = static_cast<double>(i) / samples;
        const auto step = [&c, from, to, share] { c.movePointer(from + (to - from) * share); };
        if (over <= 0)
            step();
        else
            c.runLoop.after(over * share, step);
    }
    if (!then) return;
    if (over <= 0)
        then();
    else
        c.runLoop.after(over, std::move(then));
}

void Player::open(const std::string& url) {
    constexpr std::string_view scheme = "quibbits:";
    if (!app_ || !url.starts_with(scheme)) return;
    std::string_view rest = std::string_view(url).substr(scheme.size());
    if (rest.starts_with("//")) rest.remove_prefix(2);
    const std::string host(rest.substr(0, rest.find_first_of("/?#")));
    app_->hear(host.empty() ? "hello" : host);
}

void Player::writeDefaults(const Json& fields) {
    if (const Json* set = fields.find("set")) {
        for (const auto& [key, value] : *set->as<Json::Object>()) {
            computer_->defaults.set(key, defaultOf(value));
        }
    }
    for (const auto& key : textsOf(fields, "remove")) computer_->defaults.remove(key);
}

void Player::tellPositions(Seconds every) {
    const auto tell = [this] {
        if (!trace_ || !app_) return;
        for (const auto& creature : app_->party()) trace_->position(*creature);
    };
    tell();
    if (every > 0) positions_ = computer_->runLoop.every(every, tell);
}

}  // namespace quibbits
