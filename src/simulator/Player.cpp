#include "simulator/Player.h"

#include <algorithm>
#include <array>

namespace quibbits {

namespace {

constexpr Seconds pointerSample = 1.0 / 60;
constexpr Seconds shortestPeriod = 1.0 / 60;

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

std::vector<DesktopIcon> iconsOf(const Json& fields) {
    std::vector<DesktopIcon> icons;
    const Json* list = fields.find("icons");
    if (!list) return icons;
    for (const Json& icon : *list->as<Json::Array>()) {
        icons.push_back({textOf(icon, "name"), rectOf(*icon.find("frame"))});
    }
    return icons;
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
    if (const Json* date = fields.find("date")) settings.begin = dateOf(*date);
    settings.seed = static_cast<std::uint64_t>(numberOf(fields, "seed", 1));
    computer_ = std::make_unique<SimulatedComputer>(settings, resources_, text_);
    const bool expects = std::ranges::any_of(
        scenario_, [](const ScenarioEvent& event) { return event.kind == "expect"; });
    if (!options_.trace && !expects) return;
    trace_ = std::make_unique<Trace>(options_.trace, *computer_);
    if (expects) trace_->onLine = [this](const Json& line) { lines_.push_back(line); };
    trace_->followComputer();
}

void Player::play() {
    for (const ScenarioEvent& event : scenario_) {
        if (ended_) break;
        // What stands at time 0 is the computer as the program finds it.
        if (!begun_ && event.at > 0 && !app_) start();
        begun_ = begun_ || event.at > 0 || event.kind == "start";
        advanceTo(event.at);
        apply(event);
    }
    if (ended_) return;
    if (!begun_ && !app_) start();
    begun_ = true;
    advanceTo(computer_->runLoop.now() + options_.lasting);
}

void Player::advanceTo(Instant instant) {
    VirtualRunLoop& loop = computer_->runLoop;
    if (options_.frameEvery > 0 && begun_) {
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
    app_ = std::make_unique<AppDelegate>(computer_->computer(), computer_->panels(),
                                         computer_->viewWindows);
    if (trace_) app_->onCreature = [this](Companion& creature) { trace_->follow(creature); };
    // The wish comes from inside the program, which must have returned before it can go.
    app_->onTerminate = [this] { computer_->runLoop.post([this] { quit(); }); };
    app_->applicationDidFinishLaunching();
    if (trace_ && app_->dial()) trace_->follow(*app_->dial());
}

void Player::quit() {
    if (!app_) return;
    app_->applicationWillTerminate();
    app_.reset();
    computer_->notifications.programEnded();
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
        if (app_) app_->open({textOf(fields, "url")});
    } else if (event.kind == "restart") {
        if (Companion* creature = named(textOf(fields, "pet"))) creature->restart();
    } else if (event.kind == "expect") {
        expect(event);
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
        movePointer(fields, {});
    } else if (event.kind == "press") {
        c.press(buttonOf(fields));
    } else if (event.kind == "release") {
        c.release(buttonOf(fields));
    } else if (event.kind == "drag") {
        c.press(MouseButton::left);
        movePointer(fields, [&c] { c.release(MouseButton::left); });
    } else if (event.kind == "trayClick") {
        c.clickStatusItem(MouseButton::left);
    } else if (event.kind == "trayRightClick") {
        c.clickStatusItem(MouseButton::right);
    } else if (event.kind == "choose") {
        const std::string title = textOf(fields, "title");
        const bool done = c.choose(title);
        if (trace_) trace_->write("choose", {{"title", title}, {"done", done}});
    } else if (event.kind == "use") {
        use(fields);
    } else if (event.kind == "dismiss") {
        if (auto* window = c.viewWindows.titled(textOf(fields, "window"))) window->close();
    } else if (event.kind == "keys") {
        c.pointer.keys = {.command = flagOf(fields, "command"),
                          .option = flagOf(fields, "option"),
                          .control = flagOf(fields, "control"),
                          .shift = flagOf(fields, "shift")};
    } else if (event.kind == "user") {
        c.setUserPresent(flagOf(fields, "present"));
    } else if (event.kind == "touch") {
        c.touchKey();
    } else if (event.kind == "select") {
        c.select(textsOf(fields, "files"), iconsOf(fields));
    } else if (event.kind == "deleteKey") {
        const bool held = c.hotKeys.press(ThunderboltKey::combination());
        if (trace_) trace_->write("deleteKey", {{"held", held}});
    } else if (event.kind == "drop") {
        DragInfo drag{.location = place(fields, "place"), .files = textsOf(fields, "files")};
        if (fields.find("item")) drag.item = textOf(fields, "item");
        const bool taken = c.dropOnStage(std::move(drag));
        if (trace_) trace_->write("drop", {{"taken", taken}});
    } else if (event.kind == "answer") {
        c.notifications.answer(textOf(fields, "identifier"), textOf(fields, "action"));
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
                    numberOf(fields, "scale", 1));
    } else if (event.kind == "screenGone") {
        c.screens.screen.reset();
        c.screens.changed.emit();
    } else if (event.kind == "dock") {
        std::vector<Rect> panels;
        if (const Json* frame = fields.find("frame")) panels.push_back(rectOf(*frame));
        if (const Json* list = fields.find("panels")) {
            for (const Json& panel : *list->as<Json::Array>()) panels.push_back(rectOf(panel));
        }
        c.setPanels(std::move(panels));
    } else if (event.kind == "tray") {
        const Json* frame = fields.find("frame");
        c.statusItem.place = frame ? std::optional(rectOf(*frame)) : std::nullopt;
    } else if (event.kind == "window") {
        WindowInfo info{.process = static_cast<std::int64_t>(numberOf(fields, "process")),
                        .layer = static_cast<int>(numberOf(fields, "layer")),
                        .frame = rectOf(*fields.find("frame"))};
        if (const Json* alpha = fields.find("alpha")) info.alpha = alpha->number();
        c.putWindow(textOf(fields, "id"), info);
    } else if (event.kind == "closeWindow") {
        c.closeWindow(textOf(fields, "id"));
    } else if (event.kind == "front") {
        c.workspace.frontPage.reset();
        const Json* address = fields.find("address");
        if (fields.find("title") || address) {
            c.workspace.frontPage = WebPage{.title = textOf(fields, "title")};
            if (address) c.workspace.frontPage->address = textOf(fields, "address");
        }
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
        if (fields.find("icons")) c.fileBrowser.icons = iconsOf(fields);
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
    } else if (event.kind == "buttons") {
        c.notifications.showsButtons = flagOf(fields, "shown");
    } else if (event.kind == "file") {
        SimulatedFiles::Details details{
            .size = static_cast<std::uint64_t>(std::max(numberOf(fields, "size"), 0.0)),
            .contents = textOf(fields, "contents")};
        if (fields.find("age")) details.created = c.runLoop.date() - numberOf(fields, "age");
        for (const auto& path : textsOf(fields, "paths")) {
            c.files.put(path, details);
            if (flagOf(fields, "stubborn")) c.files.stubborn.insert(path);
        }
    } else if (event.kind == "mount") {
        c.volumes.mount(textOf(fields, "image"), textOf(fields, "place"));
    } else if (event.kind == "eject") {
        c.volumes.unmount(textOf(fields, "place"));
    } else if (event.kind == "clock") {
        c.runLoop.shiftClock(numberOf(fields, "by"));
    } else {
        return false;
    }
    return true;
}

void Player::use(const Json& fields) {
    views::Action::Value value;
    if (fields.find("on")) value = flagOf(fields, "on");
    if (fields.find("choice")) value = textOf(fields, "choice");
    if (fields.find("number")) value = static_cast<std::int64_t>(numberOf(fields, "number"));
    const std::string title = textOf(fields, "window");
    const std::string id = textOf(fields, "id");
    auto* window = computer_->viewWindows.titled(title);
    const bool done = window && window->act(id, std::move(value));
    if (trace_) trace_->write("use", {{"window", title}, {"id", id}, {"done", done}});
}

void Player::movePointer(const Json& fields, std::function<void()> then) {
    SimulatedComputer& c = *computer_;
    const Seconds over = numberOf(fields, "over");
    const Point from = c.pointer.place;
    const Point first = place(fields, "to");
    // A creature that walks is followed; one in the hand goes where the hand goes.
    const auto target = [this, shared = std::make_shared<const Json>(fields), first] {
        const Companion* creature = named(textOf(*shared, "pet"));
        return creature && !creature->presence().isHeld() ? place(*shared, "to") : first;
    };
    const int samples = std::max(static_cast<int>(over / pointerSample), 1);
    for (int i = 1; i <= samples; ++i) {
        const double share = static_cast<double>(i) / samples;
        const auto step = [&c, from, target, share] {
            c.movePointer(from + (target() - from) * share);
        };
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

Companion* Player::named(const std::string& pet) const {
    if (!app_) return nullptr;
    const auto& party = app_->party();
    const auto found =
        std::ranges::find_if(party, [&](const auto& each) { return each->store() == pet; });
    return found == party.end() ? nullptr : found->get();
}

Point Player::place(const Json& fields, std::string_view name) const {
    const Point told = pointOf(*fields.find(name));
    const Companion* creature = named(textOf(fields, "pet"));
    if (!creature || !app_->stage()) return told;
    const Point middle = creature->pet().frame().center();
    const Rect stage = app_->stage()->frame();
    return {stage.x + middle.x + told.x, stage.y + middle.y + told.y};
}

void Player::expect(const ScenarioEvent& event) {
    const Json& wanted = *event.fields.find("seen");
    const auto fits = [&](const Json& line) {
        return std::ranges::all_of(*wanted.as<Json::Object>(), [&](const Json::Member& member) {
            const Json* value = line.find(member.first);
            if (!value) return false;
            const auto number = value->number();
            return *value == member.second || (number && number == member.second.number());
        });
    };
    if (std::ranges::none_of(lines_, fits)) {
        disappointments_.push_back("line " + std::to_string(event.line) + ": nothing was like " +
                                   wanted.dump());
    }
    lines_.clear();
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
    if (every > 0) positions_ = computer_->runLoop.every(std::max(every, shortestPeriod), tell);
}

}  // namespace quibbits
