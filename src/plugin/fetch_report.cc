#include "plugin/fetch_report.h"

#include <strings.h>

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "ascii.h"
#include "text/cutter.h"

namespace libquilp {
namespace {

bool startsWith(std::string_view line, std::string_view start) {
  return line.size() >= start.size() && strncasecmp(line.data(), start.data(), start.size()) == 0;
}

/// Whether a page wants a browser, or a person, to prove itself.
bool isChallengePage(std::string_view page) {
  std::string text(page);
  std::transform(text.begin(), text.end(), text.begin(),
                 [](char c) { return static_cast<char>(toLower(static_cast<unsigned char>(c))); });
  constexpr std::string_view kMarks[] = {"captcha",         "challenge.js", "challenge-container",
                                         "are you a robot", "not a robot",  "are human",
                                         "unusual traffic"};
  return std::any_of(std::begin(kMarks), std::end(kMarks),
                     [&text](std::string_view mark) { return contains(text, mark); });
}

/// Takes the status of the last answer: the ones before it redirect.
void readHeaders(const std::string& text, Fetch& fetch) {
  Cutter lines(text);
  while (!lines.done()) {
    const std::string line(lines.upToOrRest("\n"));
    if (startsWith(line, "HTTP/")) {
      const char* status = line.c_str() + std::min(line.find(' '), line.size());
      fetch.http = static_cast<int>(std::strtol(status, nullptr, 10));
      fetch.isChallenge = false;
    } else if (startsWith(line, "x-amzn-waf-action:")) {
      fetch.isChallenge = contains(line, "challenge") || contains(line, "captcha");
    }
  }
}

}  // namespace

FetchReport::FetchReport(const std::string& address, const Context& context)
    : FetchReport(address, context, {}) {
  if (observer_ != nullptr) {
    own_.choose();
    headers_ = own_.name();
  }
}

FetchReport::FetchReport(const std::string& address, const Context& context, std::string headers)
    : observer_(context.observer), headers_(std::move(headers)) {
  if (observer_ != nullptr) {
    fetch_.address = address;
  }
}

std::string FetchReport::option() const {
  return headers_.empty() ? "" : " -D '" + headers_ + "' 2>/dev/null";
}

void FetchReport::finish(int exit, std::string_view page) {
  if (observer_ != nullptr) {
    finish(exit, page, readFile(headers_.c_str()).value_or(""));
  }
}

void FetchReport::finish(int exit, std::string_view page, const std::string& headers) {
  if (observer_ == nullptr) {
    return;
  }
  fetch_.exit = exit;
  fetch_.bytes = static_cast<long>(page.size());
  fetch_.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
  readHeaders(headers, fetch_);
  fetch_.isChallenge = fetch_.isChallenge || isChallengePage(page);
  observer_->pageFetched(fetch_);
}

}  // namespace libquilp
