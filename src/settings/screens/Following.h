#pragma once
// Keeps an open window true: tells it to look again a moment after anything that it shows may have
// changed, whoever changed it. Many changes at once are one.

#include <functional>
#include <vector>

#include "platform/Computer.h"
#include "platform/Lifetime.h"

namespace quibbits::screens {

class Following {
public:
    Following(const Computer& computer, std::function<void()> refresh);
    Following(const Following&) = delete;
    Following& operator=(const Following&) = delete;

private:
    void soon();

    RunLoop& loop_;
    std::function<void()> refresh_;
    bool isComing_ = false;
    std::vector<Subscription> changes_;
    Lifetime lifetime_;
};

}  // namespace quibbits::screens
