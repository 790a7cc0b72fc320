#pragma once

#include <string>
#include <vector>

namespace quilp {

/// From now on, a process whose parent has ended becomes a child of this program.
void adoptDescendants();

/// Waits half a second for all children to end. Returns the names of those that still run.
std::vector<std::string> lingeringDescendants();

/// Sends SIGKILL to all children, without waiting for them.
void killChildren();

/// Kills all children and their descendants, and waits for them.
void endDescendants();

}  // namespace quilp
