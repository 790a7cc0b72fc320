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

void addArtistCommand(CLI::App* music, int& status, const char* name, const char* description,
                      int (*print)(const char* artist, int count)) {
  CLI::App* command = music->add_subcommand(name, description);
  command->add_option("ARTIST", artist, "Name of the artist")->required();
  addCount(command, count);
  addFormat(command, format);
  command->callback([&status, print] {
    status = printDocument([print] { return print(artist.c_str(), count); }, format);
  });
}

}  // namespace

void addMusicCommands(CLI::App& app, int& status) {
  CLI::App* music = app.add_subcommand("music", "Albums and artists")->require_subcommand(1);

  static std::string album;
  CLI::App* search = music->add_subcommand("search", "Search albums by title");
  search->add_option("ALBUM", album, "Title of the album")->required();
  search->add_option("--artist", artist, "Only albums of this artist");
  addCount(search, count);
  addFormat(search, format);
  search->callback([&status] {
    status = printDocument([] { return velPrintSearchAlbum(album.c_str(), artist.c_str(), count); },
                           format);
  });

  addArtistCommand(music, status, "albums", "List the albums of an artist",
                   velPrintGetAlbumByArtist);
  addArtistCommand(music, status, "art", "List pictures of an artist", velPrintGetArtistThumbnail);
}

}  // namespace quilp
