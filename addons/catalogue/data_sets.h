#pragma once

#include <cstdint>
#include <ctime>
#include <string>
#include <vector>

#include "import.h"
#include "rows.h"

namespace quilp::catalogue {

/// The files of an import: which there are, plain or gzip.
class DataSets {
 public:
  /// Throws std::runtime_error where there is no title.basics.
  explicit DataSets(const std::string& folder);

  /// Empty where there is none.
  const std::string& basics() const { return basics_; }
  const std::string& akas() const { return akas_; }
  const std::string& episode() const { return episode_; }
  const std::string& ratings() const { return ratings_; }
  const std::string& crew() const { return crew_; }
  const std::string& principals() const { return principals_; }
  const std::string& names() const { return names_; }

  const std::vector<std::string>& missing() const { return missing_; }

  /// Bytes of all files.
  std::uint64_t bytes() const { return bytes_; }

  /// The day of the newest file: "2026-11-23".
  const std::string& date() const { return date_; }

  /// Puts a copy in order in place of a file whose rows are not.
  void sort(const std::string& path, std::size_t memory, const std::string& folder);

 private:
  std::string find(const std::string& folder, const std::string& name);

  std::vector<std::string> missing_;
  std::uint64_t bytes_ = 0;
  std::time_t newest_ = 0;
  std::string basics_, akas_, episode_, ratings_, crew_, principals_, names_;
  std::string date_;
};

/// Adds what was broken in a data set. Throws std::runtime_error where that is more than 1 %.
void addBroken(const std::string& path, const Broken& broken, Imported& result);

}  // namespace quilp::catalogue
