// The text module: everything that touches fonts.

#include <pango/pangocairo.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "raster/TextEngine.h"

namespace quibbits {

namespace {

struct Unref {
    void operator()(gpointer object) const { g_object_unref(object); }
    void operator()(PangoFontDescription* font) const { pango_font_description_free(font); }
    void operator()(PangoAttrList* list) const { pango_attr_list_unref(list); }
    void operator()(cairo_font_options_t* options) const { cairo_font_options_destroy(options); }
};
template <typename T>
using Owned = std::unique_ptr<T, Unref>;

int pangoUnits(double points) {
    constexpr double most = 1e6;  // far wider than any screen
    return static_cast<int>(std::lround(std::clamp(points, 0.0, most) * PANGO_SCALE));
}

double points(int pangoUnits) {
    return static_cast<double>(pangoUnits) / PANGO_SCALE;
}

PangoWeight weightOf(FontWeight weight) {
    switch (weight) {
        case FontWeight::regular: return PANGO_WEIGHT_NORMAL;
        case FontWeight::medium: return PANGO_WEIGHT_MEDIUM;
        case FontWeight::semibold: return PANGO_WEIGHT_SEMIBOLD;
        case FontWeight::bold: return PANGO_WEIGHT_BOLD;
    }
    return PANGO_WEIGHT_NORMAL;
}

PangoAlignment alignmentOf(TextAlignment alignment) {
    switch (alignment) {
        case TextAlignment::left: return PANGO_ALIGN_LEFT;
        case TextAlignment::center: return PANGO_ALIGN_CENTER;
        case TextAlignment::right: return PANGO_ALIGN_RIGHT;
    }
    return PANGO_ALIGN_LEFT;
}

guint16 channel(double v) {
    return static_cast<guint16>(std::lround(std::clamp(v, 0.0, 1.0) * 65535));
}

void colour(PangoAttrList* attributes, Color c, std::size_t from, std::size_t to) {
    const auto add = [&](PangoAttribute* attribute) {
        attribute->start_index = static_cast<guint>(from);
        attribute->end_index = static_cast<guint>(to);
        pango_attr_list_insert(attributes, attribute);
    };
    add(pango_attr_foreground_new(channel(c.red), channel(c.green), channel(c.blue)));
    add(pango_attr_foreground_alpha_new(std::max<guint16>(1, channel(c.alpha))));
}

/// What follows a character to say how it is drawn, or joins it to the next, and is never seen.
bool isUnseen(gunichar c) {
    return pango_is_zero_width(c) || (c >= 0xfe00 && c <= 0xfe0f) || (c >= 0xe0000 && c <= 0xe01ef);
}

/// Words first, then characters; widths are the same at every scale, so that what was measured
/// fits where it is drawn.
class PangoTextEngine : public TextEngine {
public:
    PangoTextEngine() {
        context_.reset(pango_font_map_create_context(pango_cairo_font_map_get_default()));
        const Owned<cairo_font_options_t> options(cairo_font_options_create());
        cairo_font_options_set_hint_metrics(options.get(), CAIRO_HINT_METRICS_OFF);
        cairo_font_options_set_hint_style(options.get(), CAIRO_HINT_STYLE_SLIGHT);
        cairo_font_options_set_antialias(options.get(), CAIRO_ANTIALIAS_GRAY);
        pango_cairo_context_set_font_options(context_.get(), options.get());
        pango_cairo_context_set_resolution(context_.get(), 96);
        pango_context_set_round_glyph_positions(context_.get(), FALSE);
    }

    PangoTextEngine(const PangoTextEngine&) = delete;
    PangoTextEngine& operator=(const PangoTextEngine&) = delete;
    ~PangoTextEngine() override {
        context_ = nullptr;
        pango_cairo_font_map_set_default(nullptr);
    }

    Size measure(const StyledText& text, Size limit) const override {
        const auto layout = set(text);
        wrap(layout.get(), limit.width);
        int width = 0;
        int height = 0;
        pango_layout_get_size(layout.get(), &width, &height);
        return {std::min(points(width), limit.width), std::min(points(height), limit.height)};
    }

    void draw(cairo_t* context, const Text& text, Size box) const override {
        const auto layout = set(text.text);
        pango_layout_set_alignment(layout.get(), alignmentOf(text.alignment));
        if (text.wrapped) wrap(layout.get(), box.width);
        if (text.truncated && !text.wrapped) {
            pango_layout_set_width(layout.get(), pangoUnits(box.width));
            pango_layout_set_ellipsize(layout.get(), PANGO_ELLIPSIZE_END);
        }
        if (text.wrapped && text.truncated) {
            pango_layout_set_height(layout.get(), pangoUnits(box.height));
            pango_layout_set_ellipsize(layout.get(), PANGO_ELLIPSIZE_END);
        }
        cairo_move_to(context, text.wrapped || text.truncated ? 0 : indent(*layout, text, box), 0);
        pango_cairo_show_layout(context, layout.get());
    }

private:
    Owned<PangoLayout> set(const StyledText& text) const {
        Owned<PangoLayout> layout(pango_layout_new(context_.get()));
        const Owned<PangoFontDescription> font(pango_font_description_from_string("Sans"));
        pango_font_description_set_weight(font.get(), weightOf(text.weight));
        pango_font_description_set_absolute_size(font.get(), text.fontSize * PANGO_SCALE);
        pango_layout_set_font_description(layout.get(), font.get());

        std::string all;
        const Owned<PangoAttrList> attributes(pango_attr_list_new());
        for (const auto& run : text.runs) {
            const std::size_t from = all.size();
            all += drawable(run.text, *font);
            colour(attributes.get(), run.color, from, all.size());
        }
        pango_layout_set_text(layout.get(), all.data(), static_cast<int>(all.size()));
        pango_layout_set_attributes(layout.get(), attributes.get());
        return layout;
    }

    /// The text without the characters that no installed font has, which would be drawn as boxes.
    /// The blank before such a character goes with it where another follows, or the end.
    std::string drawable(const std::string& text, const PangoFontDescription& font) const {
        if (std::ranges::all_of(text, [](char c) { return static_cast<signed char>(c) > 0; })) {
            return text;
        }
        const std::unique_ptr<char, decltype(&g_free)> valid(
            g_utf8_make_valid(text.data(), static_cast<gssize>(text.size())), &g_free);
        std::vector<PangoLogAttr> places(static_cast<std::size_t>(g_utf8_strlen(valid.get(), -1)) +
                                         1);
        pango_get_log_attrs(valid.get(), -1, -1, pango_language_get_default(), places.data(),
                            static_cast<int>(places.size()));
        std::string kept;
        bool isGap = false;
        const char* at = valid.get();
        for (std::size_t i = 0; *at;) {
            const char* const begin = at;
            do {
                at = g_utf8_next_char(at);
            } while (*at && !places[++i].is_cursor_position);
            const std::string_view character(begin, static_cast<std::size_t>(at - begin));
            const std::string known = knownPart(character, font);
            if (known.empty()) {
                isGap = kept.empty() || kept.ends_with(' ');
            } else if (!std::exchange(isGap, false) || known != " ") {
                kept += known;
            }
        }
        if (isGap && kept.ends_with(' ')) kept.pop_back();
        return kept;
    }

    /// Of a character and all that belongs to it what there are glyphs for; nothing without the
    /// character itself.
    std::string knownPart(std::string_view character, const PangoFontDescription& font) const {
        std::string kept;
        std::string joining;  // unseen, before what comes next
        bool isDrawn = true;  // what came last
        const char* const end = character.data() + character.size();
        for (const char* at = character.data(); at < end; at = g_utf8_next_char(at)) {
            const gunichar c = g_utf8_get_char(at);
            const std::string_view piece(at, static_cast<std::size_t>(g_utf8_next_char(at) - at));
            if (isUnseen(c)) {
                if (isDrawn) joining += piece;
                continue;
            }
            isDrawn = isKnown(c, font);
            if (!isDrawn && at == character.data()) return {};
            if (isDrawn) kept += joining + std::string(piece);
            joining.clear();
        }
        return kept + joining;
    }

    bool isKnown(gunichar c, const PangoFontDescription& description) const {
        if (c < 0x80) return true;
        const auto [entry, isNew] = known_.try_emplace(c, false);
        if (isNew) {
            const Owned<PangoFontset> fonts(pango_font_map_load_fontset(
                pango_context_get_font_map(context_.get()), context_.get(), &description,
                pango_language_get_default()));
            const Owned<PangoFont> font(fonts ? pango_fontset_get_font(fonts.get(), c) : nullptr);
            entry->second = font && pango_font_has_char(font.get(), c);
        }
        return entry->second;
    }

    static void wrap(PangoLayout* layout, double width) {
        // A little more than the width, for what it was measured at was rounded.
        pango_layout_set_width(layout, pangoUnits(width) + 2);
        pango_layout_set_wrap(layout, PANGO_WRAP_WORD_CHAR);
    }

    /// Where a line that is neither wrapped nor cut begins.
    static double indent(PangoLayout& layout, const Text& text, Size box) {
        int width = 0;
        pango_layout_get_size(&layout, &width, nullptr);
        const double room = box.width - points(width);
        if (text.alignment == TextAlignment::left) return 0;
        return text.alignment == TextAlignment::center ? room / 2 : room;
    }

    Owned<PangoContext> context_;
    mutable std::unordered_map<gunichar, bool> known_;
};

}  // namespace

}  // namespace quibbits

extern "C" const quibbits::TextEngine* quibbitsTextEngine() {
    static const quibbits::PangoTextEngine engine;
    return &engine;
}
