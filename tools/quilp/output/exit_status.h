#pragma once

namespace quilp {

// Exit statuses of the program that are its own; another one is an add-on's or the client's.
inline constexpr int kNothingFound = 1;
inline constexpr int kWrongUsage = 2;

}  // namespace quilp
