#include "name/song_file.h"

#include <algorithm>

#include "ascii.h"
#include "name/song.h"
#include "name/song_text.h"

namespace libquilp {
namespace {

using std::string;
using std::string_view;

constexpr string_view kContainers[] = {
    "kar", "cdg", "mp3", "mid",  "midi", "zip",   "mkv",  "mpg", "mpeg", "dat", "vob",
    "avi", "mp4", "m4v", "m4a",  "wmv",  "flv",   "webm", "mov", "ts",   "wav", "flac",
    "ogg", "wma", "rm",  "rmvb", "iso",  "mp3+g", "asf",  "3gp", "aac",  "m2ts"};

constexpr string_view kSongExtensions[] = {"kar", "cdg", "mp3+g"};
constexpr string_view kSongFolders[] = {"karaoke", "ktv", "卡拉ok", "伴奏", "カラオケ", "노래방"};
constexpr string_view kDiscMarks[] = {"cdg", "cd+g", "mp3+g", "mp3g"};

/// Whether the text has one of the words, with no letter before or after.
template <std::size_t kCount>
bool hasWord(string_view text, const string_view (&words)[kCount]) {
  return std::any_of(std::begin(words), std::end(words), [text](string_view word) {
    for (std::size_t at = text.find(word); at != string_view::npos; at = text.find(word, at + 1)) {
      const auto isLetter = [text](std::size_t i) {
        return i < text.size() && isAlnum(static_cast<unsigned char>(text[i]));
      };
      if (isHigh(word.back()) || !((at > 0 && isLetter(at - 1)) || isLetter(at + word.size()))) {
        return true;
      }
    }
    return false;
  });
}

/// "Singer[F]_Title", and "(Karaoke Version)": a film may be called Karaoke, but not in brackets.
bool hasSongMark(string_view name) {
  for (const string_view mark : {"[F]_", "[M]_", "[G]_"}) {
    if (name.find(mark) != string_view::npos) {
      return true;
    }
  }
  const string text = lowered(name);
  for (const string_view word : {"karaok", "ktv", "卡拉ok", "カラオケ", "노래방"}) {
    for (std::size_t at = text.find(word); at != string::npos; at = text.find(word, at + 1)) {
      if (at > 1 && (text[at - 1] == '(' || text[at - 1] == '[')) {
        return true;
      }
    }
  }
  return false;
}

}  // namespace

string_view songFileOf(string_view path) {
  for (std::size_t at = path.size(); at-- > 0;) {
    const bool apart = at > 0 && path[at - 1] == ' ' && path.substr(at + 1, 1) == " ";
    if ((path[at] == '/' || path[at] == '\\') && !apart) {
      return path.substr(at + 1);
    }
  }
  return path;
}

string songContainerOf(string_view name) {
  const std::size_t dot = name.rfind('.');
  if (dot == string_view::npos || dot == 0 || name.size() - dot > 6) {
    return {};
  }
  const string extension = lowered(name.substr(dot + 1));
  const auto* const end = std::end(kContainers);
  return std::find(std::begin(kContainers), end, extension) != end ? extension : "";
}

bool isSong(string_view path) {
  const string_view name = songFileOf(path);
  const string container = songContainerOf(name);
  const auto* const end = std::end(kSongExtensions);
  return std::find(std::begin(kSongExtensions), end, container) != end ||
         (container == "zip" && hasWord(lowered(name), kDiscMarks)) || hasSongMark(name) ||
         hasWord(lowered(path.substr(0, path.size() - name.size())), kSongFolders);
}

}  // namespace libquilp
