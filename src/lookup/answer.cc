#include "lookup/answer.h"

#include <string.h>  // NOLINT(modernize-deprecated-headers): strsignal is POSIX

#include "platform.h"

namespace libquilp {
namespace {

/// Exit statuses of curl, and of the shell that starts it.
constexpr int kUnknownHost = 6;
constexpr int kNoConnection = 7;
constexpr int kUnwritablePage = 23;
constexpr int kNoProgram = 127;

std::string addOnOf(const Answer& answer) {
  return answer.addOn ? "the add-on of [" + answer.addOn->section + ']' : "the add-on";
}

std::string networkSentence(const Answer& answer) {
  switch (answer.number) {
    case kUnknownHost:
      return "could not resolve host " + answer.subject;
    case kNoConnection:
      return "could not connect to " + answer.subject;
    case kUnwritablePage:
      return "curl could not write the page of " + answer.subject;
    case kNoProgram:
      return std::string("there is no ") + kHttpClient;
    default:
      return "curl ended with status " + std::to_string(answer.number) + " for " + answer.subject;
  }
}

}  // namespace

std::string sentence(const Answer& answer) {
  const std::string number = std::to_string(answer.number);
  switch (answer.reason) {
    case Reason::kOk:
      return {};
    case Reason::kNothingFound:
      return "nothing found";
    case Reason::kUnknownSeason:
      return "the show has no season " + number;
    case Reason::kUnknownEpisode:
      return "the season has no episode " + number;
    case Reason::kUnknownPage:
      return "the page of " + answer.subject + " has nothing in a known form";
    case Reason::kNoAddOn:
      return "no add-on is enabled, and nothing else can answer";
    case Reason::kCannotStart:
      return addOnOf(answer) + " cannot be started: " + answer.subject;
    case Reason::kExitStatus:
      return addOnOf(answer) + " ended with status " + number;
    case Reason::kSignal: {
      const char* name = strsignal(answer.number);
      return addOnOf(answer) + " was ended by signal " + number +
             (name != nullptr ? std::string(" (") + name + ')' : "");
    }
    case Reason::kTimedOut:
      return (answer.addOn ? addOnOf(answer) : answer.subject) + " did not answer in time";
    case Reason::kCancelled:
      return "the lookup was cancelled";
    case Reason::kNoDocument:
      return addOnOf(answer) + " wrote no document";
    case Reason::kMalformedDocument:
      return (answer.addOn ? "the add-on's document" : "the document of " + answer.subject) +
             std::string(" is not well-formed");
    case Reason::kWrongDocument:
      return "the add-on's document has no element <" + answer.subject + "> at its top";
    case Reason::kNoNetwork:
      return networkSentence(answer);
    case Reason::kHttpStatus:
      return "the site answered HTTP " + number;
    case Reason::kChallenge:
      return "the site answers only browsers (HTTP " + number +
             " with a challenge): use an add-on, see quilp-addon(7)";
    case Reason::kOutOfMemory:
      return "out of memory";
    case Reason::kWrongRequest:
      return "this cannot be looked up: " + answer.subject;
  }
  return {};
}

const char* codeOf(Reason reason) {
  switch (reason) {
    case Reason::kOk:
      return "ok";
    case Reason::kNothingFound:
      return "nothing-found";
    case Reason::kUnknownSeason:
      return "unknown-season";
    case Reason::kUnknownEpisode:
      return "unknown-episode";
    case Reason::kUnknownPage:
      return "unknown-page";
    case Reason::kNoAddOn:
      return "no-add-on";
    case Reason::kCannotStart:
      return "cannot-start";
    case Reason::kExitStatus:
      return "exit-status";
    case Reason::kSignal:
      return "signal";
    case Reason::kTimedOut:
      return "timed-out";
    case Reason::kCancelled:
      return "cancelled";
    case Reason::kNoDocument:
      return "no-document";
    case Reason::kMalformedDocument:
      return "malformed-document";
    case Reason::kWrongDocument:
      return "wrong-document";
    case Reason::kNoNetwork:
      return "no-network";
    case Reason::kHttpStatus:
      return "http-status";
    case Reason::kChallenge:
      return "challenge";
    case Reason::kOutOfMemory:
      return "out-of-memory";
    case Reason::kWrongRequest:
      return "wrong-request";
  }
  return "";
}

}  // namespace libquilp
