#include "name/module.h"

#include "name/name.h"
#include "name/song.h"

using libquilp::KeyValues;
using libquilp::NamedKind;
using libquilp::NameKind;

extern "C" __attribute__((visibility("default"))) void libquilp_read_fields(
    const char* name, NamedKind kind, std::vector<KeyValues>& fields) {
  if (kind == NamedKind::kSongName || (kind == NamedKind::kAnyName && libquilp::isSong(name))) {
    fields = fieldsOf(libquilp::readSong(name));
    return;
  }
  const NameKind hint = kind == NamedKind::kMovieName     ? NameKind::kMovie
                        : kind == NamedKind::kEpisodeName ? NameKind::kEpisode
                                                          : NameKind::kUnknown;
  fields = fieldsOf(libquilp::readName(name, hint));
}
