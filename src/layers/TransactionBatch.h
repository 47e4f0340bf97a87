#pragma once
// Counts the animations that a transaction waits for. Shared by the transaction and each of those
// animations; when the last of them lets go, the completion is handed to the run loop.

#include <functional>

#include "platform/RunLoop.h"

namespace quibbits {

class TransactionBatch {
public:
    TransactionBatch(RunLoop& loop, std::function<void()> completion)
        : loop_(loop), completion_(std::move(completion)) {}
    TransactionBatch(const TransactionBatch&) = delete;
    TransactionBatch& operator=(const TransactionBatch&) = delete;
    ~TransactionBatch() {
        if (completion_) loop_.post(std::move(completion_));
    }

private:
    RunLoop& loop_;
    std::function<void()> completion_;
};

}  // namespace quibbits
