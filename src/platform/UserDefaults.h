#pragma once
// The user's preferences and the creatures' memory: typed values by key. Read at the moment of use
// and never cached by a caller; written at once. Another process may write the same store, and the
// next read sees it.

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/Date.h"
#include "platform/Signal.h"

namespace quibbits {

using DefaultsValue =
    std::variant<bool, std::int64_t, double, std::string, Date, std::vector<std::string>>;

class UserDefaults {
public:
    virtual ~UserDefaults() = default;

    /// The stored value, else the registered one, else nothing.
    virtual std::optional<DefaultsValue> object(std::string_view key) const = 0;
    /// The stored value alone.
    virtual std::optional<DefaultsValue> stored(std::string_view key) const = 0;
    /// Stores a value. A failure of the disk is silent: the value then holds for this run.
    virtual void set(std::string_view key, DefaultsValue value) = 0;
    virtual void remove(std::string_view key) = 0;
    /// Values for keys that nothing is stored under; kept in memory only.
    virtual void registerDefaults(std::map<std::string, DefaultsValue> values) = 0;
    /// Tells, as long as the handle lives and maybe a moment later, that this program or another
    /// may have changed what is stored.
    [[nodiscard]] virtual Subscription whenChanged(std::function<void()> tell) = 0;

    // Reads that convert: a number is true unless 0, a text is true when it begins with Y, T or a
    // digit above 0; a text's leading digits are its number. What is absent or cannot be converted
    // is false, 0 or nothing.
    bool boolean(std::string_view key) const;
    std::int64_t integer(std::string_view key) const;
    double real(std::string_view key) const;
    std::optional<std::string> string(std::string_view key) const;

    // Reads that do not convert: a value of another type is as good as none.
    std::optional<bool> onlyBoolean(std::string_view key) const;
    /// An integer or a real; a boolean is no number.
    std::optional<double> onlyNumber(std::string_view key) const;
    std::optional<std::string> onlyString(std::string_view key) const;
    std::optional<Date> onlyDate(std::string_view key) const;
};

}  // namespace quibbits
