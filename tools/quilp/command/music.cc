#include <string>

#include "command/commands.h"
#include "command/options.h"
#include "libquilp.h"
#include "output/result.h"

namespace quilp {
namespace {

std::string artist;
int count = kDefaultCount;
Format format;

void addArtistCommand(Command& music, const char* name, const char* description,
                      int (*print)(const char* artist, int count)) {
  Command& command = music.add(name, description);
  command.operands.push_back({"ARTIST", "Name of the artist", toText(artist)});
  addCount(command, count);
  addFormat(command, format);
  command.run = [print] {
    return printDocument([print] { return print(artist.c_str(), count); }, format);
  };
}

}  // namespace

void addMusicCommands(Command& program) {
  Command& music = program.add("music", "Albums and artists");

  static std::string album;
  Command& search = music.add("search", "Search albums by title");
  search.operands.push_back({"ALBUM", "Title of the album", toText(album)});
  search.options.push_back({0, "artist", "NAME", "Only albums of this artist", toText(artist)});
  addCount(search, count);
  addFormat(search, format);
  search.run = [] {
    return printDocument([] { return velPrintSearchAlbum(album.c_str(), artist.c_str(), count); },
                         format);
  };

  addArtistCommand(music, "albums", "List the albums of an artist", velPrintGetAlbumByArtist);
  addArtistCommand(music, "art", "List pictures of an artist", velPrintGetArtistThumbnail);
}

}  // namespace quilp
