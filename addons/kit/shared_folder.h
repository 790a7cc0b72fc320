#pragma once

#include <string>

namespace quilp::kit {

/// Whether the members of a group share a folder: it is root's, what is made in it belongs to its
/// group (the set-group-ID bit), and only they may write there.
bool isShared(const std::string& folder);

/// Lets the group write an open file in such a folder if it is this user's. A link is left as it
/// is: a member may have put it there.
void shareFile(int file, const std::string& folder);

}  // namespace quilp::kit
