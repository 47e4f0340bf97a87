#pragma once
// JSON as a plain value, read and written. Objects keep the order in which their keys were written,
// so that a file changed by the program still looks like the file that its owner knows. The reader
// trusts nothing: nesting and size are bounded, and a mistake is an answer with its place.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace quibbits {

constexpr std::size_t jsonMostDepth = 64;
constexpr std::size_t jsonMostBytes = std::size_t{16} << 20;

struct JsonResult;

class Json {
public:
    using Array = std::vector<Json>;
    using Member = std::pair<std::string, Json>;
    using Object = std::vector<Member>;

    Json() = default;  // null
    Json(bool value) : value_(value) {}
    Json(int value) : value_(std::int64_t{value}) {}
    Json(std::int64_t value) : value_(value) {}
    Json(double value) : value_(value) {}
    Json(const char* value) : value_(std::string(value)) {}
    Json(std::string value) : value_(std::move(value)) {}
    Json(Array value) : value_(std::move(value)) {}
    Json(Object value) : value_(std::move(value)) {}

    bool operator==(const Json&) const = default;

    /// The value when it has exactly that type, else null.
    template <typename T>
    const T* as() const {
        return std::get_if<T>(&value_);
    }
    template <typename T>
    T* as() {
        return std::get_if<T>(&value_);
    }
    /// A whole or a real number.
    std::optional<double> number() const;

    /// The member under the key, or null when this is no object or has none.
    const Json* find(std::string_view key) const;
    /// Puts a member in its old place, or at the end. What is no object becomes one.
    void set(std::string_view key, Json value);
    /// True when there was one.
    bool erase(std::string_view key);

    /// Of a key that stands twice, the later value counts.
    static JsonResult parse(std::string_view text);
    /// UTF-8 on one line, or with an indent of that many blanks. Bytes that are no UTF-8 are
    /// replaced; a number that is not finite is written as null.
    std::string dump(int indent = 0) const;

private:
    std::variant<std::monostate, bool, std::int64_t, double, std::string, Array, Object> value_;
};

struct JsonError {
    std::string message;
    std::size_t position = 0;  // bytes from the start
};

struct JsonResult {
    std::optional<Json> value;
    JsonError error;  // meaningful without a value
    explicit operator bool() const { return value.has_value(); }
};

}  // namespace quibbits
