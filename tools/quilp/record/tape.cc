#include "record/tape.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <mutex>
#include <string_view>

#include "kit/settings.h"
#include "platform.h"
#include "plugin/environment.h"
#include "plugin/files.h"
#include "plugin/outside.h"
#include "record/keys.h"
#include "text/place.h"
#include "text/watch.h"

namespace quilp {
namespace {

constexpr int kCouldNotConnect = 7;  // curl's
constexpr char kMissingFile[] = "/proc/self/fd/none";

enum class Mode { kOff, kRecord, kReplay };

std::atomic<bool> mayStart{true};

/// Writes anew, never through a link; nothing without a text.
void writeAnew(const std::string& path, const std::optional<std::string>& text) {
  unlink(path.c_str());
  if (!text) {
    return;
  }
  const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
  std::string_view rest = *text;
  for (ssize_t size = 1; file >= 0 && !rest.empty() && size > 0;) {
    size = write(file, rest.data(), rest.size());
    rest.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
  }
  close(file);
}

/// The path of a nameless file with the text.
std::string namelessFile(const std::string& text) {
  const std::string path = "/proc/self/fd/" + std::to_string(memfd_create("quilp", MFD_CLOEXEC));
  const int file = open(path.c_str(), O_WRONLY | O_CLOEXEC);
  const bool written =
      file >= 0 && write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size());
  close(file);
  return written ? path : kMissingFile;
}

class Tape {
 public:
  static Tape& get() {
    static Tape tape;
    return tape;
  }

  Mode mode() const { return mode_; }

  void record(const std::vector<std::string>& words) {
    mode_ = Mode::kRecord;
    recording_.words = words;
    for (const char* path : {libquilp::kRegistryFile, libquilp::kCatalogueFile}) {
      if (auto text = libquilp::readFile(path)) {
        recording_.files[path] = std::move(*text);
      }
    }
  }

  Recording take() {
    const std::lock_guard<std::mutex> lock(mutex_);
    mode_ = Mode::kOff;
    return std::move(recording_);
  }

  void replay(Recording recording) {
    mode_ = Mode::kReplay;
    recording_ = std::move(recording);
    for (const char* path : {libquilp::kRegistryFile, libquilp::kCatalogueFile}) {
      const auto found = recording_.files.find(path);
      places_[path] = found != recording_.files.end() ? namelessFile(found->second) : kMissingFile;
    }
    addOnsLeft_ = recording_.addOns;
    fetchesLeft_ = recording_.fetches;
  }

  const char* placeOf(const char* path) const {
    const auto found = places_.find(path);
    return found != places_.end() ? found->second.c_str() : path;
  }

  void keep(Exchange exchange, bool isFetch) {
    const std::lock_guard<std::mutex> lock(mutex_);
    (isFetch ? recording_.fetches : recording_.addOns).push_back(std::move(exchange));
  }

  void keepMarker(std::string_view marker, bool found) {
    constexpr std::size_t kShortest = 4;  // shorter ones only cut text that is found already
    if (mode_ == Mode::kRecord && marker.size() >= kShortest) {
      const std::lock_guard<std::mutex> lock(mutex_);
      bool& everFound = recording_.markers[std::string(marker)];
      everFound = everFound || found;
    }
  }

  /// The next answer to a question.
  Exchange answerTo(std::vector<std::string> question, bool isFetch, libquilp::Control* control) {
    for (std::string& word : question) {
      word = withoutKeys(word);
    }
    const std::lock_guard<std::mutex> lock(mutex_);
    auto& left = isFetch ? fetchesLeft_ : addOnsLeft_;
    const auto found = std::find_if(left.begin(), left.end(), [&](const Exchange& exchange) {
      return exchange.question == question;
    });
    Exchange exchange;
    if (found != left.end()) {
      exchange = std::move(*found);
      left.erase(found);
    } else {
      exchange.cut = wasCut_;  // the lookup ended here
      exchange.error = wasCut_ ? ECANCELED : ENOENT;
      exchange.status = isFetch ? kCouldNotConnect : 0;
      if (!wasCut_ && unanswered_.empty()) {
        for (const std::string& word : question) {
          unanswered_ += (unanswered_.empty() ? "" : " ") + word;
        }
      }
    }
    wasCut_ = wasCut_ || exchange.cut;
    if (exchange.cut && control != nullptr) {
      control->noteCut();
    }
    return exchange;
  }

  const std::string& unanswered() const { return unanswered_; }

 private:
  Mode mode_ = Mode::kOff;
  Recording recording_;
  std::map<std::string, std::string> places_;
  std::mutex mutex_;  // for what follows, and for what is added to the recording
  std::vector<Exchange> addOnsLeft_;
  std::vector<Exchange> fetchesLeft_;
  bool wasCut_ = false;
  std::string unanswered_;
};

bool wasCut(const libquilp::Control* control) {
  return control != nullptr && control->reason() != libquilp::Reason::kOk;
}

std::vector<std::string> variablesOfProtocol(char** environment) {
  std::vector<std::string> variables;
  for (; *environment != nullptr; ++environment) {
    const std::string entry = *environment;
    for (const char* name :
         {libquilp::kNameVariable, libquilp::kYearVariable, libquilp::kLanguageVariable}) {
      if (entry.compare(0, entry.find('='), name) == 0) {
        variables.push_back(entry);
      }
    }
  }
  return variables;
}

libquilp::ProgramEnd start(char** argv, char** environment, libquilp::Control* control) {
  if (control == nullptr && !mayStart) {
    libquilp::ProgramEnd end;
    end.error = ECANCELED;
    return end;
  }
  return libquilp::runProgram(argv, environment, control);
}

libquilp::CurlEnd start(libquilp::CurlRun run, libquilp::Control* control) {
  if (control == nullptr && !mayStart) {
    return {kCouldNotConnect, ""};
  }
  if (control == nullptr && !run.body.empty()) {
    run.body.clear();  // system() would ignore Ctrl-C
    return {runCurl(run, control).status, ""};
  }
  return runCurl(run, control);
}

}  // namespace

void beginRecording(const std::vector<std::string>& words) { Tape::get().record(words); }

Recording takeRecording() {
  Recording recording = Tape::get().take();
  removeKeys(recording, libquilp::readFile(kit::settingsFile()).value_or(""));
  return recording;
}

void beginReplay(Recording recording) { Tape::get().replay(std::move(recording)); }

void startNothing() { mayStart = false; }

std::string unanswered() { return Tape::get().unanswered(); }

}  // namespace quilp

namespace libquilp {

using quilp::Exchange;
using quilp::Mode;
using quilp::Tape;

const char* placeOf(const char* path) { return Tape::get().placeOf(path); }

void markerSought(std::string_view marker, bool found) { Tape::get().keepMarker(marker, found); }

ProgramEnd askAddOn(char** argv, char** environment, Control* control) {
  Tape& tape = Tape::get();
  if (tape.mode() == Mode::kOff) {
    return quilp::start(argv, environment, control);
  }
  Exchange exchange;
  for (char** word = argv; *word != nullptr; ++word) {
    exchange.question.emplace_back(*word);
  }
  const std::string document = exchange.question.back();
  exchange.question.resize(exchange.question.size() - 2);  // without "-o FILE"
  ProgramEnd end;
  if (tape.mode() == Mode::kReplay) {
    exchange = tape.answerTo(std::move(exchange.question), false, control);
    quilp::writeAnew(document, exchange.answer);
    end.error = exchange.error;
    end.waitStatus = exchange.status;
    return end;
  }
  exchange.variables = quilp::variablesOfProtocol(environment);
  end = quilp::start(argv, environment, control);
  exchange.error = end.error;
  exchange.status = end.waitStatus;
  exchange.cut = quilp::wasCut(control);
  exchange.answer = readFile(document.c_str());
  tape.keep(std::move(exchange), false);
  return end;
}

CurlEnd askCurl(const CurlRun& run, Control* control) {
  Tape& tape = Tape::get();
  if (tape.mode() == Mode::kOff) {
    return quilp::start(run, control);
  }
  Exchange exchange;
  if (tape.mode() == Mode::kReplay) {
    exchange = tape.answerTo({run.address}, true, control);
    if (!run.headers.empty()) {
      quilp::writeAnew(run.headers, exchange.headers);
    }
    if (run.body.empty()) {
      return {exchange.status, exchange.answer};
    }
    quilp::writeAnew(run.body, exchange.answer);
    return {exchange.status, ""};
  }
  exchange.question = {run.address};
  CurlEnd end = quilp::start(run, control);
  exchange.status = end.status;
  exchange.cut = quilp::wasCut(control);
  exchange.headers = run.headers.empty() ? std::nullopt : readFile(run.headers.c_str());
  exchange.answer = run.body.empty() ? end.output : readFile(run.body.c_str());
  tape.keep(std::move(exchange), true);
  return end;
}

std::vector<CurlEnd> askCurls(const std::string& command, const std::vector<std::string>& addresses,
                              Control& control) {
  Tape& tape = Tape::get();
  std::vector<CurlEnd> ends(addresses.size());
  if (tape.mode() != Mode::kReplay) {
    ends = runCurls(command, addresses, control);
  }
  for (std::size_t i = 0; i < ends.size(); ++i) {
    Exchange exchange;
    if (addresses[i].empty()) {
      continue;
    }
    if (tape.mode() == Mode::kReplay) {
      exchange = tape.answerTo({addresses[i]}, true, &control);
      ends[i] = {exchange.status, exchange.answer, exchange.headers.value_or("")};
    } else if (tape.mode() == Mode::kRecord) {
      exchange.question = {addresses[i]};
      exchange.status = ends[i].status;
      exchange.cut = quilp::wasCut(&control);
      exchange.headers = ends[i].headers;
      exchange.answer = ends[i].output;
      tape.keep(std::move(exchange), true);
    }
  }
  return ends;
}

}  // namespace libquilp
