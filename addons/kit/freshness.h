#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "transfer.h"

namespace quilp::kit {

/// Seconds since 1970.
using Seconds = std::int64_t;
Seconds secondsNow();

/// A date of HTTP, in any of its three forms.
std::optional<Seconds> readDate(const std::string& text);

/// Retry-After, from now on.
std::optional<Seconds> retryAfter(const TransferResult& result, Seconds now);

/// For how long an answer is fresh from now on, by RFC 9111: 0 if it has to be confirmed each time,
/// nothing if it must not be stored. `unless` is for an answer that does not say.
std::optional<Seconds> freshFor(const TransferResult& result, Seconds now, Seconds unless);

}  // namespace quilp::kit
