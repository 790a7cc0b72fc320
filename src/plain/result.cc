#include "plain/result.h"

#include "libquilp.h"
#include "lookup/requests.h"

namespace libquilp {
namespace {

constexpr std::chrono::milliseconds kCopying(20);  // after the end, reading included

template <class Record>
void lookList(const Request& base, const Values& values, const Context& context,
              PlainAnswer& plain) {
  const auto& request = static_cast<const ListRequest<Record>&>(base);
  const ListAnswer<Record> answer = run(request, values, context);
  static_cast<Answer&>(plain) = answer;
  for (const Record& record : answer.found.records) {
    if (context.control->isOverFor(kCopying)) {
      plain.reason = context.control->reason();
      return;
    }
    addResult(request.printed, record, plain.results);
  }
}

/// A record that its destructor releases.
template <class Record>
struct Released : Record {
  explicit Released(void (*free)(Record*)) : Record(), free_(free) {}
  ~Released() { free_(this); }
  Released(const Released&) = delete;
  Released& operator=(const Released&) = delete;

 private:
  void (*free_)(Record*);
};

template <class Record>
void lookRecord(const Request& base, const Values& values, const Context& context,
                PlainAnswer& plain) {
  const auto& request = static_cast<const RecordRequest<Record>&>(base);
  Released<Record> record(request.release);
  static_cast<Answer&>(plain) = run<Record>(request, values, context, record);
  addResult<Record>(request.fields, record, plain.results);
}

void addNumber(const char* element, int number, Result& result) {
  addText(element, number >= 0 ? std::to_string(number).c_str() : nullptr, result);
}

void lookSong(const Request& /*request*/, const Values& values, const Context& context,
              PlainAnswer& plain) {
  KTV_ExtraData_t song;
  static_cast<Answer&>(plain) = run(kSong, values, context, song);
  if (plain.reason != Reason::kOk) {
    return;
  }
  Result result;
  Strings artists;
  for (const ArtistData_t& artist : song.artists) {
    artists.push_back(artist.name);
  }
  addText("Title", song.title.c_str(), result);
  addNumber("Language", song.language, result);
  addNumber("AudioTrack", song.audioTrack, result);
  addNumber("Gain", song.gain, result);
  addList("Artist", artists, nullptr, result);
  addList("Genre", song.genres, nullptr, result);
  addResult(std::move(result), plain.results);
}

struct Way {
  const Request& request;
  void (*look)(const Request& request, const Values& values, const Context& context,
               PlainAnswer& answer);
};

const Way kWays[] = {{kMovieSearch, &lookList<velMovie_>},
                     {kMovieDetails, &lookRecord<velMovieInfo_>},
                     {kShowSearch, &lookList<velTVShow>},
                     {kShowDetails, &lookRecord<velTVShowInfo>},
                     {kEpisodeDetails, &lookRecord<velTVEpisode>},
                     {kAlbumSearch, &lookList<velAlbum_>},
                     {kArtistAlbums, &lookList<velAlbum_>},
                     {kArtistPictures, &lookList<velThumb_>},
                     {kSong, &lookSong}};

Json::Value jsonOf(const ResultField& field) {
  if (!field.isList) {
    return validUtf8(field.values.front());
  }
  Json::Value list(Json::arrayValue);
  for (std::size_t i = 0; i < field.values.size(); ++i) {
    if (field.roles.empty()) {
      list.append(validUtf8(field.values[i]));
    } else {
      Json::Value actor;
      actor["name"] = validUtf8(field.values[i]);
      actor["role"] = validUtf8(field.roles[i]);
      list.append(actor);
    }
  }
  return list;
}

}  // namespace

void addResult(Result&& result, std::vector<Result>& results) {
  if (!result.empty()) {
    results.push_back(std::move(result));
  }
}

void addText(const char* element, const char* text, Result& result) {
  if (text != nullptr && *text != '\0') {
    result.push_back({element, {text}});
  }
}

void addList(const char* element, const Strings& values, const Strings* roles, Result& result) {
  if (!values.empty()) {
    result.push_back({element, values, roles != nullptr ? *roles : Strings(), true});
    if (roles != nullptr) {
      result.back().roles.resize(values.size());
    }
  }
}

PlainAnswer look(const Request& request, const Values& values, const Context& context) {
  PlainAnswer answer;
  for (const Way& way : kWays) {
    if (&way.request == &request) {
      way.look(request, values, context, answer);
    }
  }
  return answer;
}

Json::Value jsonOf(const std::vector<Result>& results) {
  Json::Value list(Json::arrayValue);
  for (const Result& result : results) {
    Json::Value one(Json::objectValue);
    for (const ResultField& field : result) {
      one[field.element] = jsonOf(field);
    }
    list.append(one);
  }
  return list;
}

}  // namespace libquilp
