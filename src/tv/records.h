#pragma once

#include "libquilp.h"
#include "plugin/record_table.h"

namespace libquilp {

/// An entry of a list document.
inline constexpr Field<velTVShow> kShowFields[] = {
    textField("url", &velTVShow::poster),
    required(textField("id", &velTVShow::id)),
    required(textField("title", &velTVShow::title)),
    textField("first_air_date", &velTVShow::first_air_date),
    textField("outline", &velTVShow::outline),
};

/// The printed entry.
inline constexpr Field<velTVShow> kPrintedShowFields[] = {
    textField("id", &velTVShow::id, Missing::kEmptyText),
    textField("title", &velTVShow::title, Missing::kEmptyText),
    textField("first_air_date", &velTVShow::first_air_date, Missing::kEmptyText),
    textField("poster", &velTVShow::poster, Missing::kEmptyText),
    textField("outline", &velTVShow::outline, Missing::kNoText),
};

/// A show's document. Add-ons write "genres" and "network"; the printed document has "genre" and
/// "networks".
inline constexpr Field<velTVShowInfo> kShowInfoFields[] = {
    textField("id", &velTVShowInfo::id),
    required(textField("title", &velTVShowInfo::title)),
    textField("first_air_date", &velTVShowInfo::first_air_date),
    textField("last_air_date", &velTVShowInfo::last_air_date),
    textField("poster", &velTVShowInfo::poster),
    textField("banner", &velTVShowInfo::banner),
    textField("outline", &velTVShowInfo::outline),
    textField("rating", &velTVShowInfo::rating),
    castField("actor", &velTVShowInfo::actor_names, &velTVShowInfo::actor_roles,
              Missing::kOneElement),
    listField("genres", &velTVShowInfo::genres, Missing::kOneElement),
    textField("duration", &velTVShowInfo::duration),
    textField("content_rating", &velTVShowInfo::content_rating),
    listField("network", &velTVShowInfo::networks, Missing::kOneElement),
    listField("creator", &velTVShowInfo::creators, Missing::kOneElement),
};

inline constexpr Field<velTVShowInfo> kPrintedShowInfoFields[] = {
    textField("id", &velTVShowInfo::id),
    textField("title", &velTVShowInfo::title),
    textField("first_air_date", &velTVShowInfo::first_air_date),
    textField("last_air_date", &velTVShowInfo::last_air_date),
    textField("poster", &velTVShowInfo::poster),
    textField("banner", &velTVShowInfo::banner),
    textField("rating", &velTVShowInfo::rating),
    textField("outline", &velTVShowInfo::outline),
    textField("duration", &velTVShowInfo::duration),
    textField("content_rating", &velTVShowInfo::content_rating),
    listField("networks", &velTVShowInfo::networks, Missing::kOneElement),
    listField("creator", &velTVShowInfo::creators, Missing::kOneElement),
    listField("genre", &velTVShowInfo::genres, Missing::kOneElement),
    castField("actor", &velTVShowInfo::actor_names, &velTVShowInfo::actor_roles,
              Missing::kOneElement),
};

/// An add-on's document of an episode. Its picture may have two element names.
inline constexpr Field<velTVEpisode> kEpisodeFields[] = {
    textField("id", &velTVEpisode::id),
    required(textField("title", &velTVEpisode::title)),
    textField("air_date", &velTVEpisode::air_date),
    textField("url", &velTVEpisode::thumbnail),
    textField("outline", &velTVEpisode::outline),
    textField("thumbnail", &velTVEpisode::thumbnail),
    castField("actor", &velTVEpisode::actor_names, &velTVEpisode::actor_roles,
              Missing::kOneElement),
    listField("genre", &velTVEpisode::genres, Missing::kOneElement),
    listField("director", &velTVEpisode::directors, Missing::kOneElement),
    textField("rating", &velTVEpisode::rating),
};

/// The printed document; it also names every text of the record once.
inline constexpr Field<velTVEpisode> kPrintedEpisodeFields[] = {
    textField("id", &velTVEpisode::id),
    textField("title", &velTVEpisode::title),
    textField("air_date", &velTVEpisode::air_date),
    textField("season_number", &velTVEpisode::season_number),
    textField("episode_number", &velTVEpisode::episode_number),
    textField("outline", &velTVEpisode::outline),
    textField("thumbnail", &velTVEpisode::thumbnail),
    listField("genre", &velTVEpisode::genres, Missing::kOneElement),
    castField("actor", &velTVEpisode::actor_names, &velTVEpisode::actor_roles,
              Missing::kOneElement),
    listField("director", &velTVEpisode::directors, Missing::kOneElement),
    textField("rating", &velTVEpisode::rating),
};

}  // namespace libquilp
