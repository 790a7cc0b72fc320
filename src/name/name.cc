#include "name/name.h"

#include <algorithm>

#include "name/component.h"
#include "name/path.h"

namespace libquilp {
namespace {

/// What a folder tells that the name inside it leaves out.
void fillFrom(Name& name, const Name& folder) {
  if (name.year == 0 && !folder.title.empty() && (name.title == folder.title)) {
    name.year = folder.year;
  }
  if (name.identifiers.empty()) {
    name.identifiers = folder.identifiers;
  }
  const auto fill = [](std::string& field, const std::string& above) {
    if (field.empty()) {
      field = above;
    }
  };
  fill(name.resolution, folder.resolution);
  fill(name.source, folder.source);
  fill(name.videoCodec, folder.videoCodec);
  if (name.audioCodecs.empty()) {
    name.audioCodecs = folder.audioCodecs;
    fill(name.audioChannels, folder.audioChannels);
  }
}

/// Keeps the spans of a folder's fields that the name took over.
void addSpans(Name& name, const Name& folder, std::initializer_list<NameField> fields) {
  for (const NameSpan& span : folder.spans) {
    if (std::find(fields.begin(), fields.end(), span.field) != fields.end()) {
      name.spans.push_back(span);
    }
  }
}

void dropTitle(Name& name) {
  name.title.clear();
  name.alternativeTitles.clear();
  name.spans.erase(std::remove_if(name.spans.begin(), name.spans.end(),
                                  [](const NameSpan& span) {
                                    return span.field == NameField::kTitle ||
                                           span.field == NameField::kAlternativeTitle;
                                  }),
                   name.spans.end());
}

/// 201 in the folder of season 2 is its episode 1.
void splitSeason(Name& name) {
  if (name.seasons.size() != 1 || name.episodes.size() != 1 || name.episodes[0] < 100 ||
      name.episodes[0] / 100 != name.seasons[0] || name.episodes[0] % 100 == 0) {
    return;
  }
  name.episodes[0] %= 100;
  for (NameSpan& span : name.spans) {
    if (span.field == NameField::kEpisode && span.end - span.begin > 2) {
      span.begin = span.end - 2;
    }
  }
}

/// Whether a folder has the release's name, and the file in it only letters at random or a short
/// form.
bool namesRelease(const Name& folder, const Name& file) {
  const bool released =
      !folder.source.empty() || !folder.videoCodec.empty() || !folder.group.empty();
  if (folder.title.empty() || !released || !file.identifiers.empty()) {
    return false;
  }
  const bool tagged = file.year != 0 || !file.source.empty() || !file.videoCodec.empty() ||
                      !file.resolution.empty() || file.kind == NameKind::kEpisode;
  const bool shortForm =
      file.title.find_first_of(" ABCDEFGHIJKLMNOPQRSTUVWXYZ") == std::string::npos &&
      file.title.size() <= 24;
  if (!tagged && (shortForm || file.container.empty())) {
    return true;
  }
  const bool episode = !folder.episodes.empty() || !folder.airDate.empty();
  const bool fileEpisode = file.kind == NameKind::kEpisode;
  return (episode && !fileEpisode) ||
         (!episode && folder.seasons.empty() && !fileEpisode && folder.year != 0 && file.year == 0);
}

}  // namespace

Name readName(std::string_view nameOrPath, NameKind hint) {
  const PathParts parts = partsOf(nameOrPath);
  Surroundings surroundings;
  surroundings.hint = hint;
  surroundings.offset = parts.offset(parts.count - 1);
  surroundings.inSeasonFolder = parts.count > 1 && isSeasonFolder(parts.part[parts.count - 2]);
  surroundings.inFolder = parts.count > 1;
  Name name = readComponent(parts.part[parts.count - 1], surroundings);
  if (parts.count == 1) {
    if (name.kind == NameKind::kMovie && hint == NameKind::kUnknown && name.year == 0 &&
        isWeakTitle(name)) {
      dropTitle(name);
      name.kind = NameKind::kUnknown;
    }
    return name;
  }
  Surroundings folderSurroundings;
  folderSurroundings.isFolder = true;
  for (std::size_t i = parts.count - 1; i-- > 0;) {
    if (isGenericFolder(parts.part[i])) {
      continue;
    }
    folderSurroundings.offset = parts.offset(i);
    Name folder = readComponent(parts.part[i], folderSurroundings);
    if (i + 2 == parts.count && namesRelease(folder, name)) {
      folder.container = name.container;
      addSpans(folder, name, {NameField::kContainer});
      name = std::move(folder);
      break;
    }
    const bool seasonFolder = isSeasonFolder(parts.part[i]);
    if (name.seasons.empty() && !folder.seasons.empty() && folder.episodes.empty() &&
        (name.kind == NameKind::kEpisode || seasonFolder)) {
      name.seasons = folder.seasons;
      addSpans(name, folder, {NameField::kSeason});
      if (name.episodes.empty() && !name.absoluteEpisodes.empty()) {
        name.episodes.swap(name.absoluteEpisodes);
        for (NameSpan& span : name.spans) {
          span.field = span.field == NameField::kAbsoluteEpisode ? NameField::kEpisode : span.field;
        }
      }
      name.kind = NameKind::kEpisode;
      splitSeason(name);
    }
    if (seasonFolder) {
      continue;
    }
    if (name.title.empty() || isWeakTitle(name)) {
      if (!folder.title.empty()) {
        dropTitle(name);
        name.title = folder.title;
        name.alternativeTitles = folder.alternativeTitles;
        addSpans(name, folder, {NameField::kTitle, NameField::kAlternativeTitle});
        if (name.year == 0) {
          name.year = folder.year;
          addSpans(name, folder, {NameField::kYear});
        }
        if (name.kind == NameKind::kUnknown) {
          name.kind = folder.kind;
        }
      }
    }
    const int year = name.year;
    fillFrom(name, folder);
    if (year != name.year) {
      addSpans(name, folder, {NameField::kYear});
    }
    if (!name.title.empty()) {
      break;
    }
  }
  std::sort(name.spans.begin(), name.spans.end(),
            [](const NameSpan& a, const NameSpan& b) { return a.begin < b.begin; });
  return name;
}

}  // namespace libquilp
