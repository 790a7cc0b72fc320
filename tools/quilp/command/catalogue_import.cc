#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <string>
#include <system_error>

#include "catalogue/import.h"
#include "command/catalogue_file.h"
#include "command/commands.h"
#include "command/options.h"
#include "output/duration.h"
#include "output/message.h"
#include "scan/messages.h"

namespace quilp {
namespace {

using catalogue::Imported;
using catalogue::ImportOptions;
using catalogue::Progress;
using Clock = std::chrono::steady_clock;

constexpr int kLeastMegabytes = 64;

/// "256M" or "2G", in bytes.
Take toSize(std::size_t& bytes) {
  return [&bytes](const std::string& text) {
    const char unit = text.empty() ? '\0' : text.back();
    const bool hasUnit = unit == 'M' || unit == 'G';
    int number = 0;
    toNumber("--memory", number, 1, 1 << 20)(text.substr(0, text.size() - (hasUnit ? 1 : 0)));
    if (!hasUnit) {
      throw WrongUsage("--memory: \"" + text + "\" has no unit: 256M or 2G");
    }
    const std::uint64_t wanted = static_cast<std::uint64_t>(number) << (unit == 'G' ? 30 : 20);
    bytes = static_cast<std::size_t>(std::min<std::uint64_t>(wanted, SIZE_MAX / 2));
    if (wanted < std::uint64_t{kLeastMegabytes} << 20) {
      throw WrongUsage("--memory: " + text + " is less than " + std::to_string(kLeastMegabytes) +
                       'M');
    }
  };
}

class Teller {
 public:
  void operator()(const Progress& progress) {
    const double seconds = std::chrono::duration<double>(Clock::now() - start_).count();
    std::string line = std::string(progress.stage) + ", " + std::to_string(progress.rows) + " rows";
    if (seconds > 1) {
      line +=
          ", " +
          std::to_string(static_cast<std::uint64_t>(static_cast<double>(progress.rows) / seconds)) +
          " a second";
    }
    if (progress.fraction > .02) {
      const double left = seconds / progress.fraction - seconds;
      line += ", " + std::to_string(static_cast<int>(progress.fraction * 100)) + " %, " +
              minutesAndSeconds(left) + " left";
    }
    messages_.showProgress(line);
  }
  double seconds() const { return std::chrono::duration<double>(Clock::now() - start_).count(); }
  void clear() { messages_.showProgress(""); }

 private:
  Clock::time_point start_ = Clock::now();
  Messages messages_;
};

void report(const Imported& imported, double seconds) {
  for (const std::string& name : imported.missing) {
    tell("there is no " + name + ": imported without it");
  }
  for (const std::string& row : imported.brokenRows) {
    tell(row);
  }
  if (imported.broken > 0) {
    tell("broken rows, which were left out: " + std::to_string(imported.broken));
  }
  std::printf("%llu titles and %llu episodes in %s, in %.0f seconds\n%s\n",
              static_cast<unsigned long long>(imported.titles),
              static_cast<unsigned long long>(imported.episodes), imported.place.c_str(), seconds,
              catalogueAttribution());
}

int import(ImportOptions options) {
  if (options.to.empty()) {
    options.to = catalogueFile();
    std::error_code unlikely;  // of which the import tells when it cannot write the file
    if (options.to.front() == '/') {
      std::filesystem::create_directories(std::filesystem::path(options.to).parent_path(),
                                          unlikely);
    }
  }
  Teller teller;
  try {
    const Imported imported = importCatalogue(options, std::ref(teller));
    teller.clear();
    report(imported, teller.seconds());
  } catch (...) {
    teller.clear();
    throw;
  }
  return 0;
}

}  // namespace

void addCatalogueImport(Command& catalogue) {
  static ImportOptions options;
  static bool withoutAdult = false;
  static int cast = static_cast<int>(options.cast);
  Command& command = catalogue.add("import", "Make the catalogue from downloaded data sets");
  command.operands.push_back(
      {"DIR", "Folder with title.basics.tsv.gz and the others", toText(options.from)});
  command.options.push_back({0, "to", "FILE",
                             "The catalogue file, or server (default: as configured)",
                             toText(options.to)});
  command.options.push_back({0, "no-adult", "", "Leave adult titles out",
                             [](const std::string&) { withoutAdult = true; }});
  command.options.push_back({0, "cast", "N", "Cast members kept of each title (default: 10)",
                             toNumber("--cast", cast, 0, 1000)});
  command.options.push_back(
      {0, "memory", "SIZE", "Memory to use, such as 64M (default: 256M)", toSize(options.memory)});
  command.run = [] {
    options.adult = !withoutAdult;
    options.cast = static_cast<unsigned>(cast);
    return import(options);
  };
}

}  // namespace quilp
