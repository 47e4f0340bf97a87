#pragma once
// A click on a slot of the party dial, as a user makes it.

#include "dial/DialShape.h"
#include "dial/PartyDial.h"
#include "sim/SimulatedComputer.h"

namespace quibbits {

inline void tapSlot(SimulatedComputer& computer, int slot) {
    computer.clickStatusItem(MouseButton::left);
    const Rect frame = PartyDial::viewFrame(*computer.statusItem.frame(), computer.screens.main());
    computer.movePointer(DialShape::slotCenter(slot) + Vector{frame.x, frame.y});
    computer.press(MouseButton::left);
    computer.release(MouseButton::left);
}

}  // namespace quibbits
