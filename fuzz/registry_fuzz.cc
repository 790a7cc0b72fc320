#include <array>
#include <cstring>
#include <fstream>

#include "fuzz.h"
#include "libquilp.h"
#include "platform.h"
#include "plugin/registry.h"

// Reads any bytes as the appliance's registry and catalogue files. Runs in the box, and writes to
// /etc there.

namespace {

using namespace libquilp;

void write(const char* path, const std::string& text) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  fuzz::expect(file.write(text.data(), static_cast<std::streamsize>(text.size())).good(),
               "the configuration cannot be written");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text = fuzz::bytesOf(data, size);
  write(kRegistryFile, text);
  for (const char* type : {"Movie", "TV", "Music", "KTV"}) {
    const auto ofClass = findAddOn(type, true, Context());
    const auto ofType = findAddOn(type, false, Context());
    fuzz::expect(ofType || !ofClass || text.size() > 80,
                 "only the lookup by class finds an add-on");
    fuzz::expect(!ofType || ofType->program.size() <= kProgramSize, "a program is too long");
  }
  write(kCatalogueFile, text);
  for (const std::string& shell : {std::string("/opt/scraper/tv.sh"), std::string(), text}) {
    const char* language = nullptr;
    getDefaultLang(&language, fuzz::Exact(shell).text());
    fuzz::expect(std::strlen(language) <= 3, "a language code is too long");
  }
  return 0;
}
