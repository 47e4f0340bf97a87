// A scenario: it is refused with a reason, or it can be played.

#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "simulator/Player.h"
#include "support/DrawnSheets.h"
#include "support/FlatText.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quibbits;
    const auto parsed = parseScenario({reinterpret_cast<const char*>(data), size});
    if (const auto* error = std::get_if<ScenarioError>(&parsed)) {
        if (error->reason.empty()) std::abort();
        return 0;
    }
    const auto& scenario = std::get<Scenario>(parsed);
    if (!scenario.empty() && scenario.back().at > 600) return 0;  // long, not wrong
    static DrawnSheets sheets = DrawnSheets::ofWalker();
    FlatText text;
    Player player(scenario, {.lasting = 1}, sheets, text);
    player.play();
    return 0;
}
