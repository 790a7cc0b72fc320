#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace libquilp {

enum class NameKind { kUnknown, kMovie, kEpisode };

/// What the bytes of a name stand for.
enum class NameField : std::uint8_t {
  kTitle,
  kAlternativeTitle,
  kYear,
  kSeason,
  kEpisode,
  kAbsoluteEpisode,
  kAirDate,
  kEpisodeTitle,
  kPart,
  kEdition,
  kResolution,
  kSource,
  kVideoCodec,
  kAudioCodec,
  kAudioChannels,
  kHdr,
  k3D,
  kLanguage,
  kSubtitles,
  kGroup,
  kContainer,
  kIdentifier,
  kExtra,
  kOther,  // a tag that fills no field: PROPER, 10bit, a checksum, a site's name
};

/// Where in the name a field was read. Spans of one name do not overlap.
struct NameSpan {
  NameField field;
  std::size_t begin;
  std::size_t end;  // after the last byte
};

/// An identifier of a catalogue that stands in the name: {"imdb", "tt0133093"}.
struct NameIdentifier {
  std::string source;
  std::string id;
};

/// What the name of a release tells. What it does not tell is empty, or 0 for the year.
struct Name {
  NameKind kind = NameKind::kUnknown;
  std::string title;
  std::vector<std::string> alternativeTitles;
  int year = 0;
  int lastYear = 0;  // of a collection; 0 for a single film
  std::vector<int> seasons;
  std::vector<int> episodes;          // in their season; all of a range
  std::vector<int> absoluteEpisodes;  // counted through all seasons
  std::string airDate;                // YYYY-MM-DD
  std::string episodeTitle;
  std::string part;        // of a film in parts, or the number of a disc
  std::string edition;     // Director's Cut
  std::string resolution;  // 1080p
  std::string source;      // Blu-ray
  std::string videoCodec;  // H.264
  std::vector<std::string> audioCodecs;
  std::string audioChannels;  // 5.1
  std::vector<std::string> hdr;
  std::string threeD;                  // SBS, OU
  std::vector<std::string> languages;  // two-letter codes; mul for several that are not named
  std::vector<std::string> subtitles;  // two-letter codes; mul for several that are not named
  std::string group;
  std::string container;  // mkv
  std::vector<NameIdentifier> identifiers;
  std::string extra;  // sample, trailer, featurette: not the release itself
  std::vector<NameSpan> spans;
};

/// Reads the name of a video release, or a path that ends with one: folders above it fill what the
/// name leaves out. Any bytes are a name. Takes time in proportion to its length.
Name readName(std::string_view nameOrPath, NameKind hint = NameKind::kUnknown);

}  // namespace libquilp
