#include "platform/UserDefaults.h"

#include <charconv>
#include <cmath>
#include <limits>

#include "platform/Overloaded.h"

namespace quibbits {

namespace {

std::string_view withoutLeadingBlanks(std::string_view text) {
    const auto first = text.find_first_not_of(" \t\r\n");
    return first == std::string_view::npos ? std::string_view{} : text.substr(first);
}

bool meansYes(std::string_view text) {
    text = withoutLeadingBlanks(text);
    if (!text.empty() && (text.front() == '+' || text.front() == '-')) text.remove_prefix(1);
    const auto digit = text.find_first_not_of('0');
    if (digit == std::string_view::npos) return false;
    const char c = text[digit];
    return c == 'Y' || c == 'y' || c == 'T' || c == 't' || (c >= '1' && c <= '9');
}

double leadingNumber(std::string_view text) {
    text = withoutLeadingBlanks(text);
    if (text.starts_with("+-")) return 0;
    if (text.starts_with('+')) text.remove_prefix(1);
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc{} && std::isfinite(value) ? value : 0;
}

std::int64_t truncated(double value) {
    constexpr double most = 9.2e18;
    using Whole = std::numeric_limits<std::int64_t>;
    if (std::isnan(value)) return 0;
    if (std::abs(value) >= most) return value > 0 ? Whole::max() : Whole::min();
    return static_cast<std::int64_t>(value);
}

template <typename T>
std::optional<T> only(const std::optional<DefaultsValue>& value) {
    if (const T* held = value ? std::get_if<T>(&*value) : nullptr) return *held;
    return std::nullopt;
}

}  // namespace

bool UserDefaults::boolean(std::string_view key) const {
    const auto value = object(key);
    if (!value) return false;
    return std::visit(Overloaded{[](bool v) { return v; }, [](std::int64_t v) { return v != 0; },
                                 [](double v) { return v != 0; },
                                 [](const std::string& v) { return meansYes(v); },
                                 [](const auto&) { return false; }},
                      *value);
}

double UserDefaults::real(std::string_view key) const {
    const auto value = object(key);
    if (!value) return 0;
    return std::visit(Overloaded{[](bool v) { return v ? 1.0 : 0.0; },
                                 [](std::int64_t v) { return static_cast<double>(v); },
                                 [](double v) { return v; },
                                 [](const std::string& v) { return leadingNumber(v); },
                                 [](const auto&) { return 0.0; }},
                      *value);
}

std::int64_t UserDefaults::integer(std::string_view key) const {
    if (const auto whole = only<std::int64_t>(object(key))) return *whole;
    return truncated(real(key));
}

std::optional<std::string> UserDefaults::string(std::string_view key) const {
    const auto value = object(key);
    if (!value) return std::nullopt;
    using Result = std::optional<std::string>;
    return std::visit(Overloaded{[](const std::string& v) -> Result { return v; },
                                 [](bool v) -> Result { return v ? "1" : "0"; },
                                 [](std::int64_t v) -> Result { return std::to_string(v); },
                                 [](double v) -> Result {
                                     char text[32];
                                     const auto end =
                                         std::to_chars(text, text + sizeof text, v).ptr;
                                     return std::string(text, end);
                                 },
                                 [](const auto&) -> Result { return std::nullopt; }},
                      *value);
}

std::optional<bool> UserDefaults::onlyBoolean(std::string_view key) const {
    return only<bool>(object(key));
}

std::optional<double> UserDefaults::onlyNumber(std::string_view key) const {
    const auto value = object(key);
    if (const auto whole = only<std::int64_t>(value)) return static_cast<double>(*whole);
    return only<double>(value);
}

std::optional<std::string> UserDefaults::onlyString(std::string_view key) const {
    return only<std::string>(object(key));
}

std::optional<Date> UserDefaults::onlyDate(std::string_view key) const {
    return only<Date>(object(key));
}

}  // namespace quibbits
