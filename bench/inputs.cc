#include "inputs.h"

namespace bench {

const std::vector<const char*> kReleaseNames = {
    "The.Paper.Lighthouse.2011.1080p.BluRay.x264-SPARKS",
    "Harbour.Lights.S01E02.720p.HDTV.x264-FoV",
    "A.Quiet.Village.2008.DTS.DD5.1.720p.BluRay.x264-CHD",
    "Night_Train_to_Ostend_(1974)_[1080i].mkv",
    "1917.2019.720p.BluRay.x264-YIFY",
    "The Clockmaker's Daughters s1e1 Pilot HDTV",
    "Winter Without Links (Director's Cut) [2015]",
    "Stamp.and.Seal.1998.2Audio.BluRay.1080p.x264-YYeTs",
};

std::string repeated(const std::string& piece, std::size_t size) {
  std::string text;
  text.reserve(size + piece.size());
  while (text.size() < size) {
    text += piece;
  }
  return text;
}

std::string ordinaryText(std::size_t size) {
  return repeated(
      "A keeper who cannot sleep folds a lighthouse out of old letters, and one night it is lit. "
      "Ships that nobody has seen for years find their way home by it; the village, which has "
      "lived from wrecks as long as anyone remembers, has to decide whose light it is. Tom &amp; "
      "Ida Roth&#39;s third film was shot in the off season, in one caf&eacute; and on one pier. ",
      size);
}

}  // namespace bench
