#pragma once
// A creature on a simulated computer, out and standing on the floor, for tests of its life.

#include <memory>
#include <string>
#include <vector>

#include "app/AppDelegate.h"
#include "sim/SimulatedComputer.h"
#include "support/DrawnSheets.h"
#include "support/FlatText.h"

namespace quibbits {

class LivingCreature {
public:
    struct Options {
        std::string store = "pet";
        std::string stage = "sparrel";
        std::map<std::string, DefaultsValue> defaults = {};
        std::uint64_t seed = 1;
        LocalTime begin{.year = 2026, .month = 3, .day = 2, .hour = 10};
        int battery = 60;
        bool charging = false;
        bool painting = false;
        std::function<void(SimulatedComputer&)> prepare = {};  // before the launch
    };
    explicit LivingCreature(Options options) : LivingCreature(options, DrawnSheets::ofWalker()) {}
    LivingCreature(Options options, DrawnSheets drawn)
        : sheets(std::move(drawn)),
          computer(
              {.begin = utcDate(options.begin), .seed = options.seed, .painting = options.painting},
              sheets, text),
          store_(options.store) {
        computer.defaults.set(store_ + ".stage", options.stage);
        // A greeting and an infection are a matter of chance and of the clock; not in most tests.
        computer.defaults.set(store_ + ".greeted", computer.runLoop.date());
        computer.defaults.set(store_ + ".shimmerpox", Date{0});
        computer.defaults.set(store_ + ".nature", std::string("Hardy"));
        for (const auto& [key, value] : options.defaults) computer.defaults.set(key, value);
        computer.setBattery(options.battery, options.charging);
        if (options.prepare) options.prepare(computer);
        launch();
    }

    void launch() {
        app = std::make_unique<AppDelegate>(computer.computer(), computer.panels(),
                                            computer.viewWindows);
        app->onCreature = [this](Companion& each) {
            each.listen({.onDecision =
                             [this](const Companion& who, const Mind& mind) {
                                 if (who.store() != store_) return;
                                 decisions.push_back(*who.why().choice);
                                 minds.push_back(mind);
                                 times.push_back(computer.runLoop.now());
                             },
                         .onUtterance =
                             [this](const Companion& who, const Utterance& said) {
                                 if (who.store() == store_) utterances.push_back(said);
                             }});
        };
        if (onLaunch) onLaunch(*app);
        app->applicationDidFinishLaunching();
    }
    void quit() { app.reset(); }
    std::function<void(AppDelegate&)> onLaunch;  // before each further launch

    Companion& creature() {
        for (const auto& each : app->party()) {
            if (each->store() == store_) return *each;
        }
        std::abort();
    }
    Pet& pet() { return creature().pet(); }
    void advance(Seconds seconds) { computer.runLoop.advance(seconds); }
    /// Advances until the creature has decided so often again, an hour at most.
    void untilDecisions(std::size_t more) {
        const std::size_t wanted = decisions.size() + more;
        for (int i = 0; i < 36000 && decisions.size() < wanted; ++i) advance(0.1);
    }
    bool hasSaid(const std::string& caption) const {
        for (const auto& said : utterances) {
            if (said.caption == caption) return true;
        }
        return false;
    }

    DrawnSheets sheets;
    FlatText text;
    SimulatedComputer computer;
    std::unique_ptr<AppDelegate> app;
    std::vector<Intent> decisions;
    std::vector<Mind> minds;
    std::vector<Instant> times;  // of the decisions
    std::vector<Utterance> utterances;

private:
    std::string store_;
};

}  // namespace quibbits
