#include "lookup/requests.h"
#include "tv/details.h"
#include "tv/records.h"
#include "tv/search.h"

namespace libquilp {
namespace {

constexpr Option kSearchOptions[] = {
    {"-t", Value::kKeyword}, {"-n", Value::kCount}, {"-l", Value::kLanguage}};
constexpr Option kShowOptions[] = {{"-i", Value::kId}, {"-l", Value::kLanguage}};
constexpr Option kEpisodeOptions[] = {
    {"-i", Value::kId}, {"-s", Value::kSeason}, {"-e", Value::kEpisode}, {"-l", Value::kLanguage}};

char* decimal(int value) { return SafeStrdup(std::to_string(value).c_str()); }

void readEpisode(const XMLNode& root, const Values& values, velTVEpisode& info) {
  readRecord<velTVEpisode>(root, kEpisodeFields, info);
  // Unlike the built-in scraper, this leaves season 0 and episode 0 null.
  info.season_number = values.season != 0 ? decimal(values.season) : nullptr;
  info.episode_number = values.episode != 0 ? decimal(values.episode) : nullptr;
}

/// Print the requested season and episode, not those of the record.
void setNumbers(const Values& values, velTVEpisode& info) {
  std::free(info.season_number);
  info.season_number = decimal(values.season);
  std::free(info.episode_number);
  info.episode_number = decimal(values.episode);
}

}  // namespace

constexpr ListRequest<velTVShow> kShowSearch = {
    {"tv search", kTVMedia, "searchtvshow", kSearchOptions, "tvshowlist", "tvshow", false, true,
     &listElements<velTVShow>, &printList<velTVShow>},
    kShowFields,
    kPrintedShowFields,
    nullptr,
    &velFreeTVShows,
    [](const Values& values, const Context& context) {
      return searchShows(ProcessKeyword(values.keyword, 1).c_str(), values.count, context);
    }};

constexpr RecordRequest<velTVShowInfo> kShowDetails = {
    {"tv show", kTVMedia, "gettvshowinfo", kShowOptions, "tvshow", nullptr, false, true,
     &recordElements<velTVShowInfo>, &printRecord<velTVShowInfo>},
    kShowInfoFields,
    kPrintedShowInfoFields,
    [](velTVShowInfo& info) { clearTexts<velTVShowInfo>(kShowInfoFields, info); },
    [](const XMLNode& root, const Values&, velTVShowInfo& info) {
      readRecord<velTVShowInfo>(root, kShowInfoFields, info);
    },
    [](const Values& values, const Context& context, velTVShowInfo& info) {
      return fetchShow(values.id, context, info);
    },
    nullptr,
    &tellsAnything<velTVShowInfo>,
    &velFreeTVShowInfo};

constexpr RecordRequest<velTVEpisode> kEpisodeDetails = {
    {"tv episode", kTVMedia, "gettvshowinfo", kEpisodeOptions, "tvepisode", nullptr, false, true,
     &recordElements<velTVEpisode>, &printRecord<velTVEpisode>},
    kEpisodeFields,
    kPrintedEpisodeFields,
    [](velTVEpisode& info) { clearTexts<velTVEpisode>(kPrintedEpisodeFields, info); },
    &readEpisode,
    [](const Values& values, const Context& context, velTVEpisode& info) {
      return fetchEpisode(values.id, values.season, values.episode, context, info);
    },
    &setNumbers,
    &tellsAnything<velTVEpisode>,
    &velFreeTVEpisode};

}  // namespace libquilp

using namespace libquilp;

int velSearchTVShows(const char* keyword, int count, const char* lang, velTVShow** shows,
                     int* error) {
  return search(kShowSearch, Values::search(keyword, count, lang), shows, error);
}

int velPrintSearchTVShows(const char* keyword, int count, const char* lang) {
  const auto answer =
      kShowSearch.print(kShowSearch, Values::search(keyword, count, lang), Context());
  return writeOut(answer) ? 0 : answer.status;
}

int velGetTVShowByID(const char* id, const char* lang, velTVShowInfo* info) {
  return fill(kShowDetails, Values::title(id, lang), info);
}

int velPrintTVShowByID(const char* id, const char* lang) {
  const auto answer = kShowDetails.print(kShowDetails, Values::title(id, lang), Context());
  return writeOut(answer) ? 0 : answer.status;
}

int velGetTVEpisode(const char* id, int season, int episode, const char* lang, velTVEpisode* info) {
  return fill(kEpisodeDetails, Values::ofEpisode(id, season, episode, lang), info);
}

int velPrintTVEpisode(const char* id, int season, int episode, const char* lang) {
  const auto answer = kEpisodeDetails.print(
      kEpisodeDetails, Values::ofEpisode(id, season, episode, lang), Context());
  return writeOut(answer) ? 0 : answer.status;
}
