#include "quilp.h"

#include <json/writer.h>

#include <array>
#include <chrono>
#include <memory>
#include <mutex>
#include <new>
#include <optional>

#include "lookup/requests.h"
#include "plain/read_name.h"
#include "plain/reasons.h"
#include "plain/result.h"
#include "platform.h"

using libquilp::Context;
using libquilp::Control;
using libquilp::Values;

struct quilp_request {
  explicit quilp_request(quilp_lookup looked) : what(looked) {}

  const quilp_lookup what;
  std::array<std::optional<std::string>, QUILP_LANGUAGE + 1> texts{};
  std::array<long, QUILP_ROUTE + 1> numbers{};
  quilp_observer observer = nullptr;
  void* user = nullptr;
  Control control{};

  const char* text(quilp_text which) const {
    const std::optional<std::string>& text = texts[static_cast<std::size_t>(which)];
    return text ? text->c_str() : nullptr;
  }
  long number(quilp_number which) const { return numbers[static_cast<std::size_t>(which)]; }
};

struct quilp_answer {
  libquilp::PlainAnswer answer{};
  std::string sentence{};
  long milliseconds = 0;
  mutable std::string json{};  // made when it is asked for: few ask, and it takes a while
};

namespace {

constexpr long kUsualCount = 10;
constexpr long kMostDigits = 100000;
constexpr long kLongestDeadline = 2147483647;  // milliseconds: more could not be added to a time

struct Known {
  const libquilp::Request& request;
  quilp_text needed;
  const char* missing;
};

/// Null for an unknown lookup.
const Known* knownOf(quilp_lookup what) {
  static const std::array<Known, QUILP_SONG> kKnown = {{
      {libquilp::kMovieSearch, QUILP_KEYWORD, "the request has no keyword"},
      {libquilp::kMovieDetails, QUILP_ID, "the request has no identifier"},
      {libquilp::kShowSearch, QUILP_KEYWORD, "the request has no keyword"},
      {libquilp::kShowDetails, QUILP_ID, "the request has no identifier"},
      {libquilp::kEpisodeDetails, QUILP_ID, "the request has no identifier"},
      {libquilp::kAlbumSearch, QUILP_ALBUM, "the request has no album"},
      {libquilp::kArtistAlbums, QUILP_ARTIST, "the request has no artist"},
      {libquilp::kArtistPictures, QUILP_ARTIST, "the request has no artist"},
      {libquilp::kSong, QUILP_PATH, "the request has no path"},
  }};
  const auto i = static_cast<std::size_t>(what);
  return i >= 1 && i <= kKnown.size() ? &kKnown[i - 1] : nullptr;
}

/// Passes on what a lookup tells, one step at a time.
class Teller : public libquilp::Observer {
 public:
  explicit Teller(const quilp_request& request) : request_(request) {}

  void addOnStarted(const std::vector<std::string>& argv) override {
    tell(QUILP_ADD_ON_STARTED, argv.front(), 0);
  }
  void addOnEnded(const libquilp::ProgramEnd& end) override {
    if (end.started()) {
      tell(QUILP_ADD_ON_ENDED, "", end.signal() != 0 ? -1 : end.exitStatus());
    }
  }
  void pageFetched(const libquilp::Fetch& fetch) override {
    tell(QUILP_PAGE_FETCHED, fetch.address, fetch.http);
  }
  void message(const std::string& text) override { tell(QUILP_MESSAGE, text, 0); }

 private:
  void tell(quilp_event event, const std::string& text, long number) {
    if (request_.observer != nullptr) {
      const std::lock_guard<std::mutex> lock(telling_);
      request_.observer(request_.user, event, text.c_str(), number);
    }
  }

  const quilp_request& request_;
  std::mutex telling_;
};

Values valuesOf(const quilp_request& request) {
  const auto orEmpty = [&request](quilp_text which) {
    const char* text = request.text(which);
    return text != nullptr ? text : "";
  };
  Values values;
  values.keyword = orEmpty(QUILP_KEYWORD);
  values.id = orEmpty(QUILP_ID);
  values.album = orEmpty(QUILP_ALBUM);
  values.artist = orEmpty(QUILP_ARTIST);
  values.path = orEmpty(QUILP_PATH);
  values.language = request.text(QUILP_LANGUAGE);
  values.wantedLanguage = values.language;
  values.count = static_cast<int>(request.number(QUILP_COUNT));
  values.year = static_cast<int>(request.number(QUILP_YEAR));
  values.season = static_cast<int>(request.number(QUILP_SEASON));
  values.episode = static_cast<int>(request.number(QUILP_EPISODE));
  values.isWholeId = true;
  return values;
}

libquilp::PlainAnswer wrong(const char* sentence) {
  libquilp::PlainAnswer answer;
  answer.reason = libquilp::Reason::kWrongRequest;
  answer.subject = sentence;
  return answer;
}

libquilp::PlainAnswer lookUp(quilp_request& request) {
  const Known& known = *knownOf(request.what);
  const char* needed = request.text(known.needed);
  if (needed == nullptr || *needed == '\0') {
    return wrong(known.missing);
  }
  Teller teller(request);
  const Context context{&teller, &request.control, request.number(QUILP_ROUTE) == QUILP_BUILT_IN};
  if (request.number(QUILP_ROUTE) == QUILP_ADD_ON &&
      !addOnFor(known.request, libquilp::Use::kRecords, context)) {
    libquilp::PlainAnswer answer;
    answer.reason = libquilp::Reason::kNoAddOn;
    return answer;
  }
  return libquilp::look(known.request, valuesOf(request), context);
}

std::string jsonOf(const quilp_answer& answer) {
  Json::Value json;
  json["reason"] = libquilp::wordOf(libquilp::plainReasonOf(answer.answer.reason));
  json["sentence"] = libquilp::validUtf8(answer.sentence);
  json["add_on"] = answer.answer.addOn
                       ? Json::Value(libquilp::validUtf8(answer.answer.addOn->program))
                       : Json::Value();
  json["milliseconds"] = Json::Int64{answer.milliseconds};
  json["results"] = libquilp::jsonOf(answer.answer.results);
  Json::StreamWriterBuilder writer;
  writer["emitUTF8"] = true;
  writer["indentation"] = "";
  return Json::writeString(writer, json);
}

const libquilp::ResultField* fieldOf(const quilp_answer* answer, std::size_t result,
                                     const char* element) {
  if (answer == nullptr || element == nullptr || result >= answer->answer.results.size()) {
    return nullptr;
  }
  for (const libquilp::ResultField& field : answer->answer.results[result]) {
    if (field.element == element) {
      return &field;
    }
  }
  return nullptr;
}

bool isAllowed(quilp_number which, long number) {
  switch (which) {
    case QUILP_COUNT:
      return number >= 1 && number <= 1000;
    case QUILP_YEAR:
      return number == 0 || (number >= 1800 && number <= 2200);
    case QUILP_SEASON:
    case QUILP_EPISODE:
      return number >= 0 && number <= kMostDigits;
    case QUILP_DEADLINE:
      return number >= 0 && number <= kLongestDeadline;
    case QUILP_ROUTE:
      return number >= QUILP_ANY && number <= QUILP_BUILT_IN;
  }
  return false;
}

/// An answer of what `make` tells, which is given the time of the start.
template <class Make>
quilp_answer* answerOf(Make make) {
  const auto start = Control::Clock::now();
  std::unique_ptr<quilp_answer> answer(new (std::nothrow) quilp_answer);
  if (!answer) {
    return nullptr;
  }
  try {
    answer->answer = make(start);
    answer->milliseconds = static_cast<long>(
        std::chrono::duration_cast<std::chrono::milliseconds>(Control::Clock::now() - start)
            .count());
    answer->sentence = sentence(answer->answer);
  } catch (const std::exception&) {
    answer->answer.reason = libquilp::Reason::kOutOfMemory;
    answer->answer.results.clear();
  }
  return answer.release();
}

}  // namespace

const char* quilp_version(void) { return libquilp::kVersion; }

const char* quilp_reason_name(quilp_reason reason) { return libquilp::wordOf(reason); }

quilp_request* quilp_request_new(quilp_lookup what) {
  std::unique_ptr<quilp_request> request(
      knownOf(what) != nullptr ? new (std::nothrow) quilp_request(what) : nullptr);
  if (!request || request->control.descriptor() < 0) {
    return nullptr;
  }
  request->numbers[QUILP_COUNT] = kUsualCount;
  return request.release();
}

int quilp_request_set_text(quilp_request* request, quilp_text which, const char* text) try {
  if (request == nullptr || which < QUILP_KEYWORD || which > QUILP_LANGUAGE) {
    return -1;
  }
  std::optional<std::string>& kept = request->texts[static_cast<std::size_t>(which)];
  if (text != nullptr) {
    kept = std::string(text);
  } else {
    kept.reset();
  }
  return 0;
} catch (const std::bad_alloc&) {
  return -1;
}

int quilp_request_set_number(quilp_request* request, quilp_number which, long number) {
  if (request == nullptr || !isAllowed(which, number)) {
    return -1;
  }
  request->numbers[static_cast<std::size_t>(which)] = number;
  return 0;
}

int quilp_request_set_observer(quilp_request* request, quilp_observer observer, void* user) {
  if (request == nullptr) {
    return -1;
  }
  request->observer = observer;
  request->user = user;
  return 0;
}

void quilp_request_cancel(quilp_request* request) {
  if (request != nullptr) {
    request->control.cancel();
  }
}

void quilp_request_free(quilp_request* request) { delete request; }

quilp_answer* quilp_run(quilp_request* request) {
  return answerOf([request](Control::Clock::time_point start) {
    if (request == nullptr) {
      return wrong("there is no request");
    }
    const long limit = request->number(QUILP_DEADLINE);
    request->control.begin(limit > 0 ? std::optional(start + std::chrono::milliseconds(limit))
                                     : std::nullopt);
    return lookUp(*request);
  });
}

quilp_answer* quilp_read_name(const char* name, quilp_name_kind kind) {
  return answerOf([name, kind](Control::Clock::time_point) {
    if (name == nullptr) {
      return wrong("there is no name");
    }
    if (kind < QUILP_NAME_ANY || kind > QUILP_NAME_SONG) {
      return wrong("there is no such kind of name");
    }
    return libquilp::nameAnswer(name, static_cast<libquilp::NamedKind>(kind));
  });
}

quilp_reason quilp_answer_reason(const quilp_answer* answer) {
  return answer != nullptr ? libquilp::plainReasonOf(answer->answer.reason) : QUILP_OUT_OF_MEMORY;
}

const char* quilp_answer_sentence(const quilp_answer* answer) {
  return answer != nullptr ? answer->sentence.c_str() : "out of memory";
}

long quilp_answer_number(const quilp_answer* answer) {
  return answer != nullptr ? answer->answer.number : 0;
}

const char* quilp_answer_add_on(const quilp_answer* answer) {
  return answer != nullptr && answer->answer.addOn ? answer->answer.addOn->program.c_str()
                                                   : nullptr;
}

long quilp_answer_milliseconds(const quilp_answer* answer) {
  return answer != nullptr ? answer->milliseconds : 0;
}

std::size_t quilp_answer_count(const quilp_answer* answer) {
  return answer != nullptr ? answer->answer.results.size() : 0;
}

std::size_t quilp_answer_size(const quilp_answer* answer, std::size_t result, const char* element) {
  const libquilp::ResultField* field = fieldOf(answer, result, element);
  return field != nullptr ? field->values.size() : 0;
}

const char* quilp_answer_value(const quilp_answer* answer, std::size_t result, const char* element,
                               std::size_t i) {
  const libquilp::ResultField* field = fieldOf(answer, result, element);
  return field != nullptr && i < field->values.size() ? field->values[i].c_str() : nullptr;
}

const char* quilp_answer_role(const quilp_answer* answer, std::size_t result, std::size_t i) {
  const libquilp::ResultField* field = fieldOf(answer, result, "actor");
  return field != nullptr && i < field->roles.size() ? field->roles[i].c_str() : nullptr;
}

const char* quilp_answer_text(const quilp_answer* answer, std::size_t result, const char* element) {
  return quilp_answer_value(answer, result, element, 0);
}

const char* quilp_answer_json(const quilp_answer* answer) try {
  if (answer == nullptr) {
    return "{}";
  }
  if (answer->json.empty()) {
    answer->json = jsonOf(*answer);
  }
  return answer->json.c_str();
} catch (const std::exception&) {
  return "{}";
}

void quilp_answer_free(quilp_answer* answer) { delete answer; }
