#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "progress.h"

namespace quilp::catalogue {

struct ImportOptions {
  std::string from{};  // the folder of the data sets
  std::string to{};    // the catalogue file, or the address of a server
  bool adult = true;
  unsigned cast = 10;                         // members kept of each title
  std::size_t memory = std::size_t{1} << 28;  // bytes; more is hardly faster
};

struct Imported {
  std::string place{};  // where it is, for people
  std::uint64_t titles = 0;
  std::uint64_t episodes = 0;
  std::uint64_t names = 0;
  std::uint64_t words = 0;
  std::uint64_t people = 0;
  std::uint64_t broken = 0;
  std::vector<std::string> brokenRows{};  // "FILE:LINE: why", the first ones
  std::vector<std::string> missing{};     // data sets that are not there
};

/// How much of an import's time is reading the titles' files, about.
inline constexpr double kReadingShare = 0.6;

/// The folder of a file.
std::string folderOf(const std::string& path);

/// Beside the new file; for a server $TMPDIR or /var/tmp.
std::string temporaryFolder(const ImportOptions& options);

/// Imports the data sets of a folder into a new catalogue file, which takes the old one's place
/// when it is complete. Throws std::runtime_error; the old file is untouched then. Of the same
/// input comes the same file, whatever the memory.
Imported importCatalogue(const ImportOptions& options, const OnProgress& progress);

}  // namespace quilp::catalogue
