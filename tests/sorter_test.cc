#include "catalogue/sorter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

// Records that do not fit into the memory are sorted in temporary files.

namespace {

using quilp::catalogue::Sorter;
using Records = std::vector<std::pair<std::string, std::string>>;

constexpr std::size_t kMemory = std::size_t{4} << 20;

/// Keys that often share their start, or all; some records larger than a run's buffer.
Records someRecords(std::size_t bytes) {
  std::mt19937 random(1);  // NOLINT(cert-msc32-c,cert-msc51-cpp): the same in every run
  Records records;
  while (bytes > 0) {
    std::string key = "key" + std::to_string(random() % 9) + std::string(random() % 9, '\xFF');
    key += static_cast<char>(random() % 256);
    std::string value(random() % 4000 == 0 ? 1500000 : random() % 80, '\0');
    value += std::to_string(random());
    bytes -= std::min(bytes, key.size() + value.size());
    records.emplace_back(std::move(key), std::move(value));
  }
  return records;
}

Records sorted(Sorter& sorter) {
  Records records;
  sorter.sort();
  while (sorter.next()) {
    records.emplace_back(sorter.key(), sorter.value());
  }
  return records;
}

class SorterTest : public testing::TestWithParam<std::size_t> {};

TEST_P(SorterTest, GivesAllRecordsInOrder) {
  const std::string folder = testing::TempDir();
  Sorter sorter(kMemory, folder);
  Records records = someRecords(GetParam());
  for (const auto& [key, value] : records) {
    sorter.add(key, value);
  }
  std::sort(records.begin(), records.end());
  EXPECT_TRUE(sorted(sorter) == records);
  EXPECT_FALSE(sorter.next());
}

// Nothing; in memory; one run; many runs.
INSTANTIATE_TEST_SUITE_P(Sizes, SorterTest, testing::Values(0, 100000, kMemory, 6 * kMemory));

TEST(Sorter, SaysThatAFolderTakesNoFiles) {
  Sorter sorter(kMemory, "/nowhere");
  EXPECT_THROW(
      {
        for (const auto& [key, value] : someRecords(2 * kMemory)) {
          sorter.add(key, value);
        }
        sorter.sort();
      },
      std::system_error);
}

}  // namespace
