#include "lookup/lookup.h"

#include <cstring>

#include "plugin/run_curl.h"
#include "text/cutter.h"

namespace libquilp {
namespace {

constexpr int kCurlTimedOut = 28;
constexpr int kAccepted = 202;
constexpr int kFirstError = 400;

std::string hostOf(const std::string& address) {
  Cutter cutter(address);
  cutter.past("://");
  return std::string(cutter.upToOrRest("/"));
}

/// Whether any entry has text, in CDATA or not, that is not blank.
int filledIn(const XMLNode& list, const char* entry, const char* element) {
  int filled = 0;
  list.forEachChild(entry, [&filled, entry, element](const XMLNode& child) {
    const XMLNode value = std::strcmp(entry, element) == 0 ? child : child.getChildNode(element);
    filled += holdsText(firstClear(value)) || holdsText(value.getText(0)) ? 1 : 0;
  });
  return filled;
}

}  // namespace

bool holdsText(const char* value) {
  return value != nullptr && value[std::strspn(value, " \t\r\n")] != '\0';
}

void Lookup::Recorder::pageFetched(const Fetch& fetch) {
  const std::lock_guard<std::mutex> lock(adding_);
  if (!fetches_.empty() && fetches_.back().address == fetch.address) {
    fetches_.back() = fetch;
  } else {
    fetches_.push_back(fetch);
  }
  next_->pageFetched(fetch);
}

Lookup::Lookup(const Request& request, const Values& values, Use use, const Context& context,
               Answer& answer)
    : request_(request), values_(values), answer_(answer), recorder_(context.observer) {
  context_ = context;
  context_.observer = context.observer != nullptr ? &recorder_ : nullptr;
  if (values.id == nullptr) {
    answer_.reason = Reason::kWrongRequest;
    answer_.subject = "there is no identifier";
    return;
  }
  if (!context.isBuiltInOnly) {
    answer_.addOn = addOnFor(request, use, context_);
  }
}

/// Whether the lookup was ended from outside. That is the reason then, whatever was found.
bool Lookup::wasCut() {
  const Reason reason = context_.control != nullptr ? context_.control->reason() : Reason::kOk;
  if (reason != Reason::kOk) {
    answer_.reason = reason;
  }
  return reason != Reason::kOk;
}

bool Lookup::runAddOn() {
  call_.emplace(*answer_.addOn, argumentsOf(request_, values_, *answer_.addOn),
                variablesOf(request_, values_), context_);
  const ProgramEnd& end = call_->end();
  answer_.status = end.reported();
  if (!end.started()) {
    answer_.reason = Reason::kCannotStart;
    answer_.number = end.error;
    answer_.subject = std::strerror(end.error);
  } else if (end.signal() != 0) {
    answer_.reason = Reason::kSignal;
    answer_.number = end.signal();
  } else if (end.exitStatus() != 0) {
    answer_.reason = Reason::kExitStatus;
    answer_.number = end.exitStatus();
  }
  wasCut();
  return answer_.reason == Reason::kOk;
}

XMLNode Lookup::document() {
  if (runAddOn()) {
    return openDocument();
  }
  // An add-on may have written its document and then hang.
  XMLNode root;
  if (wasCut() && call_->end().started()) {
    root = openDocument();
    wasCut();
  }
  return root;
}

/// The end of the time for a document.
IsOver Lookup::end() const {
  static constexpr std::chrono::milliseconds kReading(10);
  Control* control = context_.control;
  return control != nullptr ? [control] { return control->isOverFor(kReading); } : IsOver();
}

XMLNode Lookup::openDocument() {
  int error = 0;
  XMLNode root = XMLNode::openFileHelper(call_->file(), &error, request_.root, end());
  if (!root) {
    const auto text = readFile(call_->file());
    // Only a document that can be read lacks an element.
    answer_.reason = !text           ? Reason::kNoDocument
                     : text->empty() ? Reason::kEmptyDocument
                     : error < 0     ? Reason::kWrongDocument
                                     : Reason::kMalformedDocument;
    answer_.subject = request_.root;
  }
  return root;
}

std::optional<std::string> Lookup::copiedDocument(const std::vector<Element>& elements) {
  if (!runAddOn()) {
    answer_.status = 1;
    return {};
  }
  if (Observer* observer = context_.observer) {
    const XMLNode list = openDocument();
    const int rows = list.nChildNode(request_.entry);
    bool any = false;
    observer->rowsFound(rows);
    for (const Element& element : elements) {
      const int filled = filledIn(list, request_.entry, element.name);
      observer->fieldFound(element.name, filled);
      any = any || filled > 0;
    }
    conclude(any, rows > 0 ? Reason::kEmptyRows : Reason::kNothingFound);
  }
  auto text = readCopied(call_->file());
  answer_.status = text ? 0 : 1;
  return text;
}

bool Lookup::setReason(const Fetch& fetch) {
  answer_.subject = hostOf(fetch.address);
  answer_.number = fetch.exit != 0 ? fetch.exit : fetch.http;
  if (fetch.exit == kNotStarted) {
    answer_.reason = Reason::kCannotStart;
    answer_.subject = curlSentence(fetch.exit, answer_.subject);
  } else if (fetch.exit != 0) {
    answer_.reason = fetch.exit == kCurlTimedOut ? Reason::kTimedOut : Reason::kNoNetwork;
  } else if (fetch.isChallenge) {
    answer_.reason = Reason::kChallenge;
  } else if (fetch.http >= kFirstError) {
    answer_.reason = Reason::kHttpStatus;
  }
  return answer_.reason != Reason::kOk;
}

void Lookup::conclude(bool found, Reason known) {
  if (wasCut() || answer_.reason != Reason::kOk) {
    return;
  }
  const std::vector<Fetch>& fetches = recorder_.fetches();
  if (found) {
    // What a page that did not come would have told is missing.
    for (const Fetch& fetch : fetches) {
      if (fetch.exit != 0 && setReason(fetch)) {
        return;
      }
    }
    // Error pages have a title, too.
    if (!fetches.empty() && (fetches[0].http >= kFirstError || fetches[0].http == kAccepted)) {
      setReason(fetches[0]);
    }
    return;
  }
  for (const Fetch& fetch : fetches) {
    if (setReason(fetch)) {
      return;
    }
  }
  answer_.reason = known != Reason::kOk ? known : Reason::kNothingFound;
  answer_.number = known == Reason::kUnknownEpisode ? values_.episode : values_.season;
  answer_.subject = fetches.empty() ? "" : hostOf(fetches.front().address);
  if (!answer_.addOn && std::strchr(values_.id, '\'') != nullptr) {
    answer_.reason = Reason::kWrongRequest;
    answer_.subject = "no page has a single quote in its address";
  }
}

}  // namespace libquilp
