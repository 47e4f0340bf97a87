#include "wire/ViewCodec.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "wire/ViewFields.h"

namespace quibbits::views {
namespace {

/// What a kind is called on the way, in the order of the variant.
constexpr std::array kinds{"column", "line",    "grid",    "form",  "section",     "disclosure",
                           "card",   "tabs",    "tab",     "split", "sidebar",     "paged",
                           "text",   "fact",    "picture", "meter", "toggle",      "stepper",
                           "picker", "button",  "chooser", "link",  "application", "alert",
                           "dots",   "preview", "spacer"};
static_assert(kinds.size() == std::variant_size_v<Content>);

// Numbers of pictures are texts: a JSON number has no room for 64 bits everywhere.
std::string hex(std::uint64_t number) {
    std::array<char, 16> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), number, 16).ptr;
    return {text.data(), end};
}

std::uint64_t fromHex(std::string_view text) {
    std::uint64_t number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number, 16);
    return number;
}

template <typename T>
concept Enumeration = std::is_enum_v<T>;

template <typename T>
concept Record = requires(T& record) {
    fields(record, [](auto&&...) {});
};

struct Writer {
    const std::function<std::uint64_t(const Image&)>& picture;

    Json operator()(bool value) const { return value; }
    Json operator()(std::int64_t value) const { return value; }
    Json operator()(double value) const { return value; }
    Json operator()(const std::string& value) const { return value; }
    template <Enumeration T>
    Json operator()(T value) const {
        return static_cast<std::int64_t>(value);
    }
    Json operator()(const Image& image) const { return hex(picture(image)); }
    Json operator()(const Color& c) const { return Json::Array{c.red, c.green, c.blue, c.alpha}; }
    Json operator()(const Rect& r) const { return Json::Array{r.x, r.y, r.width, r.height}; }
    Json operator()(const Size& s) const { return Json::Array{s.width, s.height}; }
    template <typename T>
    Json operator()(const std::vector<T>& list) const {
        Json::Array array;
        array.reserve(list.size());
        for (const T& each : list) array.push_back((*this)(each));
        return array;
    }
    Json operator()(const Content& content) const {
        Json json = std::visit([this](const auto& kind) { return (*this)(kind); }, content);
        json.set("kind", kinds[content.index()]);
        return json;
    }
    template <Record T>
    Json operator()(const T& record) const {
        Json::Object object;
        fields(record, [&](const char* name, const auto& value) {
            object.emplace_back(name, (*this)(value));
        });
        return object;
    }
};

template <std::size_t N>
std::optional<std::array<double, N>> numbersOf(const Json& json) {
    const auto* list = json.as<Json::Array>();
    if (!list || list->size() != N) return std::nullopt;
    std::array<double, N> numbers{};
    for (std::size_t i = 0; i < N; ++i) {
        const auto number = (*list)[i].number();
        if (!number) return std::nullopt;
        numbers[i] = *number;
    }
    return numbers;
}

struct Reader {
    const std::function<Image(std::uint64_t)>& picture;

    void operator()(const Json& json, bool& value) const {
        if (const auto* flag = json.as<bool>()) value = *flag;
    }
    void operator()(const Json& json, std::int64_t& value) const {
        if (const auto* number = json.as<std::int64_t>()) value = *number;
    }
    void operator()(const Json& json, double& value) const {
        if (const auto number = json.number()) value = *number;
    }
    void operator()(const Json& json, std::string& value) const {
        if (const auto* text = json.as<std::string>()) value = *text;
    }
    void operator()(const Json& json, TextStyle& value) const {
        choose(json, value, TextStyle::faint);
    }
    void operator()(const Json& json, ButtonRole& value) const {
        choose(json, value, ButtonRole::borderless);
    }
    void operator()(const Json& json, Image& value) const {
        if (const auto* number = json.as<std::string>()) value = picture(fromHex(*number));
    }
    void operator()(const Json& json, Color& value) const {
        if (const auto n = numbersOf<4>(json)) value = {(*n)[0], (*n)[1], (*n)[2], (*n)[3]};
    }
    void operator()(const Json& json, Rect& value) const {
        if (const auto n = numbersOf<4>(json)) value = {(*n)[0], (*n)[1], (*n)[2], (*n)[3]};
    }
    void operator()(const Json& json, Size& value) const {
        if (const auto n = numbersOf<2>(json)) value = {(*n)[0], (*n)[1]};
    }
    template <typename T>
    void operator()(const Json& json, std::vector<T>& list) const {
        const auto* array = json.as<Json::Array>();
        if (!array) return;
        for (const Json& each : *array) (*this)(each, list.emplace_back());
    }
    void operator()(const Json& json, Content& content) const {
        const Json* kind = json.find("kind");
        const auto* name = kind ? kind->as<std::string>() : nullptr;
        if (name) make(json, *name, content, std::make_index_sequence<kinds.size()>());
    }
    template <Record T>
    void operator()(const Json& json, T& record) const {
        fields(record, [&](const char* name, auto& value) {
            if (const Json* member = json.find(name)) (*this)(*member, value);
        });
    }

private:
    template <Enumeration T>
    static void choose(const Json& json, T& value, T last) {
        const auto* number = json.as<std::int64_t>();
        if (number && *number >= 0 && *number <= static_cast<std::int64_t>(last)) {
            value = static_cast<T>(*number);
        }
    }
    template <std::size_t... Index>
    void make(const Json& json, std::string_view name, Content& content,
              std::index_sequence<Index...>) const {
        const auto one = [&]<std::size_t I>(std::integral_constant<std::size_t, I>) {
            if (name == kinds[I]) (*this)(json, content.emplace<I>());
        };
        (one(std::integral_constant<std::size_t, Index>()), ...);
    }
};

}  // namespace

std::uint64_t pictureNumber(const Image& image) {
    if (!image) return 0;
    constexpr std::uint64_t prime = 1099511628211u;  // FNV-1a, a pixel at a time
    std::uint64_t number = 14695981039346656037u;
    const auto mix = [&](std::uint64_t value) { number = (number ^ value) * prime; };
    mix(static_cast<std::uint64_t>(image.width()));
    mix(static_cast<std::uint64_t>(image.height()));
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) mix(image.at(x, y));
    }
    return number == 0 ? 1 : number;
}

Json write(const View& tree, const std::function<std::uint64_t(const Image&)>& picture) {
    return Writer{picture}(tree);
}

std::optional<View> readView(const Json& json, const std::function<Image(std::uint64_t)>& picture) {
    if (!json.find("content")) return std::nullopt;
    View view;
    Reader{picture}(json, view);
    return view;
}

Json write(const Action& action) {
    Json json;
    json.set("id", action.id);
    if (const auto* flag = action.as<bool>()) json.set("value", *flag);
    if (const auto* number = action.as<std::int64_t>()) json.set("value", *number);
    if (const auto* text = action.as<std::string>()) json.set("value", *text);
    if (const auto* list = action.as<std::vector<std::string>>()) {
        json.set("value", Json::Array(list->begin(), list->end()));
    }
    return json;
}

std::optional<Action> readAction(const Json& json) {
    const Json* id = json.find("id");
    const auto* name = id ? id->as<std::string>() : nullptr;
    if (!name) return std::nullopt;
    Action action{.id = *name};
    const Json* value = json.find("value");
    if (!value) return action;
    if (const auto* flag = value->as<bool>()) action.value = *flag;
    if (const auto* number = value->as<std::int64_t>()) action.value = *number;
    if (const auto* text = value->as<std::string>()) action.value = *text;
    if (const auto* list = value->as<Json::Array>()) {
        auto& texts = action.value.emplace<std::vector<std::string>>();
        for (const Json& each : *list) {
            if (const auto* text = each.as<std::string>()) texts.push_back(*text);
        }
    }
    return action;
}

Json write(const WindowSpec& spec) {
    Json json;
    json.set("title", spec.title);
    json.set("width", spec.size.width);
    json.set("height", spec.size.height);
    json.set("resizable", spec.resizable);
    return json;
}

WindowSpec readWindowSpec(const Json& json) {
    WindowSpec spec;
    const std::function<Image(std::uint64_t)> none = [](std::uint64_t) { return Image{}; };
    const Reader read{none};
    if (const Json* title = json.find("title")) read(*title, spec.title);
    if (const Json* width = json.find("width")) read(*width, spec.size.width);
    if (const Json* height = json.find("height")) read(*height, spec.size.height);
    if (const Json* resizable = json.find("resizable")) read(*resizable, spec.resizable);
    return spec;
}

}  // namespace quibbits::views
