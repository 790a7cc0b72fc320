// The add-on that describes a karaoke song by the name of its file.

#include <algorithm>
#include <string>
#include <string_view>

#include "karaoke/title.h"
#include "kit/serve.h"
#include "libquilp.h"
#include "name/song.h"

namespace quilp {
namespace {

using kit::Call;
using kit::Document;
using libquilp::Song;

struct Code {
  std::string_view value;
  int code;
};

// As g_LanguageCode has them. The other languages have no code.
constexpr Code kLanguages[] = {{"zh", 1}, {"yue", 2}, {"nan", 3}, {"en", 4},
                               {"ja", 5}, {"ko", 6},  {"th", 7},  {"es", 8}};

void addNumber(Document& document, const char* name, int number) {
  if (number > 0) {
    document.plain(name, std::to_string(number));
  }
}

int languageOf(const Song& song) {
  for (const std::string& language : song.languages) {
    for (const Code& known : kLanguages) {
      if (known.value == language) {
        return known.code;
      }
    }
  }
  return 0;
}

int codeIn(const KaraokeCodeEntry* table, const std::string& marker) {
  for (; table->length != 0; ++table) {
    if (marker == table->marker) {
      return table->code;
    }
  }
  return 0;
}

/// Of the marker that follows the artist in the name: "ARTIST[F]". The same marker may be a
/// language's, which never follows an artist.
int genderOf(const std::string& path, const std::string& artist) {
  std::string_view name = path;
  name.remove_prefix(name.rfind('/') + 1);
  const std::size_t at = name.find(artist);
  if (at == std::string_view::npos) {
    return 0;
  }
  name.remove_prefix(at + artist.size());
  name.remove_prefix(std::min(name.find_first_not_of(' '), name.size()));
  return codeIn(g_GenderCode, std::string(name.substr(0, 3)));
}

bool describe(const Call& call, Document& document) {
  const Song song = libquilp::readSong(call.path);
  if (song.title.empty()) {
    return false;
  }
  document.plain("Title", song.title);
  addNumber(document, "TitleWordCount",
            libquilp::utf8_word(reinterpret_cast<const unsigned char*>(song.title.c_str())));
  addNumber(document, "Language", languageOf(song));
  addNumber(document, "AudioTrack", codeIn(g_VocalTrackCode, '[' + song.vocalTrack + ']'));
  if (!song.artists.empty()) {
    document.open("Artist");
    for (const std::string& artist : song.artists) {
      document.plain("Name", artist, {{"Gender", genderOf(call.path, artist)}});
    }
    document.close();
  }
  if (!song.style.empty()) {
    document.open("Genre");
    document.plain("Name", song.style);
    document.close();
  }
  return true;
}

}  // namespace
}  // namespace quilp

int main(int argc, char** argv) {
  return quilp::kit::serve("song", argc, argv, {{"getKTVInfo", "KtvInfo", quilp::describe}});
}
