#pragma once
// A few words beside something that the pointer rests on, for trays that show none themselves. Seen
// for as long as it lives; the mouse goes through it.

#include <memory>
#include <string>

#include "layers/Panel.h"
#include "platform/Text.h"

namespace quibbits {

class ToolTip {
public:
    struct Place {
        Rect subject;  // that it speaks of, in global coordinates
        Rect bounds;   // it is moved to lie inside
    };
    ToolTip(Panels& panels, const TextMeasure& ruler, const std::string& words, const Place& place);

    const Panel& panel() const { return *panel_; }

private:
    std::unique_ptr<Panel> panel_;
};

}  // namespace quibbits
