#include <cstdlib>
#include <new>

#include "libquilp.h"
#include "plugin/result_document.h"
#include "plugin/shell_call.h"
#include "tv/details.h"
#include "tv/records.h"
#include "tv/search.h"

namespace {

const char* languageOr(libquilp::ShellCall& shell, const char* lang) {
  if (lang == nullptr) {
    getDefaultLang(&lang, shell.shell());
  }
  return lang;
}

void replaceText(char*& text, const char* value) {
  std::free(text);
  text = libquilp::SafeStrdup(value);
}

}  // namespace

int velSearchTVShows(const char* keyword, int count, const char* lang, velTVShow** shows,
                     int* error) try {
  using namespace libquilp;
  ShellCall shell("TV");
  if (!shell.found()) {
    return imdbGetTVShows(ProcessKeyword(keyword, 1).c_str(), count, shows);
  }
  const int status = shell.run({"searchtvshow", "-t", ProcessKeyword(keyword, 0).c_str(), "-n",
                                Decimal(count), "-l", languageOr(shell, lang)});
  if (status != 0) {
    *error = status;
    return 0;
  }
  const XMLNode list = shell.document("tvshowlist");
  return list ? readRecords(list, "tvshow", kShowFields, &velFreeTVShows, shows) : 0;
} catch (const std::bad_alloc&) {
  return 0;
}

int velPrintSearchTVShows(const char* keyword, int count, const char* lang) try {
  using namespace libquilp;
  velTVShow* shows = nullptr;
  int error = 0;
  const int n = velSearchTVShows(keyword, count, lang, &shows, &error);
  const RecordArray<velTVShow> owned(&velFreeTVShows, shows, n);
  if (n == 0) {
    return error;
  }
  ResultDocument document("tvshowlist");
  for (int i = 0; i < n; ++i) {
    XMLNode entry = document.addEntry("tvshow", i);
    writeRecord(entry, kPrintedShowFields, shows[i], addClearChild);
  }
  document.printDecoded();
  return 0;
} catch (const std::bad_alloc&) {
  return 1;
}

int velGetTVShowByID(const char* id, const char* lang, velTVShowInfo* info) try {
  using namespace libquilp;
  if (id == nullptr || info == nullptr) {
    return 1;
  }
  clearTexts(kShowInfoFields, *info);
  ShellCall shell("TV");
  if (!shell.found()) {
    return imdbGetTVShowInfo(id, info);
  }
  const int status =
      shell.run({"gettvshowinfo", "-i", withoutPrefix(id), "-l", languageOr(shell, lang)});
  if (status != 0) {
    return status;
  }
  const XMLNode show = shell.document("tvshow");
  if (!show) {
    return 1;
  }
  readRecord(show, kShowInfoFields, *info);
  return 0;
} catch (const std::bad_alloc&) {
  return 1;
}

int velPrintTVShowByID(const char* id, const char* lang) try {
  using namespace libquilp;
  Owned<velTVShowInfo, velFreeTVShowInfo> info;
  const int status = velGetTVShowByID(id, lang, &info);
  if (status != 0) {
    return status;
  }
  ResultDocument document("tvshow");
  writeRecord<velTVShowInfo>(document.root(), kPrintedShowInfoFields, info, addClearChild);
  document.printDecoded();
  return 0;
} catch (const std::bad_alloc&) {
  return 1;
}

int velGetTVEpisode(const char* id, int season, int episode, const char* lang,
                    velTVEpisode* info) try {
  using namespace libquilp;
  if (id == nullptr || info == nullptr) {
    return 1;
  }
  clearTexts(kPrintedEpisodeFields, *info);
  ShellCall shell("TV");
  if (!shell.found()) {
    return imdbGetEpisodeInfo(id, season, episode, info);
  }
  const int status = shell.run({"gettvshowinfo", "-i", withoutPrefix(id), "-s", Decimal(season),
                                "-e", Decimal(episode), "-l", languageOr(shell, lang)});
  if (status != 0) {
    return status;
  }
  const XMLNode document = shell.document("tvepisode");
  if (!document) {
    return 1;
  }
  readRecord(document, kEpisodeFields, *info);
  // Unlike the built-in scraper, an add-on has no season and no episode 0.
  info->season_number = season != 0 ? SafeStrdup(Decimal(season)) : nullptr;
  info->episode_number = episode != 0 ? SafeStrdup(Decimal(episode)) : nullptr;
  return 0;
} catch (const std::bad_alloc&) {
  return 1;
}

int velPrintTVEpisode(const char* id, int season, int episode, const char* lang) try {
  using namespace libquilp;
  Owned<velTVEpisode, velFreeTVEpisode> info;
  const int status = velGetTVEpisode(id, season, episode, lang, &info);
  if (status != 0) {
    return status;
  }
  // What was asked for is printed, whatever the record holds.
  replaceText(info.season_number, Decimal(season));
  replaceText(info.episode_number, Decimal(episode));
  ResultDocument document("tvepisode");
  writeRecord<velTVEpisode>(document.root(), kPrintedEpisodeFields, info, addClearChild);
  document.printDecoded();
  return 0;
} catch (const std::bad_alloc&) {
  return 1;
}
