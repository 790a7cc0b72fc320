#include "platform/stock_add_ons.h"

#include <filesystem>
#include <sstream>
#include <system_error>

#include "platform.h"
#include "plugin/run_program.h"

namespace quilp {
namespace {

/// Beside the folder of this program, so that a whole installation can be moved.
std::filesystem::path folder() {
  std::error_code error;
  const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", error);
  return self.parent_path().parent_path() / libquilp::kAddOnFolder;
}

}  // namespace

// One line each, in the order in which they are listed: name, types, what it does, the host that it
// asks, the setting that it needs, attribution.
const std::vector<StockAddOn>& stockAddOns() {
  static const std::vector<StockAddOn> kAddOns = {
      {"catalogue", "Movie TV", "answers from the offline catalogue", "", "",
       "Information courtesy of IMDb (https://www.imdb.com). Used with permission."},
      {"chain", "Movie TV Music", "asks other add-ons and merges what they answer", "", "", ""},
      {"musicbrainz", "Music", "asks MusicBrainz about albums and artists", "musicbrainz.org", "",
       "Data from MusicBrainz (https://musicbrainz.org), covers from the Cover Art Archive "
       "(https://coverartarchive.org), pictures from fanart.tv or Wikimedia Commons."},
      {"tmdb", "Movie TV", "asks TMDB about movies and shows", "api.themoviedb.org", "key",
       "This product uses TMDB and the TMDB APIs but is not endorsed, certified, or otherwise "
       "approved by TMDB."},
      {"tvmaze", "TV", "asks TVmaze about shows", "api.tvmaze.com", "",
       "Data from TVmaze (https://www.tvmaze.com), CC BY-SA 4.0."},
      {"wikidata", "Movie TV", "asks Wikidata and Wikipedia about movies and shows",
       "www.wikidata.org", "",
       "Data from Wikidata (https://www.wikidata.org), CC0; summaries from Wikipedia, CC BY-SA "
       "4.0."},
      {"song", "KTV", "reads the names of karaoke songs", "", "", ""},
  };
  return kAddOns;
}

const StockAddOn* stockAddOn(const std::string& name) {
  for (const StockAddOn& addOn : stockAddOns()) {
    if (name == addOn.name) {
      return &addOn;
    }
  }
  return nullptr;
}

std::vector<std::string> StockAddOn::typeList() const {
  std::istringstream words(types);
  std::vector<std::string> list;
  for (std::string word; words >> word;) {
    list.push_back(word);
  }
  return list;
}

std::string StockAddOn::program() const { return (folder() / name).string(); }

bool StockAddOn::isInstalled() const { return libquilp::canBeExecuted(program().c_str()); }

}  // namespace quilp
