#pragma once

#include <string>
#include <vector>

namespace quilp {

/// From now on, a process whose parent has ended becomes a child of this program: none escapes.
void adoptDescendants();

/// Waits a moment for all children to end by themselves; the names of those that do not.
std::vector<std::string> lingeringDescendants();

/// Sends SIGKILL to all children, and collects none of them.
void killChildren();

/// Ends all children, and theirs.
void endDescendants();

}  // namespace quilp
