#pragma once
// Something that a routine has begun and that must not outlast it: sparks, food in the paws, a body
// cut off at a window's edge. Whoever began it holds the handle and ends it when its time is over;
// the body ends it when the routine is broken off. It is undone once, by whichever comes first.

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace quibbits {

class Begun {
public:
    Begun() = default;
    Begun(Begun&&) noexcept = default;
    Begun& operator=(Begun&& other) noexcept {
        if (this != &other) {
            end();
            undo_ = std::move(other.undo_);
        }
        return *this;
    }
    ~Begun() { end(); }

    void end() {
        if (const auto undo = std::exchange(undo_, nullptr)) Undo::run(*undo);
    }
    /// Whether it goes on.
    explicit operator bool() const { return undo_ && undo_->act; }

private:
    friend class Beginnings;
    struct Undo {
        std::function<void()> act;
        static void run(Undo& undo) {
            if (const auto act = std::exchange(undo.act, nullptr)) act();
        }
    };
    explicit Begun(std::shared_ptr<Undo> undo) : undo_(std::move(undo)) {}

    std::shared_ptr<Undo> undo_;
};

/// All that has been begun and goes on.
class Beginnings {
public:
    [[nodiscard]] Begun add(std::function<void()> undo) {
        std::erase_if(list_, [](const auto& each) { return each.expired(); });
        auto kept = std::make_shared<Begun::Undo>(Begun::Undo{std::move(undo)});
        list_.push_back(kept);
        return Begun(std::move(kept));
    }
    /// Undoes all of it, the last begun first.
    void endAll() {
        const auto list = std::exchange(list_, {});
        for (auto each = list.rbegin(); each != list.rend(); ++each) {
            if (const auto undo = each->lock()) Begun::Undo::run(*undo);
        }
    }

private:
    std::vector<std::weak_ptr<Begun::Undo>> list_;
};

}  // namespace quibbits
