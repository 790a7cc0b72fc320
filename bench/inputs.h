#pragma once

#include <string>
#include <vector>

// Inputs of the benchmarks, and of the other programs in bench/compare. They have the size and
// density of real ones.

namespace bench {

/// Names of video releases, as files have them.
inline constexpr const char* kReleaseNames[] = {
    "The.Paper.Lighthouse.2011.1080p.BluRay.x264-SPARKS",
    "Harbour.Lights.S01E02.720p.HDTV.x264-FoV",
    "A.Quiet.Village.2008.DTS.DD5.1.720p.BluRay.x264-CHD",
    "Night_Train_to_Ostend_(1974)_[1080i].mkv",
    "1917.2019.720p.BluRay.x264-YIFY",
    "The Clockmaker's Daughters s1e1 Pilot HDTV",
    "Winter Without Links (Director's Cut) [2015]",
    "Stamp.and.Seal.1998.2Audio.BluRay.1080p.x264-YYeTs",
};

/// Ordinary text with a character reference every now and then.
std::string ordinaryText(std::size_t size);

/// `piece` over and over, until `size` is reached.
std::string repeated(const std::string& piece, std::size_t size);

/// A page, and the expressions with which an HTML parser gets the values of its cuts.
struct Page {
  const char* name;
  std::string html;
  int (*cut)(const std::string& html);  // the number of values
  std::vector<const char*> xpaths;
  std::vector<const char*> selectors;  // the same as CSS selectors
};

/// One of each kind: find page, title page, combined page, show page, episode list, episode page.
std::vector<Page> pages();

}  // namespace bench
