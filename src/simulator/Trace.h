#pragma once
// The record of a simulated life, one JSON object a line: what was decided and why, what was said,
// sent, saved and thrown away.

#include <ostream>

#include "codecs/Json.h"
#include "creature/Companion.h"
#include "dial/PartyDial.h"
#include "sim/SimulatedComputer.h"

namespace quibbits {

class Trace {
public:
    /// Writes to the stream, which outlives it; without one it only tells onLine.
    Trace(std::ostream* out, SimulatedComputer& computer) : out_(out), computer_(computer) {}

    std::function<void(const Json& line)> onLine;

    /// Listens to the computer's own news.
    void followComputer();
    /// Listens to a creature, from before its start.
    void follow(Companion& creature);
    void follow(PartyDial& dial);

    /// A menu has opened.
    void menu(const Menu& menu);
    void decision(const Companion& creature, const Mind& mind);
    void position(const Companion& creature);
    /// A line with the time, the event's name and the fields given.
    void write(const std::string& event, Json::Object fields = {});

private:
    std::ostream* out_;
    SimulatedComputer& computer_;
};

}  // namespace quibbits
