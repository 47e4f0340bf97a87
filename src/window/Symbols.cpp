#include "Symbols.h"

#include <algorithm>
#include <array>

namespace quibbits::window {
namespace {

struct Symbol {
    std::string_view name;
    const char* glyph;
};

constexpr std::array symbols{
    Symbol{"arrow.up.circle", "⇧"},
    Symbol{"battery.100.bolt", "▮"},
    Symbol{"bell.badge", "♪"},
    Symbol{"bolt", "⚡"},
    Symbol{"bolt.circle", "⚡"},
    Symbol{"bolt.fill", "⚡"},
    Symbol{"book", "☰"},
    Symbol{"book.closed", "▣"},
    Symbol{"brain", "☁"},
    Symbol{"chart.line.uptrend.xyaxis", "↗"},
    Symbol{"checkmark.circle.fill", "✔"},
    Symbol{"circle", "○"},
    Symbol{"circle.circle", "◉"},
    Symbol{"circle.dotted.circle", "◎"},
    Symbol{"circle.grid.3x3.fill", "▦"},
    Symbol{"clock", "◷"},
    Symbol{"cross.case", "✚"},
    Symbol{"figure.walk", "➔"},
    Symbol{"film.stack", "▤"},
    Symbol{"gearshape", "⚙"},
    Symbol{"globe.asia.australia", "⊕"},
    Symbol{"heart", "♥"},
    Symbol{"laptopcomputer", "⌨"},
    Symbol{"leaf", "❦"},
    Symbol{"link", "∞"},
    Symbol{"lock", "⚷"},
    Symbol{"macwindow.on.rectangle", "❐"},
    Symbol{"minus.circle", "⊖"},
    Symbol{"moon.stars.fill", "☾"},
    Symbol{"oval.portrait", "◯"},
    Symbol{"pause.circle", "‖"},
    Symbol{"person.2", "⚥"},
    Symbol{"questionmark", "?"},
    Symbol{"slider.horizontal.3", "☷"},
    Symbol{"sparkle", "✧"},
    Symbol{"sparkles", "✦"},
    Symbol{"theatermasks", "☻"},
    Symbol{"trash", "♺"},
    Symbol{"wind", "≋"},
};
static_assert(std::ranges::is_sorted(symbols, {}, &Symbol::name));

}  // namespace

QString glyph(std::string_view symbol) {
    if (symbol.empty()) return {};
    const auto found = std::ranges::lower_bound(symbols, symbol, {}, &Symbol::name);
    const bool known = found != symbols.end() && found->name == symbol;
    return QString::fromUtf8(known ? found->glyph : "•");
}

}  // namespace quibbits::window
