#include <string>

#include "command/commands.h"
#include "command/options.h"
#include "command/print_answer.h"
#include "command/time_limit.h"
#include "lookup/requests.h"

namespace quilp {
namespace {

using libquilp::Values;

std::string artist;
int count = kDefaultCount;
Format format;

void addArtistCommand(Command& music, const char* name, const char* description,
                      const libquilp::Request& request) {
  Command& command = music.add(name, description);
  command.operands.push_back({"ARTIST", "Name of the artist", toText(artist)});
  addCount(command, count);
  addFormat(command, format);
  addTimeout(command);
  command.run = [&request] {
    return printAnswer(request, Values::ofArtist(artist.c_str(), count), format);
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
  addTimeout(search);
  search.run = [] {
    return printAnswer(libquilp::kAlbumSearch,
                       Values::ofAlbum(album.c_str(), artist.c_str(), count), format);
  };

  addArtistCommand(music, "albums", "List the albums of an artist", libquilp::kArtistAlbums);
  addArtistCommand(music, "art", "List pictures of an artist", libquilp::kArtistPictures);
}

}  // namespace quilp
