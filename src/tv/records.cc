#include "tv/records.h"

#include <cstddef>

#include "plugin/records.h"

// The record layouts are part of the binary interface.
static_assert(sizeof(velTVShow) == 5 * sizeof(char*), "velTVShow has changed");
static_assert(sizeof(velTVShowInfo) == 10 * sizeof(char*) + 6 * sizeof(std::vector<std::string>),
              "velTVShowInfo has changed");
static_assert(sizeof(velTVEpisode) == 8 * sizeof(char*) + 4 * sizeof(std::vector<std::string>),
              "velTVEpisode has changed");
static_assert(offsetof(velTVShowInfo, directors) == 10 * sizeof(char*) &&
                  offsetof(velTVShowInfo, actor_roles) == 25 * sizeof(char*),
              "velTVShowInfo has changed");
static_assert(offsetof(velTVEpisode, directors) == 8 * sizeof(char*) &&
                  offsetof(velTVEpisode, actor_roles) == 17 * sizeof(char*),
              "velTVEpisode has changed");

void velFreeTVShows(velTVShow* shows, int count) {
  libquilp::freeRecords<velTVShow>(libquilp::kShowFields, shows, count);
}

void velFreeTVShowInfo(velTVShowInfo* info) {
  if (info != nullptr) {
    libquilp::freeTexts<velTVShowInfo>(libquilp::kShowInfoFields, *info);
  }
}

void velFreeTVEpisode(velTVEpisode* info) {
  if (info != nullptr) {
    libquilp::freeTexts<velTVEpisode>(libquilp::kPrintedEpisodeFields, *info);
  }
}
