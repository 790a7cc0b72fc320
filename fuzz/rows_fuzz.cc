#include <fstream>
#include <stdexcept>

#include "catalogue/rows.h"
#include "fuzz.h"

// Reads any bytes as a data set: after a header of our own, and as a whole file, which may be gzip.

namespace {

using quilp::catalogue::OutOfOrder;
using quilp::catalogue::Rows;

constexpr const char* kFile = "/tmp/rows.tsv";
constexpr const char* kHeader = "tconst\ttitle\tvotes\n";

void write(const std::string& text) {
  std::ofstream file(kFile, std::ios::binary | std::ios::trunc);
  fuzz::expect(file.write(text.data(), static_cast<std::streamsize>(text.size())).good(),
               "the data set cannot be written");
}

struct Count {
  std::uint64_t good = 0;
  std::uint64_t broken = 0;
};

Count readAll(Rows::Order order) {
  Count count;
  Rows rows(kFile, {"tconst", "votes"}, order);
  std::string before;
  while (rows.next()) {
    ++count.good;
    fuzz::expect(!rows.id().empty(), "a row without an identifier");
    fuzz::expect(order == Rows::Order::kAny || rows.id() >= before, "rows are out of order");
    fuzz::expect(rows[0].find_first_of("\t\n") == std::string_view::npos &&
                     rows[1].find_first_of("\t\n") == std::string_view::npos,
                 "a value reaches beyond its column");
    before = rows.id();
  }
  count.broken = rows.broken().count;
  fuzz::expect(rows.broken().rows == count.good + count.broken, "a row is not counted");
  return count;
}

/// Lines of three columns with an identifier, and others.
Count model(const std::string& text) {
  Count count;
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t end = std::min(text.find('\n', start), text.size());
    std::string line = text.substr(start, end - start);
    start = end + 1;
    if (!line.empty() && line.back() == '\r') {
      line.pop_back();
    }
    const auto tabs = std::count(line.begin(), line.end(), '\t');
    const std::string id = line.substr(0, line.find('\t'));
    const bool good = tabs == 2 && !id.empty() && id != "\\N";
    count.good += good ? 1 : 0;
    count.broken += !good && !line.empty() ? 1 : 0;
  }
  return count;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text = fuzz::bytesOf(data, size);
  write(kHeader + text);
  const Count count = readAll(Rows::Order::kAny);
  const Count modelled = model(text);
  fuzz::expect(count.good == modelled.good && count.broken == modelled.broken,
               "the rows are not those of the model");
  try {
    readAll(Rows::Order::kChecked);
  } catch (const OutOfOrder&) {
  }
  write(text);
  try {
    readAll(Rows::Order::kAny);
  } catch (const std::runtime_error&) {
  }
  return 0;
}
