#include "scan/dress.h"

#include <filesystem>

#include "scan/names_of_files.h"
#include "scan/nfo.h"
#include "scan/pictures.h"
#include "scan/record.h"
#include "scan/show_group.h"

namespace quilp {
namespace {

namespace fs = std::filesystem;

fs::path withoutExtension(const fs::path& file) { return fs::path(file).replace_extension(); }

fs::path withSuffix(const fs::path& stem, const char* suffix) { return stem.native() + suffix; }

/// "Film.en.srt" and "Film-poster.jpg" go with "Film.mkv", "Film-2.mkv" does not.
bool belongsTo(const std::string& stem, const std::string& name) {
  return name.size() > stem.size() && name.compare(0, stem.size(), stem) == 0 &&
         (name[stem.size()] == '.' || name[stem.size()] == '-') &&
         name.find_first_of("0123456789", stem.size()) == std::string::npos;
}

}  // namespace

void Dresser::dress(const MediaItem& item, const ScanRow& row) {
  if (!row.sure) {
    return;
  }
  if (request_.nfo || request_.artwork) {
    if (row.kind == MediaKind::kMovie) {
      dressMovie(item, row);
    } else if (row.kind == MediaKind::kEpisode) {
      dressShow(item, row);
      dressEpisode(item, row);
    }
  }
  if (!request_.pattern.empty()) {
    rename(item, row);
  }
}

void Dresser::dressMovie(const MediaItem& item, const ScanRow& row) {
  const Record movie = recordOfMovie(row.id);
  if (movie.empty()) {
    return;
  }
  const fs::path path(item.path);
  if (request_.nfo) {
    write(item.isFolder ? path / "movie.nfo" : withSuffix(withoutExtension(path), ".nfo"),
          movieNfo(row.id, movie));
  }
  addPicture(item.isFolder ? path / "poster" : withSuffix(withoutExtension(path), "-poster"),
             movie.text("poster"));
}

void Dresser::dressShow(const MediaItem& item, const ScanRow& row) {
  const fs::path folder = showFolderOf(item);
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (folder.empty() || !shows_.insert(folder.native()).second) {
      return;
    }
  }
  const Record show = recordOfShow(row.id);
  if (show.empty()) {
    return;
  }
  if (request_.nfo) {
    write(folder / "tvshow.nfo", showNfo(row.id, show));
  }
  addPicture(folder / "poster", show.text("poster"));
  addPicture(folder / "banner", show.text("banner"));
}

void Dresser::dressEpisode(const MediaItem& item, const ScanRow& row) {
  if (row.matchEpisode.empty()) {
    return;
  }
  const int season = row.seasons.empty() ? 1 : row.seasons.front();
  std::vector<EpisodeRecord> episodes;
  const std::vector<int>& numbers =
      row.episodes.empty() ? item.name.absoluteEpisodes : row.episodes;
  for (const int number : numbers) {
    Record record = recordOfEpisode(row.id, season, number);
    if (!record.empty()) {
      episodes.push_back({season, number, std::move(record)});
    }
  }
  if (episodes.empty()) {
    return;
  }
  const fs::path stem = withoutExtension(item.path);
  if (request_.nfo) {
    write(withSuffix(stem, ".nfo"), episodesNfo(row.match, episodes));
  }
  addPicture(withSuffix(stem, "-thumb"), episodes.front().record.text("thumbnail"));
}

void Dresser::write(const fs::path& file, const std::string& content) {
  const std::lock_guard<std::mutex> lock(mutex_);
  if (changes_.write(file, content) == Changes::Done::kYes) {
    messages_.push_back(file.native());
  }
}

void Dresser::addPicture(const fs::path& stem, const std::string& address) {
  if (!request_.artwork || address.empty()) {
    return;
  }
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (changes_.keeps(withSuffix(stem, ".jpg")) || changes_.keeps(withSuffix(stem, ".png"))) {
      return;
    }
  }
  const Picture picture = fetchPicture(address);
  if (!picture.bytes.empty()) {
    write(withSuffix(stem, picture.extension.c_str()), picture.bytes);
  } else {
    const std::lock_guard<std::mutex> lock(mutex_);
    messages_.push_back(stem.native() + ": no picture: " + picture.failure);
  }
}

/// The files of an item, and what stands beside with the same name.
void Dresser::rename(const MediaItem& item, const ScanRow& row) {
  if (item.isFolder) {
    return;
  }
  const std::lock_guard<std::mutex> lock(mutex_);
  for (const std::string& file : item.files) {
    std::string to = nameByPattern(request_.pattern, item, row, file);
    if (item.files.size() > 1) {
      const libquilp::Name part = libquilp::readName(file);
      to = withoutExtension(to).native() + " - cd" + part.part + fs::path(to).extension().native();
    }
    const std::string stem = fs::path(file).stem().native();
    const std::string newStem = withoutExtension(to).native();
    const fs::path folder = fs::path(file).parent_path();
    std::vector<std::pair<fs::path, fs::path>> moves = {{file, to}};
    std::error_code ignored;
    for (const fs::directory_entry& beside :
         fs::directory_iterator(folder.empty() ? "." : folder, ignored)) {
      const std::string name = beside.path().filename().native();
      if (belongsTo(stem, name) && folder / name != fs::path(file)) {
        moves.emplace_back(folder / name, newStem + name.substr(stem.size()));
      }
    }
    for (const auto& [from, target] : moves) {
      switch (changes_.rename(from, target)) {
        case Changes::Done::kYes:
          messages_.push_back(from.native() + " -> " + target.native());
          break;
        case Changes::Done::kKept:
          messages_.push_back(from.native() + ": there is a " + target.native());
          return;
        case Changes::Done::kSame:
          break;
      }
    }
  }
}

std::vector<std::string> Dresser::takeMessages() {
  const std::lock_guard<std::mutex> lock(mutex_);
  return std::exchange(messages_, {});
}

}  // namespace quilp
