#include "plain/reasons.h"

namespace libquilp {

quilp_reason plainReasonOf(Reason reason) {
  switch (reason) {
    case Reason::kOk:
      return QUILP_OK;
    case Reason::kNothingFound:
    case Reason::kUnknownSeason:
    case Reason::kUnknownEpisode:
      return QUILP_NOTHING_FOUND;
    case Reason::kNoAddOn:
      return QUILP_NO_ADD_ON;
    case Reason::kCannotStart:
      return QUILP_CANNOT_START;
    case Reason::kExitStatus:
      return QUILP_EXIT_STATUS;
    case Reason::kSignal:
      return QUILP_SIGNAL;
    case Reason::kNoDocument:
    case Reason::kEmptyDocument:
    case Reason::kMalformedDocument:
    case Reason::kWrongDocument:
    case Reason::kNoRole:
    case Reason::kMalformedPage:
    case Reason::kEmptyRows:
      return QUILP_MALFORMED_DOCUMENT;
    case Reason::kNoNetwork:
    case Reason::kNoPage:
      return QUILP_NO_NETWORK;
    case Reason::kHttpStatus:
      return QUILP_HTTP_STATUS;
    case Reason::kChallenge:
      return QUILP_CHALLENGE;
    case Reason::kEmptyPage:
    case Reason::kUnknownPage:
      return QUILP_UNKNOWN_PAGE;
    case Reason::kTimedOut:
      return QUILP_TIMED_OUT;
    case Reason::kCancelled:
      return QUILP_CANCELLED;
    case Reason::kOutOfMemory:
      return QUILP_OUT_OF_MEMORY;
    case Reason::kWrongRequest:
      return QUILP_WRONG_REQUEST;
  }
  return QUILP_WRONG_REQUEST;
}

const char* wordOf(quilp_reason reason) {
  static constexpr const char* kWords[] = {
      "ok",          "nothing-found", "no-add-on",     "cannot-start",       "exit-status",
      "signal",      "timed-out",     "cancelled",     "malformed-document", "no-network",
      "http-status", "challenge",     "out-of-memory", "wrong-request",      "unknown-page"};
  const auto i = static_cast<unsigned>(reason);
  return i < sizeof kWords / sizeof *kWords ? kWords[i] : "unknown";
}

}  // namespace libquilp
