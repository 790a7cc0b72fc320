#include "scan/row.h"

#include "output/json_output.h"
#include "output/utf8.h"

namespace quilp {
namespace {

Json::Value jsonOf(int number) { return number != 0 ? Json::Value(number) : Json::Value(); }

/// One number, a list of several, or null.
Json::Value jsonOf(const std::vector<int>& numbers) {
  Json::Value list(Json::arrayValue);
  for (const int number : numbers) {
    list.append(number);
  }
  return numbers.empty() ? Json::Value() : numbers.size() == 1 ? list[0] : list;
}

Json::Value jsonOf(const Candidates& candidates) {
  Json::Value list(Json::arrayValue);
  for (const Candidate& candidate : candidates) {
    Json::Value one;
    one["id"] = jsonText(candidate.id);
    one["title"] = jsonText(candidate.title);
    one["year"] = jsonOf(candidate.year);
    one["confidence"] = candidate.confidence;
    one["reason"] = jsonText(candidate.reason);
    list.append(one);
  }
  return list;
}

std::string textOf(const Json::Value& value) { return value.isNull() ? "" : value.asString(); }
int numberOf(const Json::Value& value) { return value.isNull() ? 0 : value.asInt(); }

std::vector<int> numbersOf(const Json::Value& value) {
  std::vector<int> numbers;
  if (value.isArray()) {
    for (const Json::Value& one : value) {
      numbers.push_back(one.asInt());
    }
  } else if (!value.isNull()) {
    numbers.push_back(value.asInt());
  }
  return numbers;
}

MediaKind kindOf(const std::string& name) {
  for (const MediaKind kind : {MediaKind::kEpisode, MediaKind::kSong, MediaKind::kAlbum}) {
    if (name == nameOf(kind)) {
      return kind;
    }
  }
  return MediaKind::kMovie;
}

}  // namespace

Json::Value jsonOf(const ScanRow& row) {
  Json::Value object;
  object["file"] = validUtf8(row.file);
  object["kind"] = nameOf(row.kind);
  object["title"] = jsonText(row.title);
  object["year"] = jsonOf(row.year);
  object["season"] = jsonOf(row.seasons);
  object["episode"] = jsonOf(row.episodes);
  object["episode_title"] = jsonText(row.episodeTitle);
  object["match"] = jsonText(row.match);
  object["match_year"] = jsonOf(row.matchYear);
  object["match_episode_title"] = jsonText(row.matchEpisode);
  object["air_date"] = jsonText(row.airDate);
  object["id"] = jsonText(row.id);
  object["confidence"] = row.confidence;
  object["sure"] = row.sure;
  object["reason"] = jsonText(row.reason);
  object["failure"] = jsonText(row.failure);
  object["candidates"] = jsonOf(row.candidates);
  return object;
}

ScanRow rowOf(const Json::Value& json) {
  ScanRow row;
  row.file = textOf(json["file"]);
  row.kind = kindOf(textOf(json["kind"]));
  row.title = textOf(json["title"]);
  row.year = numberOf(json["year"]);
  row.seasons = numbersOf(json["season"]);
  row.episodes = numbersOf(json["episode"]);
  row.episodeTitle = textOf(json["episode_title"]);
  row.match = textOf(json["match"]);
  row.matchYear = numberOf(json["match_year"]);
  row.matchEpisode = textOf(json["match_episode_title"]);
  row.airDate = textOf(json["air_date"]);
  row.id = textOf(json["id"]);
  row.confidence = json["confidence"].asInt();
  row.sure = json["sure"].asBool();
  row.reason = textOf(json["reason"]);
  row.failure = textOf(json["failure"]);
  row.failed = !row.failure.empty();
  for (const Json::Value& one : json["candidates"]) {
    Candidate candidate{textOf(one["id"]), textOf(one["title"]), numberOf(one["year"])};
    candidate.confidence = one["confidence"].asInt();
    candidate.reason = textOf(one["reason"]);
    row.candidates.push_back(std::move(candidate));
  }
  return row;
}

std::string numbersText(const std::vector<int>& numbers) {
  if (numbers.empty()) {
    return {};
  }
  const std::string first = std::to_string(numbers.front());
  return numbers.size() == 1 ? first : first + '-' + std::to_string(numbers.back());
}

}  // namespace quilp
