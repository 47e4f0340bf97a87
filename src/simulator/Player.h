#pragma once
// Plays a scenario: moves the simulated computer at the right instants, and starts and ends the
// real program on it.

#include <functional>
#include <memory>
#include <ostream>

#include "app/AppDelegate.h"
#include "sim/SimulatedComputer.h"
#include "simulator/Scenario.h"
#include "simulator/Trace.h"

namespace quibbits {

class Player {
public:
    struct Options {
        std::ostream* trace = nullptr;  // none writes no trace
        bool painting = false;
        Seconds lasting = 0;     // plays on for so long after the last event
        Seconds frameEvery = 0;  // above 0, calls onFrame so often
        std::function<void(SimulatedComputer&)> onFrame = {};
    };
    Player(const Scenario& scenario, const Options& options, Resources& resources,
           TextMeasure& text);
    ~Player();

    /// Plays the whole scenario.
    void play();
    /// What the scenario expected in vain, as "line 12: ...".
    const std::vector<std::string>& disappointments() const { return disappointments_; }

    SimulatedComputer& computer() { return *computer_; }
    /// Empty while the simulated program does not run.
    AppDelegate* app() { return app_.get(); }

private:
    void apply(const ScenarioEvent& event);
    bool applyToProgram(const ScenarioEvent& event);
    bool applyToUser(const ScenarioEvent& event);
    bool applyToDesktop(const ScenarioEvent& event);
    bool applyToMachine(const ScenarioEvent& event);
    /// The creature of that id; none while the program does not run.
    Companion* named(const std::string& pet) const;
    /// The point of an event, wherever it is counted from.
    Point place(const Json& fields, std::string_view name) const;
    void expect(const ScenarioEvent& event);
    /// The simulated user at an ordinary window.
    void use(const Json& fields);
    void begin(const Json& fields);
    void start();
    void quit();
    void advanceTo(Instant instant);
    void movePointer(const Json& fields, std::function<void()> then);
    void writeDefaults(const Json& fields);
    void tellPositions(Seconds every);

    const Scenario& scenario_;
    const Options options_;
    Resources& resources_;
    TextMeasure& text_;
    std::unique_ptr<SimulatedComputer> computer_;
    std::unique_ptr<Trace> trace_;
    std::unique_ptr<AppDelegate> app_;
    bool begun_ = false;  // past what stands at time 0
    Instant nextFrame_ = 0;
    Timer positions_;
    std::vector<Json> lines_;  // of the trace since the last expect, where any is to come
    std::vector<std::string> disappointments_;
    bool ended_ = false;
};

}  // namespace quibbits
