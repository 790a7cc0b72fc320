#include "name/fields.h"

#include <utility>

#include "name/name.h"
#include "name/song.h"

namespace libquilp {
namespace {

using Form = KeyValues::Form;
using Texts = std::vector<std::string>;

/// Fields that are told, in their order.
class Fields {
 public:
  void add(std::string_view key, const std::string& value) {
    add(key, Form::kText, value.empty() ? Texts() : Texts{value});
  }

  void add(std::string_view key, const std::vector<int>& numbers) {
    Texts texts;
    for (const int number : numbers) {
      texts.push_back(std::to_string(number));
    }
    add(key, Form::kNumber, std::move(texts));
  }

  void add(std::string_view key, Form form, Texts values) {
    if (!values.empty()) {
      all_.push_back({key, form, std::move(values)});
    }
  }

  std::vector<KeyValues> take() { return std::move(all_); }

 private:
  std::vector<KeyValues> all_;
};

const char* textOf(NameKind kind) {
  switch (kind) {
    case NameKind::kMovie:
      return "movie";
    case NameKind::kEpisode:
      return "episode";
    case NameKind::kUnknown:
      break;
  }
  return "unknown";
}

Texts pairsOf(const std::vector<NameIdentifier>& identifiers) {
  Texts pairs;
  for (const NameIdentifier& identifier : identifiers) {
    pairs.push_back(identifier.source);
    pairs.push_back(identifier.id);
  }
  return pairs;
}

}  // namespace

std::vector<KeyValues> fieldsOf(const Name& name) {
  Fields fields;
  fields.add("kind", textOf(name.kind));
  fields.add("title", name.title);
  fields.add("alternative_title", Form::kTexts, name.alternativeTitles);
  std::vector<int> years;
  if (name.year != 0) {
    years.push_back(name.year);
    for (int year = name.year + 1; year <= name.lastYear; ++year) {
      years.push_back(year);
    }
  }
  fields.add("year", years);
  fields.add("season", name.seasons);
  fields.add("episode", name.episodes);
  fields.add("absolute_episode", name.absoluteEpisodes);
  fields.add("air_date", name.airDate);
  fields.add("episode_title", name.episodeTitle);
  fields.add("part", name.part);
  fields.add("edition", name.edition);
  fields.add("resolution", name.resolution);
  fields.add("source_medium", name.source);
  fields.add("video_codec", name.videoCodec);
  fields.add("audio_codec", Form::kText, name.audioCodecs);
  fields.add("language", Form::kTexts, name.languages);
  fields.add("group", name.group);
  fields.add("identifiers", Form::kPairs, pairsOf(name.identifiers));
  fields.add("container", name.container);
  return fields.take();
}

std::vector<KeyValues> detailsOf(const Name& name) {
  Fields fields;
  fields.add("audio_channels", name.audioChannels);
  fields.add("hdr", Form::kTexts, name.hdr);
  fields.add("3d", name.threeD);
  fields.add("subtitles", Form::kTexts, name.subtitles);
  fields.add("extra", name.extra);
  return fields.take();
}

bool tellSame(const Name& a, const Name& b) {
  return fieldsOf(a) == fieldsOf(b) && detailsOf(a) == detailsOf(b);
}

std::vector<KeyValues> fieldsOf(const Song& song) {
  Fields fields;
  fields.add("kind", "song");
  fields.add("artist", Form::kTexts, song.artists);
  fields.add("title", song.title);
  fields.add("language", Form::kTexts, song.languages);
  fields.add("vocal_track", song.vocalTrack);
  fields.add("style", song.style);
  fields.add("disc_id", song.discId);
  fields.add("container", song.container);
  return fields.take();
}

}  // namespace libquilp
