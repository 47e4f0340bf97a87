#pragma once
// Makes layers, keeps the clock that their animations run by, and groups changes in transactions.
// There is one for all panels. It draws nothing: a LayerTree tells a backend what to draw and when.

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "layers/Layer.h"
#include "platform/RunLoop.h"

namespace quibbits {

class Transaction;
class TransactionBatch;

enum class Actions { enabled, disabled };

class LayerEngine {
public:
    /// The seed makes particles repeat exactly from run to run.
    explicit LayerEngine(RunLoop& loop, std::uint64_t seed = 1);
    ~LayerEngine();
    LayerEngine(const LayerEngine&) = delete;
    LayerEngine& operator=(const LayerEngine&) = delete;

    LayerRef makeLayer();
    /// A new layer with the values given, set without any action.
    LayerRef makeLayer(LayerProperties values);
    Instant now() const { return loop_.now(); }
    RunLoop& runLoop() const { return loop_; }

    /// Seconds that an implicit fade takes unless a transaction says otherwise.
    static constexpr Seconds implicitDuration = 0.25;

private:
    friend class Layer;
    friend class LayerTree;
    friend class Transaction;
    std::uint64_t nextId() { return ++lastId_; }
    bool actionsEnabled() const;
    /// Of implicit fades made now.
    Seconds fadeDuration() const;

    RunLoop& loop_;
    const std::uint64_t seed_;
    std::uint64_t lastId_ = 0;
    std::vector<Transaction*> open_;  // the innermost last
};

/// Groups changes from its making to its end. Transactions nest: the innermost one's settings
/// count, and every one that is open waits for the animations added inside it.
class Transaction {
public:
    struct Settings {
        Actions actions = Actions::enabled;
        Seconds duration = LayerEngine::implicitDuration;  // of implicit fades made inside
        /// Runs from the run loop after every animation added inside, implicit ones too, has ended
        /// or been removed; with none, at the next turn.
        std::function<void()> completion = {};
    };
    Transaction(LayerEngine& engine, Settings settings);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    /// A transaction without implicit fades.
    static Settings withoutActions() { return {.actions = Actions::disabled}; }

private:
    friend class Layer;
    friend class LayerEngine;
    LayerEngine& engine_;
    Actions actions_;
    Seconds duration_;
    std::shared_ptr<TransactionBatch> batch_;
};

}  // namespace quibbits
