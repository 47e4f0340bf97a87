#pragma once
// Starting another program that lives on its own.

#include <string>
#include <vector>

namespace quibbits {

/// Starts a program, looked up in $PATH unless its name holds a slash, which nobody has to wait for
/// and which outlives this one. It inherits the descriptor `kept`, under the number `keptAs`, and
/// no other but the standard ones. False when it cannot be started.
bool spawnDetached(const std::vector<std::string>& command, int kept = -1, int keptAs = 3);

}  // namespace quibbits
