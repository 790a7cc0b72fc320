#include "name/song.h"

#include <algorithm>
#include <optional>

#include "ascii.h"
#include "name/song_file.h"
#include "name/song_parts.h"
#include "name/song_tags.h"
#include "name/song_text.h"
#include "text/cutter.h"

namespace libquilp {
namespace {

using std::string;
using std::string_view;

constexpr std::size_t kLongestBracket = 256;

/// Reads one name in passes; each takes what it knows out of the text.
class Reader {
 public:
  Song read(string_view name) {
    song_.container = songContainerOf(name);
    if (!song_.container.empty()) {
      name.remove_suffix(song_.container.size() + 1);
    }
    text_ = plainForm(name);
    japanese_ = contains(text_, "カラオケ");
    takeDiscId();
    if (!readMarkerForm()) {
      text_ = withBlanks(text_);
      takeBrackets();
      takeStyleOf();
      readParts();
    }
    return std::move(song_);
  }

 private:
  void take(const SongTag& tag) {
    const auto set = [&tag](string& field) {
      if (field.empty()) {
        field = tag.value;
      }
    };
    switch (tag.field) {
      case SongField::kLanguage:
        japanese_ = japanese_ || tag.value == "ja";
        if (std::find(song_.languages.begin(), song_.languages.end(), tag.value) ==
            song_.languages.end()) {
          song_.languages.emplace_back(tag.value);
        }
        break;
      case SongField::kVocalTrack:
        set(song_.vocalTrack);
        break;
      case SongField::kStyle:
        set(song_.style);
        break;
      case SongField::kMark:
      case SongField::kFiller:
        break;
    }
  }

  bool take(const std::vector<SongTag>& tags) {
    for (const SongTag& tag : tags) {
      take(tag);
    }
    return !tags.empty();
  }

  void setTitle(string_view title) { song_.title = trimmed(title); }

  /// "SC1234-05 - ", "SC1234-05_" and the like at the start.
  void takeDiscId() {
    const std::size_t size = discIdAt(text_, song_.discId);
    if (size == text_.size() && !contains(song_.discId, "-")) {
      song_.discId.clear();  // it is as good a title
    } else if (size > 0) {
      text_.erase(0, text_.find_first_not_of(" -_.", size));
    }
  }

  /// ARTIST[M]+ARTIST[F]_TITLE[國][L], by the rules of the karaoke parser: the first "_" ends the
  /// artists, the first "[" behind it the title.
  bool readMarkerForm() {
    const std::size_t underscore = text_.find('_');
    const string_view text = text_;
    if (underscore == string::npos || contains(text, "_-_") || contains(text, " - ")) {
      return false;
    }
    string_view markers = text.substr(underscore + 1);
    const std::size_t titleEnd = std::min(markers.find('['), markers.size());
    const string_view title = markers.substr(0, titleEnd);
    markers.remove_prefix(titleEnd);
    const string_view artists = text.substr(0, underscore);
    const bool leads = artists.empty() && !title.empty();
    if (!leads && !hasGender(artists) && !isMarker(markers)) {
      return false;
    }
    addMarkedArtists(artists);
    setTitle(title);
    takeMarkers(markers);
    return true;
  }

  static bool hasGender(string_view artists) {
    return contains(artists, "[M]") || contains(artists, "[F]") || contains(artists, "[G]");
  }

  static bool isMarker(string_view text) {
    const std::size_t end = text.substr(0, kLongestBracket).find(']');
    return end != string_view::npos && !markerTagsOf(text.substr(1, end - 1)).empty();
  }

  void addMarkedArtists(string_view text) {
    while (!text.empty()) {
      const std::size_t end = std::min(text.find_first_of("+&"), text.size());
      const string_view one = text.substr(0, end);
      const string_view name = trimmed(one.substr(0, one.find('[')), " ");
      if (!name.empty()) {
        song_.artists.emplace_back(name);
      }
      text.remove_prefix(std::min(end + 1, text.size()));
    }
  }

  void takeMarkers(string_view text) {
    while (!text.empty()) {
      const std::size_t open = std::min(text.find('['), text.size());
      const std::size_t close = text.substr(open, kLongestBracket).find(']');
      if (close != string_view::npos) {
        takeBracket(text.substr(open + 1, close - 1), true);
      }
      text.remove_prefix(std::min(open + 1, text.size()));
    }
  }

  // -- brackets

  /// Takes what a bracket tells; false when it belongs to the title or the artist.
  bool takeBracket(string_view text, bool square) {
    text = trimmed(text, " ");
    if (take(square ? markerTagsOf(text) : songTagsOf(text))) {
      return true;
    }
    if (const auto style = styleOf(text)) {
      artist_ = withoutMarks(style->artist);
      take(songTagsOf(style->before));
      return true;
    }
    if (const auto guest = guestOf(text, true)) {
      guests_.emplace_back(*guest);
      return true;
    }
    string id;
    if (song_.discId.empty() && discIdAt(text, id) == text.size() && !text.empty()) {
      song_.discId = id;
      return true;
    }
    constexpr string_view kStyleKey = "style=";
    if (text.substr(0, kStyleKey.size()) == kStyleKey) {
      song_.style = trimmed(text.substr(kStyleKey.size()));
      return true;
    }
    // "[Some Maker Karaoke]"
    const string lower = lowered(text);
    return contains(lower, "karaoke") || contains(text, "カラオケ") || contains(text, "노래방");
  }

  /// Takes the brackets out of the text that tell something, and "《Title》".
  void takeBrackets() {
    string rest;
    for (std::size_t at = 0; at < text_.size();) {
      const string_view left = string_view(text_).substr(at);
      if (const string_view quoted = quotedTitle(left); !quoted.empty() && title_.empty()) {
        title_ = trimmed(quoted);
        rest += " - ";
        at += quoted.size() + 6;
        continue;
      }
      const std::size_t kind = string_view("([{").find(text_[at]);
      const std::size_t close =
          kind == string_view::npos ? kind : left.substr(0, kLongestBracket).find(")]}"[kind]);
      if (close == string_view::npos) {
        rest += text_[at++];
        continue;
      }
      const string_view inside = left.substr(1, close - 1);
      const bool gender = kind == 1 && !rest.empty() && isGenderOf(inside, left.substr(close + 1));
      if (gender || takeBracket(inside, kind != 0)) {
        rest += rest.empty() || rest.back() == ' ' ? "" : " ";
        at += close + 1;
      } else {
        rest += text_[at++];
      }
    }
    text_ = plainForm(rest);
  }

  /// The text between 《 and 》, or 「 and 」, that `text` starts with.
  static string_view quotedTitle(string_view text) {
    for (const char* pair : {"《》", "「」", "『』"}) {
      const string_view open(pair, 3);
      const string_view close(pair + 3, 3);
      if (text.substr(0, 3) == open) {
        const std::size_t end = text.substr(0, kLongestBracket).find(close);
        return end == string_view::npos ? string_view() : text.substr(3, end - 3);
      }
    }
    return {};
  }

  /// "[M]" after an artist, who is followed by another or by the title.
  static bool isGenderOf(string_view inside, string_view after) {
    const bool letter = inside == "M" || inside == "F" || inside == "G";
    const std::size_t next = after.find_first_not_of(' ');
    return letter && next != string_view::npos &&
           (inside != "M" || string_view("+&-_").find(after[next]) != string_view::npos);
  }

  /// Whether these may end a title or an artist's name without a separator before them.
  static bool mayFollow(const std::vector<SongTag>& tags) {
    return !tags.empty() && std::all_of(tags.begin(), tags.end(), [](const SongTag& tag) {
      return tag.field == SongField::kMark || tag.field == SongField::kFiller ||
             isHigh(tag.word.front());
    });
  }

  /// Takes "karaoke version", "HD", "伴奏" and the like from the end of a text of more words.
  string_view withoutMarks(string_view text) {
    constexpr int kMostWords = 5;
    text = trimmed(text);
    std::vector<SongTag> marks;
    string_view left = text;
    std::size_t blank = text.rfind(' ');
    for (int words = 1; words <= kMostWords && blank != string_view::npos; ++words) {
      if (const auto tags = songTagsOf(text.substr(blank)); mayFollow(tags)) {
        marks = tags;
        left = trimmed(text.substr(0, blank));
      }
      blank = blank > 0 ? text.rfind(' ', blank - 1) : string_view::npos;
    }
    take(marks);
    return left;
  }

  /// "Title in the style of Artist", without brackets.
  void takeStyleOf() {
    if (!artist_.empty()) {
      return;
    }
    if (const auto style = styleOf(text_); style && !style->before.empty()) {
      const std::size_t end = style->artist.find(" - ");
      artist_ = withoutMarks(style->artist.substr(0, end));
      text_ =
          string(style->before) + string(end == string_view::npos ? "" : style->artist.substr(end));
    }
  }

  // -- parts

  using Texts = std::vector<string>;

  static bool isNumber(string_view text) {
    return !text.empty() && text.find_first_not_of("0123456789") == string_view::npos;
  }

  /// "05", "1-05", "0123", "12345"; "1999" may be an artist, as may "311" before a title.
  static bool isListNumber(string_view text) {
    const string_view last = text.substr(text.rfind('-') + 1);
    return isNumber(last) && isDigit(static_cast<unsigned char>(text[0])) && text.size() < 9 &&
           text.find_first_not_of("0123456789-") == string_view::npos &&
           (text.size() != 4 || text[0] == '0' || last.size() < 4);
  }

  bool takeDiscPart(string_view text) {
    string id;
    if (!song_.discId.empty() || discIdAt(text, id) != text.size()) {
      return false;
    }
    song_.discId = id;
    return true;
  }

  /// Whether these can only stand in a song's name: "KTV", "伴奏", "國語", but not "Rock".
  static bool tellSong(const std::vector<SongTag>& tags) {
    return std::any_of(tags.begin(), tags.end(), [](const SongTag& tag) {
      return tag.field == SongField::kMark || tag.field == SongField::kVocalTrack ||
             (tag.field == SongField::kLanguage && isHigh(tag.word.front()));
    });
  }

  static bool tellLanguage(const std::vector<SongTag>& tags) {
    return std::any_of(tags.begin(), tags.end(),
                       [](const SongTag& tag) { return tag.field == SongField::kLanguage; });
  }

  /// Takes what stands before the artist: "KTV", a song's number in its list or on its disc. The
  /// index of the first text that is left.
  std::size_t takeLeading(Texts& texts) {
    std::size_t start = 0;
    bool disc = false;
    if (!title_.empty() && texts.size() == 1 && takeDiscPart(texts.front())) {
      texts.front().clear();
    }
    for (; texts.size() - start > 1; ++start) {
      const string_view first = texts[start];
      const std::vector<SongTag> tags = songTagsOf(first);
      const bool more = texts.size() - start > 2;
      if (tellSong(tags) && (more || !tellLanguage(tags))) {
        take(tags);
      } else if (takeDiscPart(first)) {
        disc = true;
      } else if (!more || !isListNumber(first)) {
        break;
      } else if (disc && !contains(song_.discId, "-") && isNumber(first)) {
        song_.discId += '-';
        song_.discId += first;
      }
    }
    // "05. Artist", "05 Artist": other artists begin with a number, too.
    string& first = texts[start];
    const std::size_t digits = std::min(first.find_first_not_of("0123456789"), first.size());
    const std::size_t name = std::min(first.find_first_not_of(". ", digits), first.size());
    const bool counts = digits > 0 && digits < 4 && name > digits && name < first.size();
    if (counts && (first[0] == '0' || first[digits] == '.')) {
      first.erase(0, name);
    }
    return start;
  }

  static bool isWideLanguage(string_view text) {
    const std::vector<SongTag> tags = songTagsOf(text);
    return tellLanguage(tags) && isHigh(tags.front().word.front());
  }

  /// Takes all from a Chinese language word on: "Artist-Title-國語-STYLE", whatever the style is
  /// called; and the word alone from "Artist-國語-Title".
  void takeFromLanguage(Texts& texts, std::size_t& start) {
    std::size_t at = start + 1;
    while (at < texts.size() && !isWideLanguage(texts[at])) {
      ++at;
    }
    if (at == start + 1 && at + 1 < texts.size() && songTagsOf(texts[at + 1]).empty()) {
      take(songTagsOf(texts[at]));
      texts[at] = std::move(texts[start]);
      start = at;
    } else if (at > start + 1 && at < texts.size()) {
      for (std::size_t i = at; i < texts.size(); ++i) {
        if (!take(songTagsOf(texts[i])) && i == at + 1) {
          song_.style = texts[i];
        }
      }
      texts.resize(at);
    }
  }

  /// Takes the tags after the title. The index behind the last text that is left.
  std::size_t takeTrailing(Texts& texts, std::size_t start) {
    const bool named = !artist_.empty() || !title_.empty();
    if (texts.size() - start > 1 && takeDiscPart(texts.back())) {
      texts.pop_back();
    }
    std::size_t end = texts.size();
    while (end - start > 1) {
      const std::vector<SongTag> tags = songTagsOf(texts[end - 1]);
      // Of two texts the second is the title, be it called "Rock" or "Spanish".
      if (tags.empty() || (end - start == 2 && !named && !tellSong(tags))) {
        break;
      }
      --end;
      take(tags);
    }
    return end;
  }

  void readParts() {
    SongParts parts = songPartsOf(text_, !artist_.empty());
    Texts& texts = parts.texts;
    if (texts.empty()) {
      texts.emplace_back();
    }
    std::size_t start = takeLeading(texts);
    takeFromLanguage(texts, start);
    const std::size_t end = takeTrailing(texts, start);
    // "Artist - Album - 05 - Title"
    for (std::size_t i = start + 1; i + 1 < end; ++i) {
      if (texts[i].size() == 2 && isNumber(texts[i])) {
        texts[i] = std::move(texts[start]);
        start = i;
        break;
      }
    }
    texts[end - 1] = withoutMarks(texts[end - 1]);
    std::size_t titleStart = start;
    std::size_t titleEnd = end;
    if (!title_.empty()) {
      titleStart = end;
    } else if (artist_.empty() && end - start > 1) {
      // Japanese names put the title before the "/".
      const bool titleFirst = parts.glue == "/" && japanese_;
      (titleFirst ? titleEnd : titleStart) = start + 1;
    } else if (end - start > 1 && texts[start] == artist_) {
      titleStart = start + 1;
    }
    if (artist_.empty()) {
      artist_ = titleStart > start ? parts.joined(start, titleStart) : parts.joined(titleEnd, end);
    }
    if (title_.empty()) {
      title_ = parts.joined(titleStart, titleEnd);
    }
    addArtists(artist_, !japanese_, song_.artists);
    finishTitle();
  }

  /// "Title feat. Guest"
  void finishTitle() {
    string_view title = title_;
    for (std::size_t at = title.find(' '); at != string_view::npos; at = title.find(' ', at + 1)) {
      const auto guest = guestOf(title.substr(at + 1), false);
      if (guest && at > 0) {
        guests_.emplace_back(*guest);
        title = title.substr(0, at);
      }
    }
    setTitle(title);
    for (const string& guest : guests_) {
      addArtists(guest, false, song_.artists);
    }
  }

  Song song_;
  string text_;
  string title_;   // of 《Title》
  string artist_;  // of "in the style of Artist"
  std::vector<string> guests_;
  bool japanese_ = false;
};

}  // namespace

Song readSong(string_view path) { return Reader().read(songFileOf(path)); }

}  // namespace libquilp
