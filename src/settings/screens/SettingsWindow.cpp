#include "settings/screens/SettingsWindow.h"

#include <algorithm>
#include <utility>

namespace quibbits {

using namespace screens;

namespace {

constexpr Size windowSize{760, 680};
constexpr std::int64_t tabs = 4;

/// What follows the prefix, or nothing when the identity begins otherwise.
std::optional<std::string> after(std::string_view prefix, const std::string& id) {
    if (!id.starts_with(prefix)) return std::nullopt;
    return id.substr(prefix.size());
}

}  // namespace

namespace screens {

Page Page::named(const std::string& word) {
    if (word == "party") return {Kind::party, {}};
    if (word == "general") return {Kind::general, {}};
    if (word == "credits") return {Kind::credits, {}};
    return {Kind::quibbit, word};
}

std::string Page::name() const {
    switch (kind) {
        case Kind::party: return "party";
        case Kind::general: return "general";
        case Kind::credits: return "credits";
        case Kind::quibbit: break;
    }
    return creature;
}

namespace {

View sidebarRow(std::string id, std::string title, std::string symbol, bool startsGroup = false) {
    return {.content = views::SidebarRow{.title = std::move(title),
                                         .symbol = std::move(symbol),
                                         .startsGroup = startsGroup},
            .id = std::move(id)};
}

View detail(const Computer& computer, const std::vector<PetControls>& party,
            const SettingsState& state, Previews& previews) {
    const Page page = state.page.value_or(Page{});
    switch (page.kind) {
        case Page::Kind::party: return partyGrid(party);
        case Page::Kind::general: return general(computer, state.installed);
        case Page::Kind::credits: return credits(computer.resources);
        case Page::Kind::quibbit: break;
    }
    const auto shown = std::ranges::find(party, page.creature, &PetControls::id);
    if (shown == party.end()) return {.content = views::Column{}, .id = "nobody"};
    return quibbit(computer, *shown, state.quibbit, previews);
}

}  // namespace

View settings(const Computer& computer, const std::vector<PetControls>& party,
              const SettingsState& state, Previews& previews) {
    View split{.content = views::Split{.chosen = state.page ? state.page->name() : ""},
               .id = std::string(choosesPage)};
    split.children.push_back(sidebarRow("party", "Party", "circle.grid.3x3.fill"));
    for (const PetControls& each : party) {
        const PetStats stats = each.stats();
        split.children.push_back(
            {.content = views::SidebarRow{.title = stats.name,
                                          .picture = stats.portrait,
                                          .startsGroup = &each == &party.front()},
             .id = each.id});
    }
    split.children.push_back(sidebarRow("general", "General", "gearshape", true));
    split.children.push_back(sidebarRow("credits", "Credits", "heart"));
    View page = detail(computer, party, state, previews);
    page.id.insert(0, "page ");  // the rows have the bare names
    split.children.push_back(std::move(page));
    return split;
}

}  // namespace screens

bool storeChoice(UserDefaults& defaults, const views::Action& action) {
    const auto key = after(storesPrefix, action.id);
    if (!key) return false;
    if (const auto* flag = action.as<bool>()) defaults.set(*key, *flag);
    if (const auto* number = action.as<std::int64_t>()) defaults.set(*key, *number);
    if (const auto* word = action.as<std::string>()) defaults.set(*key, *word);
    return true;
}

bool changeBehindApps(UserDefaults& defaults, const views::Action& action) {
    if (const auto id = after(leavesPrefix, action.id)) {
        Settings::removeBehindApp(defaults, *id);
        return true;
    }
    if (action.id != addsApplications) return false;
    if (const auto* ids = action.as<std::vector<std::string>>()) {
        Settings::addBehindApps(defaults, *ids);
    }
    return true;
}

SettingsWindow::SettingsWindow(const Computer& computer, views::ViewWindows& windows)
    : computer_(computer), windows_(windows) {}

SettingsWindow::~SettingsWindow() = default;

void SettingsWindow::show(std::vector<PetControls> party) {
    if (window_) return window_->bringToFront();
    party_ = std::move(party);
    const auto first = computer_.defaults.string("QuibSettings");
    state_ = {};
    turnTo(first ? Page::named(*first) : Page{});
    window_ = windows_.open({.title = "Quibbits", .size = windowSize, .resizable = true}, tree());
    window_->onAction = lifetime_.guard([this](const views::Action& action) { act(action); });
    following_ = std::make_unique<Following>(computer_, [this] { refresh(); });
    finishPreviews();
    window_->onClose = lifetime_.guard([this] {
        following_.reset();
        rest_.cancel();
        window_.reset();
        state_ = {};
        party_.clear();
        previews_ = {};
        previewed_.reset();
    });
}

void SettingsWindow::turnTo(Page page) {
    if (page != state_.page) {
        const std::int64_t tab = computer_.defaults.integer("QuibSettingsTab");
        state_.quibbit = {.tab = tab >= 0 && tab < tabs ? tab : 0};
    }
    if (page.kind == Page::Kind::general) state_.installed = computer_.workspace.installed();
    state_.page = std::move(page);
}

const PetControls* SettingsWindow::controls() const {
    if (!state_.page || state_.page->kind != Page::Kind::quibbit) return nullptr;
    const auto shown = std::ranges::find(party_, state_.page->creature, &PetControls::id);
    return shown == party_.end() ? nullptr : &*shown;
}

views::View SettingsWindow::tree() {
    if (const PetControls* shown = controls()) {
        const auto form = std::pair(shown->id, shown->stats().stage);
        if (previewed_ != form) previews_ = {};
        previewed_ = form;
    }
    previews_.isWhole = true;
    return settings(computer_, party_, state_, previews_);
}

void SettingsWindow::refresh() {
    if (!window_) return;
    window_->update(tree());
    finishPreviews();
}

/// Reading all of them would hold up the page, so they come in a few parts.
void SettingsWindow::finishPreviews() {
    constexpr Seconds untilSeen = 0.03;
    if (previews_.isWhole || !controls()) return;
    rest_ = computer_.runLoop.timer(untilSeen, [this] { refresh(); });
}

void SettingsWindow::act(const views::Action& action) {
    if (const auto address = after(opensPrefix, action.id)) {
        if (onOpen) onOpen(*address);
    } else if (action.id == showsWelcome) {
        if (onWelcome) onWelcome();
    } else if (action.id == turnsQuiet) {
        const bool quiet = computer_.defaults.boolean("focus.on");
        if (onOpen) onOpen(quiet ? "quibbits://unfocus" : "quibbits://focus");
    } else if (!changeSession(computer_, action) && !storeChoice(computer_.defaults, action) &&
               !changeBehindApps(computer_.defaults, action)) {
        actOnPage(action);
    }
    refresh();
}

void SettingsWindow::actOnPage(const views::Action& action) {
    if (action.id == choosesPage) {
        if (const auto* page = action.as<std::string>()) turnTo(Page::named(*page));
    } else if (const auto creature = after(creaturePrefix, action.id)) {
        turnTo({Page::Kind::quibbit, *creature});
    } else if (action.id == choosesTab) {
        const auto* tab = action.as<std::int64_t>();
        if (tab && *tab >= 0 && *tab < tabs) state_.quibbit = {.tab = *tab};
    } else if (action.id == choosesGuidePage) {
        const auto* name = action.as<std::string>();
        const auto page = name ? guidePageNamed(*name) : std::nullopt;
        if (page) state_.quibbit = {.tab = state_.quibbit.tab, .guide = *page};
    } else if (action.id == choosesForm) {
        if (const auto* form = action.as<std::string>()) state_.quibbit.form = *form;
    } else if (action.id == startsOver) {
        state_.quibbit.confirmsRestart = true;
    } else if (action.id == confirmsStartOver) {
        state_.quibbit.confirmsRestart = false;
        const auto* yes = action.as<bool>();
        if (const PetControls* shown = controls(); shown && yes && *yes) shown->restart();
    } else if (const auto name = after(playsPrefix, action.id)) {
        if (const PetControls* shown = controls()) shown->perform(*name);
    }
}

}  // namespace quibbits
