#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "name/component.h"
#include "name/name.h"
#include "name/numbers.h"
#include "name/token.h"

namespace libquilp {

/// A tag that a run of words makes.
struct Match {
  const Tag* tag;
  std::uint8_t words;
  std::uint8_t channels;  // 51: the words end with a number of channels, 5.1
  int lines;              // of a resolution; the tag is null then

  explicit operator bool() const { return words != 0; }
};

/// Reads the name of one file or folder in passes, each of which takes words for its fields.
class Reader {
 public:
  Reader(std::string_view text, const Surroundings& surroundings, Name& name);

  void read();

 private:
  // reader_tags.cc
  void splitGlued();
  void splitEnding(std::size_t i);
  bool split(std::size_t i, std::size_t at);
  void matchTags();
  void matchAt(std::size_t i);
  Match resolutionAt(std::size_t i) const;
  void takeEdition();
  void takeTags(std::size_t from, std::size_t to);
  void takeTag(std::size_t i);
  bool isPartWord(std::size_t i) const;
  bool takePart(std::size_t i, std::size_t to);
  bool isGroupCode(std::size_t i) const;

  // reader_numbers.cc
  void findDate();
  void findMarkers();
  void findShortDate();
  bool readWordMarker(std::size_t i, NameField field);
  bool readCounter(std::size_t i);
  bool isShownInParts(std::size_t from) const;
  bool findLeadNumbers();
  bool hasVideoTags() const;
  void findBareNumber();
  bool bareNumberAt(std::size_t i);
  void takeMarker(std::size_t i, const Marker& marker);
  void takeEpisodes(const NumberList& list, bool absolute);

  // reader_start.cc
  void findStart();
  void undoLeadGroup();
  void skipScenePrefix();
  void skipBroadcaster();
  void readFilmNumber();
  void readLeadCount();

  // reader_year.cc
  bool isSortedByYear() const;
  void findYear();
  void takeYears();

  // reader_title.cc
  std::size_t textEnd(std::size_t from, bool isTitle) const;
  std::size_t walkedBack(std::size_t from, std::size_t end, bool beforeYear, bool isTitle) const;
  bool isSceneTitle(std::size_t from, std::size_t to) const;
  void readTitle();
  void readLatinTitle();
  void readBracketTitles();
  void readEpisodeTitle();
  void addTitles(std::size_t from, std::size_t to);
  bool hasOnlyDashes() const;
  std::string cleaned(std::size_t from, std::size_t to) const;

  // reader_group.cc
  void takeSites();
  void takeIdentifiers();
  void takeChecksum();
  void findGroup();
  bool groupFrom(std::size_t from, std::size_t to);

  // reader.cc
  void findKind();
  std::size_t bracketEnd(std::size_t i) const;  // the first word after the word's outer bracket
  bool alone(std::size_t i) const;              // the only word of its bracket

  // asked of every word, and inline
  void take(NameField field, std::size_t from, std::size_t to);
  void addSpan(NameField field, std::size_t begin, std::size_t end);
  std::uint8_t outerBracket(std::size_t i) const;
  bool isFree(std::size_t from, std::size_t to) const;
  bool endsTitle(std::size_t i) const;

  Name& name_;
  Surroundings surroundings_;
  std::string_view text_;  // without the extension
  Tokens tokens_;
  Match match_[Tokens::kMost];

  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
  std::size_t start_ = 0;  // of the title
  std::size_t titleEnd_ = 0;
  std::size_t year_ = kNone;       // the word that is the year
  std::size_t marker_ = kNone;     // the first word of the first marker
  std::size_t markerEnd_ = kNone;  // after the last word of the last one
  std::size_t leadGroupEnd_ = 0;   // words of a leading bracket that may be a group's
  bool roughResolution_ = false;   // told by a word such as UHD
  bool isSeries_ = false;          // tells how many episodes there are, or that it was PPV
  bool fansub_ = false;            // begins with a group's bracket
};

inline void Reader::addSpan(NameField field, std::size_t begin, std::size_t end) {
  name_.spans.push_back({field, begin + surroundings_.offset, end + surroundings_.offset});
}

inline void Reader::take(NameField field, std::size_t from, std::size_t to) {
  for (std::size_t i = from; i < to; ++i) {
    tokens_.token[i].taken = true;
  }
  addSpan(field, tokens_.token[from].begin, tokens_.token[to - 1].end);
}

inline std::uint8_t Reader::outerBracket(std::size_t i) const {
  std::uint8_t bracket = tokens_.token[i].bracket;
  while (bracket != 0 && tokens_.bracket[bracket].parent != 0) {
    bracket = tokens_.bracket[bracket].parent;
  }
  return bracket;
}

inline bool Reader::isFree(std::size_t from, std::size_t to) const {
  for (std::size_t i = from; i < to; ++i) {
    if (tokens_.token[i].taken) {
      return false;
    }
  }
  return from < to;
}

inline bool Reader::endsTitle(std::size_t i) const {
  const Match& match = match_[i];
  return match &&
         (match.tag == nullptr || match.channels != 0 || match.tag->use == TagUse::kEndsTitle) &&
         (match.tag == nullptr ||
          (match.tag->field != NameField::kSeason && match.tag->field != NameField::kEpisode &&
           match.tag->field != NameField::kPart));
}

}  // namespace libquilp
