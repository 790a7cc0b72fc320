#include "data_sets.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <stdexcept>

#include "inflate.h"
#include "sorter.h"

namespace quilp::catalogue {
namespace {

constexpr std::uint64_t kToleratedRows = 10;

/// Gives each line to take(line).
template <class Take>
void forEachLine(const std::string& path, Take take) {
  ByteSource source(path);
  std::string text;
  std::array<char, 65536> buffer{};
  while (const std::size_t got = source.read(buffer.data(), buffer.size())) {
    text.append(buffer.data(), got);
    std::size_t start = 0;
    for (std::size_t end = 0; (end = text.find('\n', start)) != std::string::npos;
         start = end + 1) {
      take(std::string_view(text).substr(start, end - start));
    }
    text.erase(0, start);
  }
  if (!text.empty()) {
    take(text);
  }
}

void writeLine(std::FILE* file, std::string_view line) {
  if (std::fwrite(line.data(), 1, line.size(), file) != line.size() ||
      std::fputc('\n', file) == EOF) {
    throw std::runtime_error(std::string("cannot write a temporary file: ") + std::strerror(errno));
  }
}

}  // namespace

DataSets::DataSets(const std::string& folder)
    : basics_(find(folder, "title.basics")),
      akas_(find(folder, "title.akas")),
      episode_(find(folder, "title.episode")),
      ratings_(find(folder, "title.ratings")),
      crew_(find(folder, "title.crew")),
      principals_(find(folder, "title.principals")),
      names_(find(folder, "name.basics")) {
  if (basics_.empty()) {
    throw std::runtime_error(folder + ": there is no title.basics.tsv or title.basics.tsv.gz");
  }
  std::tm day{};
  gmtime_r(&newest_, &day);
  std::array<char, 32> text{};
  std::strftime(text.data(), text.size(), "%Y-%m-%d", &day);
  date_ = text.data();
}

std::string DataSets::find(const std::string& folder, const std::string& name) {
  for (const char* const extension : {".tsv.gz", ".tsv"}) {
    std::string path = folder;
    path.append("/").append(name).append(extension);
    struct stat file {};
    if (stat(path.c_str(), &file) == 0) {
      bytes_ += static_cast<std::uint64_t>(file.st_size);
      newest_ = std::max(newest_, file.st_mtime);
      return path;
    }
  }
  missing_.push_back(name);
  return "";
}

void DataSets::sort(const std::string& path, std::size_t memory, const std::string& folder) {
  Sorter sorter(memory / 2, folder);
  std::string header;
  forEachLine(path, [&](std::string_view line) {
    if (header.empty()) {
      header = line;
    } else {
      sorter.add(line.substr(0, line.find('\t')), line);
    }
  });
  sorter.sort();
  std::string name = folder + "/quilp-sorted.XXXXXX";
  const int descriptor = mkostemp(name.data(), O_CLOEXEC);
  if (descriptor < 0) {
    throw std::runtime_error(name + ": " + std::strerror(errno));
  }
  unlink(name.c_str());
  std::FILE* const file = fdopen(dup(descriptor), "w");
  writeLine(file, header);
  while (sorter.next()) {
    writeLine(file, sorter.value());
  }
  if (std::fclose(file) != 0) {
    throw std::runtime_error(name + ": " + std::strerror(errno));
  }
  for (std::string* each :
       {&basics_, &akas_, &episode_, &ratings_, &crew_, &principals_, &names_}) {
    if (*each == path) {
      *each = "/proc/self/fd/" + std::to_string(descriptor);
    }
  }
}

void addBroken(const std::string& path, const Broken& broken, Imported& result) {
  result.broken += broken.count;
  result.brokenRows.insert(result.brokenRows.end(), broken.samples.begin(), broken.samples.end());
  if (broken.count > kToleratedRows && broken.count * 100 > broken.rows) {
    throw std::runtime_error(path + ": " + std::to_string(broken.count) + " of " +
                             std::to_string(broken.rows) +
                             " rows are broken, the first: " + broken.samples.front());
  }
}

}  // namespace quilp::catalogue
