#pragma once

namespace libquilp {

/// Why a lookup gave nothing.
enum class Reason {
  kOk,
  kNothingFound,
  kUnknownSeason,
  kUnknownEpisode,
  kUnknownPage,  // a page without anything that we know how to read
  kNoAddOn,
  kCannotStart,
  kExitStatus,
  kSignal,
  kTimedOut,
  kCancelled,
  kNoDocument,
  kMalformedDocument,
  kWrongDocument,  // well-formed, but with another root element
  kNoNetwork,
  kHttpStatus,
  kChallenge,
  kOutOfMemory,
  kWrongRequest,
};

}  // namespace libquilp
