// What a person reads on this kind of desktop never names the things of another.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

#include "desktop/words/DesktopWords.h"
#include "support/LivingCreature.h"
#include "window/Symbols.h"

namespace quibbits {
namespace {

using Texts = std::set<std::string>;

bool namesAnotherDesktop(const std::string& text) {
    static constexpr std::array foreign{
        "Mac",      "macOS",    "Finder",          "Apple", "Dock", "Shortcuts",
        "menu bar", "trackpad", "System Settings", "⌘",     "⌥",    "⌫"};
    const auto isLetter = [&](std::size_t at) {
        return at < text.size() && std::isalpha(text[at]);
    };
    return std::ranges::any_of(foreign, [&](const std::string& word) {
        for (auto at = text.find(word); at != std::string::npos; at = text.find(word, at + 1)) {
            // "Mac", but not in "Machine"
            if ((at == 0 || !isLetter(at - 1)) && !isLetter(at + word.size())) return true;
        }
        return false;
    });
}

/// The texts in quotation marks of a source, each whole, without comments.
void collectLiterals(const std::string& source, Texts& literals) {
    std::string whole;
    const auto finish = [&] {
        if (!whole.empty()) literals.insert(std::exchange(whole, {}));
    };
    for (std::size_t i = 0; i < source.size(); ++i) {
        if (source.compare(i, 2, "//") == 0) {
            i = source.find('\n', i);
        } else if (source[i] == '\'') {
            finish();
            i = source.find('\'', i + (source[i + 1] == '\\' ? 3 : 2));
        } else if (source[i] == '"') {
            for (++i; source[i] != '"'; ++i) {
                if (source[i] == '\\') ++i;
                whole += source[i];
            }
        } else if (!std::isspace(static_cast<unsigned char>(source[i]))) {
            finish();
        }
        if (i == std::string::npos) break;
    }
    finish();
}

/// Everything that the core has in quotation marks, file names and identities left out.
Texts literalsOfTheCore() {
    Texts literals;
    for (const char* folder : {"aware", "app", "body", "brain", "creature", "dial", "effects",
                               "menus", "party", "rules", "settings", "species", "stage"}) {
        const auto root = std::filesystem::path(QUIBBITS_SOURCE_DIR) / "src" / folder;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
            const auto kind = entry.path().extension();
            if (kind != ".cpp" && kind != ".h") continue;
            std::stringstream source;
            source << std::ifstream(entry.path()).rdbuf();
            collectLiterals(source.str(), literals);
        }
    }
    std::erase_if(literals, [](const std::string& text) { return text.starts_with('/'); });
    return literals;
}

struct Form {
    std::string store;
    std::string stage;
    std::string form;
};

const std::array forms{Form{"pet", "egg", ""},
                       Form{"pet", "mizzle", ""},
                       Form{"pet", "sparrel", ""},
                       Form{"pet", "thrummet", ""},
                       Form{"pet", "thrummet", "coralis"},
                       Form{"umbrool", "wispul", ""},
                       Form{"umbrool", "gloamer", ""},
                       Form{"umbrool", "umbrool", ""}};

/// A walk through all that a person can open, from a creature of one form.
class Walk : public LivingCreature {
public:
    explicit Walk(const Form& form)
        : LivingCreature({.store = form.store,
                          .stage = form.stage,
                          .defaults = {{form.store + ".form", form.form},
                                       {form.store + ".exp", 20000.0},
                                       {"QuibSettings", form.store}}}) {}

    std::vector<views::View> screens() {
        std::vector<views::View> seen;
        for (auto* guide = computer.viewWindows.titled("Welcome to Quibbits"); guide;
             guide = computer.viewWindows.titled("Welcome to Quibbits")) {
            seen.push_back(guide->tree);
            guide->act("next");
        }
        auto* settings = computer.viewWindows.titled("Quibbits");
        const auto look = [&] { seen.push_back(settings->tree); };
        for (std::int64_t tab = 0; tab < 4; ++tab) {
            settings->act("tab", tab);
            look();
            for (const char* page : {"Evolution", "Growth", "Traits", "Moves"}) {
                if (settings->act("guide", std::string(page))) look();
            }
        }
        for (const char* page : {"party", "general", "credits"}) {
            settings->act("sidebar", std::string(page));
            look();
        }
        return seen;
    }
};

TEST(OnThisDesktop, NoScreenNamesTheThingsOfAnother) {
    for (const Form& form : forms) {
        const auto screens = Walk(form).screens();
        EXPECT_GE(screens.size(), 8u + 4u + 3u) << "all of them were seen";
        for (const views::View& screen : screens) {
            for (const std::string& text : views::texts(words::worded(screen))) {
                EXPECT_FALSE(namesAnotherDesktop(text)) << text;
            }
        }
    }
}

void collectSymbols(const views::View& view, Texts& symbols) {
    if (const auto* fact = view.as<views::Fact>()) {
        symbols.insert({fact->symbol, fact->valueSymbol});
    }
    if (const auto* picture = view.as<views::Picture>()) symbols.insert(picture->symbol);
    if (const auto* tab = view.as<views::Tab>()) symbols.insert(tab->symbol);
    if (const auto* row = view.as<views::SidebarRow>()) symbols.insert(row->symbol);
    if (const auto* button = view.as<views::Button>()) symbols.insert(button->symbol);
    for (const views::View& child : view.children) collectSymbols(child, symbols);
}

TEST(EveryScreen, ShowsOnlySymbolsThatAreDrawn) {
    Texts symbols;
    for (const Form& form : forms) {
        for (const views::View& screen : Walk(form).screens()) collectSymbols(screen, symbols);
    }
    symbols.erase("");
    EXPECT_GE(symbols.size(), 30u) << "they were collected";
    for (const std::string& symbol : symbols) {
        EXPECT_TRUE(window::isKnownSymbol(symbol)) << symbol;
    }
}

/// Spoken lines, notifications, menus and the dial included.
TEST(OnThisDesktop, NoTextOfTheProgramNamesTheThingsOfAnother) {
    const auto isPieceOfARow = [](const std::string& text) {
        return std::ranges::any_of(words::rows(), [&](const words::Row& row) {
            return row.original != text && row.original.find(text) != std::string::npos;
        });
    };
    const Texts literals = literalsOfTheCore();
    ASSERT_TRUE(literals.contains("Phew… your Mac's burning up.")) << "the sources are read";
    for (const std::string& text : literals) {
        EXPECT_TRUE(!namesAnotherDesktop(words::worded(text)) || isPieceOfARow(text)) << text;
    }
}

TEST(EveryRow, IsATextOfTheProgram) {
    Texts known = literalsOfTheCore();
    for (const Form& form : forms) {
        for (const views::View& screen : Walk(form).screens()) {
            for (const std::string& text : views::texts(screen)) known.insert(text);
        }
    }
    for (const words::Row& row : words::rows()) {
        EXPECT_TRUE(known.contains(std::string(row.original))) << row.original;
        EXPECT_NE(row.original, row.here);
    }
}

bool hasEmptyLine(const views::View& view) {
    const auto* text = view.as<views::Text>();
    return (text && text->text.empty()) || std::ranges::any_of(view.children, hasEmptyLine);
}

TEST(WhatIsOfNoUseHere, IsLeftOutWhole) {
    Walk walk(forms[2]);
    walk.screens();
    auto* settings = walk.computer.viewWindows.titled("Quibbits");
    settings->act("sidebar", std::string("general"));
    constexpr const char* button = "open:/System/Applications/Shortcuts.app";
    ASSERT_NE(views::find(settings->tree, button), nullptr);
    const views::View here = words::worded(settings->tree);
    EXPECT_EQ(views::find(here, button), nullptr);
    const views::View& section = *views::find(here, "focus section");
    EXPECT_FALSE(hasEmptyLine(section)) << "and nothing is left in its place";
    const auto texts = views::texts(section);
    EXPECT_TRUE(std::ranges::find(texts, "quibbits focus") != texts.end());
}

void collectTexts(const Layer& layer, std::string& all) {
    if (const auto* text = std::get_if<Text>(&layer.model().content)) {
        for (const auto& run : text->text.runs) all += run.text;
    }
    for (const LayerRef& below : layer.sublayers()) collectTexts(*below, all);
}

TEST(ABubble, SaysTheLineInThisDesktopsWords) {
    LivingCreature life({});
    life.text.wording = [](const std::string& text) { return words::worded(text); };
    life.pet().showFace({.caption = "Phew… your Mac's burning up.", .seconds = 5});
    life.advance(2);
    std::string shown;
    collectTexts(life.pet().node(), shown);
    EXPECT_NE(shown.find("Phew… your computer's burning up."), std::string::npos) << shown;
}

TEST(OtherTexts, StayAsTheyAre) {
    EXPECT_EQ(words::worded("Hi there!"), "Hi there!");
    EXPECT_EQ(words::worded(std::string()), "");
    const NotificationRequest request{.identifier = "hunger",
                                      .title = "Your Mac",
                                      .body = "Drag a berry onto it from the menu bar dial.",
                                      .paths = {"Your Mac"}};
    const NotificationRequest here = words::worded(request);
    EXPECT_EQ(here.title, "Your computer");
    EXPECT_EQ(here.body, "Drag a berry onto it from the dial in the tray.");
    EXPECT_EQ(here.paths, request.paths) << "names of files are nobody's words";
}

}  // namespace
}  // namespace quibbits
