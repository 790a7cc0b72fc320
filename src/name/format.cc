#include "name/format.h"

#include <string_view>
#include <vector>

#include "name/fields.h"
#include "name/name.h"
#include "name/song.h"

namespace libquilp {
namespace {

using std::string;

// ------------------------------------------------------------------------------------- releases

string twoDigits(int number) { return (number < 10 ? "0" : "") + std::to_string(number); }

/// "S02" or "S01-S03", "E01-E03" or "E01E05": a mark and its numbers.
string marked(char mark, const std::vector<int>& numbers) {
  const auto one = [mark](int number) { return mark + twoDigits(number); };
  const bool isRange = numbers.size() > 1 &&
                       numbers.back() - numbers.front() + 1 == static_cast<int>(numbers.size());
  if (isRange) {
    return one(numbers.front()) + '-' + one(numbers.back());
  }
  string all;
  for (const int number : numbers) {
    all += one(number);
  }
  return all;
}

/// What tells the episode: numbers in a season, counted through all seasons, or a date.
string numbersOf(const Name& name) {
  string numbers = marked('S', name.seasons) + marked('E', name.episodes);
  const std::vector<int>& absolute = name.absoluteEpisodes;
  if (!absolute.empty()) {
    numbers += (numbers.empty() ? "" : " - ") + twoDigits(absolute.front());
    numbers += absolute.size() > 1 ? '-' + twoDigits(absolute.back()) : "";
  }
  if (!name.airDate.empty()) {
    numbers += (numbers.empty() ? "" : " - ") + name.airDate;
  }
  return numbers;
}

string tagsOf(const Name& name) {
  string tags;
  const auto add = [&tags](const string& tag) {
    if (!tag.empty()) {
      tags += (tags.empty() ? "" : " ") + tag;
    }
  };
  add(name.resolution);
  add(name.threeD);
  add(name.source);
  add(name.videoCodec);
  for (const std::vector<string>* texts : {&name.hdr, &name.audioCodecs}) {
    for (const string& text : *texts) {
      add(text);
    }
  }
  add(name.audioChannels);
  return tags.empty() ? tags : " [" + tags + ']';
}

string braced(const string& key, const string& value) {
  return value.empty() ? value : " {" + key + '-' + value + '}';
}

string canonical(const Name& name, bool withPart) {
  string text = name.title;
  for (const string& title : name.alternativeTitles) {
    text += " AKA " + title;
  }
  text += name.year != 0 ? " (" + std::to_string(name.year) +
                               (name.lastYear != 0 ? '-' + std::to_string(name.lastYear) : "") + ')'
                         : "";
  for (const string& part : {numbersOf(name), name.episodeTitle}) {
    text += part.empty() || text.empty() ? part : " - " + part;
  }
  text += name.part.empty() || !withPart ? "" : " - disc " + name.part;
  text += braced("edition", name.edition);
  for (const NameIdentifier& identifier : name.identifiers) {
    text += braced(identifier.source, identifier.id);
  }
  text += tagsOf(name);
  for (const string& language : name.languages) {
    text += " [" + language + ']';
  }
  for (const string& language : name.subtitles) {
    text += " [sub " + language + ']';
  }
  text += name.group.empty() ? "" : '-' + name.group;
  text += name.extra.empty() ? "" : '-' + name.extra;
  return name.container.empty() ? text : text + '.' + name.container;
}

// ---------------------------------------------------------------------------------------- songs

struct Signs {
  std::string_view between;  // artists
  std::string_view open;     // the title
  std::string_view close;
};

// Where a title or an artist looks like something else, other signs tell what it is.
constexpr Signs kSigns[] = {{" & ", "", ""}, {"+", "", ""}, {" & ", "《", "》"}, {"+", "《", "》"}};

string named(const Song& song, const Signs& signs) {
  string name = song.discId;
  std::string_view gap = name.empty() ? "" : " - ";
  for (const std::string& artist : song.artists) {
    name.append(gap) += artist;
    gap = signs.between;
  }
  name.append(name.empty() ? "" : " - ").append(signs.open).append(song.title).append(signs.close);
  const auto tag = [&name](std::string_view before, const std::string& value) {
    if (!value.empty()) {
      name.append(" [").append(before).append(value) += ']';
    }
  };
  for (const std::string& language : song.languages) {
    tag("", language);
  }
  tag("", song.vocalTrack);
  tag("style=", song.style);
  return song.container.empty() ? name : name + '.' + song.container;
}

}  // namespace

std::optional<string> formatted(const Name& name) {
  // "Part 2" of a title tells the part, too.
  for (const bool withPart : {false, true}) {
    if (string text = canonical(name, withPart); tellSame(readName(text, name.kind), name)) {
      return text;
    }
  }
  return std::nullopt;
}

std::optional<string> formatted(const Song& song) {
  for (const Signs& signs : kSigns) {
    if (string name = named(song, signs); readSong(name) == song) {
      return name;
    }
  }
  return std::nullopt;
}

}  // namespace libquilp
