#pragma once

namespace libquilp {
struct PrintedAnswer;
}

namespace quilp {

// The program's own exit statuses. All others are an add-on's or curl's.
inline constexpr int kNothingFound = 1;
inline constexpr int kWrongUsage = 2;
inline constexpr int kInterrupted = 130;

int exitStatusOf(const libquilp::PrintedAnswer& answer);

}  // namespace quilp
