#include "lookup/answer.h"

#include <string.h>  // NOLINT(modernize-deprecated-headers): strsignal is POSIX

#include "platform.h"
#include "plugin/run_curl.h"

namespace libquilp {
namespace {

/// Exit status of a shell that does not find a program.
constexpr int kNoProgram = 127;

struct CurlStatus {
  int exit;
  const char* before;  // the host's name
  const char* after;
};

constexpr CurlStatus kCurlStatuses[] = {
    {kNotStarted, "curl cannot be started for ", ""},
    {6, "could not resolve host ", ""},
    {7, "could not connect to ", ""},
    {18, "the connection to ", " ended before the whole page had come"},
    {23, "the page of ", " could not be written to its file"},
    {28, "", " did not answer in time"},
    {35, "no secure connection to ", ""},
    {52, "", " sent no answer"},
    {56, "the connection to ", " broke"},
    {60, "the certificate of ", " is not trusted"},
};

std::string addOnOf(const Answer& answer) {
  return answer.addOn ? "the add-on of [" + answer.addOn->section + ']' : "the add-on";
}

std::string signalName(int signal) {
  const char* name = strsignal(signal);
  return name != nullptr ? std::string(" (") + name + ')' : "";
}

}  // namespace

std::string curlSentence(int exit, const std::string& host) {
  if (exit == kNoProgram) {
    return std::string("there is no ") + kHttpClient;
  }
  for (const CurlStatus& status : kCurlStatuses) {
    if (status.exit == exit) {
      return status.before + host + status.after;
    }
  }
  return "curl ended with status " + std::to_string(exit) + " for " + host;
}

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
    case Reason::kNoAddOn:
      return "no add-on is enabled, and nothing else can answer";
    case Reason::kCannotStart:
      return answer.addOn ? addOnOf(answer) + " cannot be started: " + answer.subject
                          : answer.subject;
    case Reason::kExitStatus:
      return addOnOf(answer) + " ended with status " + number;
    case Reason::kSignal:
      return addOnOf(answer) + " was ended by signal " + number + signalName(answer.number);
    case Reason::kNoDocument:
      return addOnOf(answer) + " wrote no document";
    case Reason::kEmptyDocument:
      return addOnOf(answer) + " wrote an empty document";
    case Reason::kMalformedDocument:
      return "the document of " + addOnOf(answer) + " is not well-formed";
    case Reason::kWrongDocument:
      return "the document of " + addOnOf(answer) + " has no element <" + answer.subject +
             "> at its top";
    case Reason::kNoRole:
      return "the document of " + addOnOf(answer) + " has an actor without a role";
    case Reason::kNoNetwork:
      return curlSentence(answer.number, answer.subject);
    case Reason::kHttpStatus:
      return "the site answered HTTP " + number;
    case Reason::kChallenge:
      return "the site answers only browsers (" +
             (answer.number != 0 ? "HTTP " + number : std::string("a page")) +
             " with a challenge): use an add-on, see quilp-addon(7)";
    case Reason::kNoPage:
      return "curl left no page of " + answer.subject;
    case Reason::kEmptyPage:
      return "the page of " + answer.subject + " is empty";
    case Reason::kMalformedPage:
      return "the document of " + answer.subject + " is not well-formed, or of another kind";
    case Reason::kUnknownPage:
      return "the page of " + answer.subject + " has nothing in a known form";
    case Reason::kEmptyRows:
      return answer.addOn ? "the document of " + addOnOf(answer) +
                                " has entries, but no CDATA section with a text in them"
                          : "the page of " + answer.subject + " has rows without a known field";
    case Reason::kTimedOut:
      return (answer.addOn ? addOnOf(answer) : answer.subject) + " did not answer in time";
    case Reason::kCancelled:
      return "the lookup was cancelled";
    case Reason::kOutOfMemory:
      return "out of memory";
    case Reason::kWrongRequest:
      return answer.subject;
  }
  return {};
}

const char* codeOf(const Answer& answer) {
  switch (answer.reason) {
    case Reason::kOk:
      return "ok";
    case Reason::kNothingFound:
      return "no-results";
    case Reason::kUnknownSeason:
      return "unknown-season";
    case Reason::kUnknownEpisode:
      return "unknown-episode";
    case Reason::kNoAddOn:
      return "no-add-on";
    case Reason::kCannotStart:
      return answer.addOn ? "shell-not-executable" : "client-failed";
    case Reason::kExitStatus:
    case Reason::kSignal:
      return "shell-failed";
    case Reason::kNoDocument:
      return "no-document";
    case Reason::kEmptyDocument:
      return "empty-document";
    case Reason::kMalformedDocument:
      return "malformed-document";
    case Reason::kWrongDocument:
      return "wrong-document";
    case Reason::kNoRole:
      return "no-role";
    case Reason::kNoNetwork:
      return answer.number == kNoProgram ? "client-missing" : "client-failed";
    case Reason::kHttpStatus:
      return answer.number == 403 || answer.number == 429 || answer.number == 503 ? "refused"
                                                                                  : "error-page";
    case Reason::kChallenge:
      return "challenge-page";
    case Reason::kNoPage:
      return "no-page";
    case Reason::kEmptyPage:
      return "empty-page";
    case Reason::kMalformedPage:
      return "malformed-page";
    case Reason::kUnknownPage:
      return "no-rows";
    case Reason::kEmptyRows:
      return "empty-rows";
    case Reason::kTimedOut:
      return "timed-out";
    case Reason::kCancelled:
      return "cancelled";
    case Reason::kOutOfMemory:
      return "out-of-memory";
    case Reason::kWrongRequest:
      return "wrong-request";
  }
  return "";
}

}  // namespace libquilp
