#pragma once

namespace libquilp {
struct PrintedAnswer;
}

namespace quilp {

// Exit statuses of the program that are its own; another one is an add-on's or curl's.
inline constexpr int kNothingFound = 1;
inline constexpr int kWrongUsage = 2;

int exitStatusOf(const libquilp::PrintedAnswer& answer);

}  // namespace quilp
