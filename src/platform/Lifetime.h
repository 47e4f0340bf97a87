#pragma once
// Weak closures. An object that hands out closures which may outlive it owns a Lifetime and wraps
// each closure with guard: once the object is gone, calling the closure does nothing.

#include <memory>
#include <type_traits>
#include <utility>

namespace quibbits {

class Lifetime {
public:
    Lifetime() = default;
    Lifetime(const Lifetime&) = delete;
    Lifetime& operator=(const Lifetime&) = delete;

    /// The closure, made to do nothing after this Lifetime has ended. A closure with a result
    /// gives a default-made one then.
    template <typename F>
    auto guard(F closure) const {
        return [alive = std::weak_ptr<const char>(alive_),
                closure = std::move(closure)](auto&&... args) mutable {
            using Result = decltype(closure(std::forward<decltype(args)>(args)...));
            if constexpr (std::is_void_v<Result>) {
                if (!alive.expired()) closure(std::forward<decltype(args)>(args)...);
            } else {
                return alive.expired() ? Result{} : closure(std::forward<decltype(args)>(args)...);
            }
        };
    }

private:
    std::shared_ptr<const char> alive_ = std::make_shared<const char>('\0');
};

}  // namespace quibbits
