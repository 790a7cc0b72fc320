#include <array>
#include <cstring>
#include <fstream>

#include "fuzz.h"
#include "libquilp.h"
#include "platform.h"
#include "plugin/registry.h"

// Reads any bytes as the appliance's registry and as its catalogue. Runs in the box, whose /etc it
// writes.

namespace {

using namespace libquilp;

using Lookup = char* (*)(const char* type, char* shell, int size);

void write(const char* path, const std::string& text) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  fuzz::expect(file.write(text.data(), static_cast<std::streamsize>(text.size())).good(),
               "the configuration cannot be written");
}

/// The command found, filled up with zeros; none when the lookup finds none.
std::vector<char> shellOf(Lookup lookup, const char* type, std::size_t size) {
  std::vector<char> shell(size, '#');
  const char* found = lookup(type, shell.data(), static_cast<int>(size));
  fuzz::expect(found == nullptr || found == shell.data(), "a lookup gives another buffer");
  fuzz::expect(std::find(shell.begin(), shell.end(), '#') == shell.end() || found != nullptr,
               "a lookup without a result leaves bytes of the buffer");
  return found != nullptr ? shell : std::vector<char>();
}

/// In a small buffer stands the start of what stands in a large one.
std::vector<char> shellOf(Lookup lookup, const char* type) {
  const std::vector<char> shell = shellOf(lookup, type, kShellSize);
  const std::vector<char> start = shellOf(lookup, type, 4);
  fuzz::expect(
      std::equal(start.begin(), start.end(), shell.begin()) && start.empty() == shell.empty(),
      "a small buffer holds another command");
  return shell;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text = fuzz::bytesOf(data, size);
  write(kRegistryFile, text);
  for (const char* type : {"Movie", "TV", "Music", "KTV"}) {
    const bool ofClass = !shellOf(&GetFirstEnabledShellByClass, type).empty();
    const bool ofType = !shellOf(&GetFirstEnabledShellByType, type).empty();
    fuzz::expect(ofType || !ofClass || text.size() > 80,
                 "only the lookup by class finds an add-on");
  }
  write(kCatalogueFile, text);
  for (const std::string& shell : {std::string("/opt/scraper/tv.sh"), std::string(), text}) {
    const char* language = nullptr;
    getDefaultLang(&language, fuzz::Exact(shell).text());
    fuzz::expect(std::strlen(language) <= 3, "a language code is too long");
  }
  return 0;
}
