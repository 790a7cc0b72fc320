#pragma once

namespace libquilp {

/// Why a lookup found nothing.
enum class Reason {
  kOk,
  kNothingFound,
  kUnknownSeason,
  kUnknownEpisode,

  kNoAddOn,
  kCannotStart,
  kExitStatus,
  kSignal,
  kNoDocument,
  kEmptyDocument,
  kMalformedDocument,
  kWrongDocument,  // well-formed, but with another root element
  kNoRole,         // an actor without a role

  kNoNetwork,  // or any other failure of curl
  kHttpStatus,
  kChallenge,
  kNoPage,
  kEmptyPage,
  kMalformedPage,  // a service's document that is not well-formed, or of another kind
  kUnknownPage,    // a page that has nothing in a known form
  kEmptyRows,      // rows of a page, or entries of an add-on's document, without known fields

  kTimedOut,
  kCancelled,
  kOutOfMemory,
  kWrongRequest,
};

}  // namespace libquilp
