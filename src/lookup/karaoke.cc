#include <cstring>

#include "karaoke/document.h"
#include "lookup/requests.h"

namespace libquilp {
namespace {

constexpr Option kOptions[] = {{"-f", Value::kPath}};

std::vector<Element> elementsOfSong(const Request& /*request*/) {
  return {{"Title", Element::Kind::kText, true}, {"TitleWordCount", Element::Kind::kNumber},
          {"Language", Element::Kind::kNumber},  {"AudioTrack", Element::Kind::kNumber},
          {"Gain", Element::Kind::kNumber},      {"Artist", Element::Kind::kNames},
          {"Genre", Element::Kind::kNames}};
}

}  // namespace

constexpr RecordRequest<KTV_ExtraData_t> kSong = {
    {"karaoke", kKaraokeMedia, "getKTVInfo", kOptions, "KtvInfo", nullptr, true, false,
     &elementsOfSong, nullptr},
    {},
    {},
    [](KTV_ExtraData_t& info) { initKTVInfo(&info); },
    [](const XMLNode& root, const Values&, KTV_ExtraData_t& info) { readSong(root, info); },
    [](const Values& values, const Context&, KTV_ExtraData_t& info) {
      const char* slash = std::strrchr(values.path, '/');
      return Outcome{BasicGetKTVInfo(slash != nullptr ? slash + 1 : values.path, &info),
                     Reason::kNothingFound};
    },
    nullptr,
    [](const RecordRequest<KTV_ExtraData_t>&, const KTV_ExtraData_t& info) {
      return !info.title.empty() || !info.artists.empty();
    },
    nullptr};

}  // namespace libquilp

int velGetKTVInfo(const char* path, KTV_ExtraData_t* info) {
  using namespace libquilp;
  return fill(kSong, Values::song(path), info) != 0 ? 1 : 0;
}
