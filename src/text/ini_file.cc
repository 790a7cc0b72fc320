#include "text/ini_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>

#include "text/c_locale.h"
#include "text/place.h"

namespace libquilp {
namespace {

/// Out of memory, iniparser writes through null when it allocates a dictionary's tables. This
/// checks for enough memory right before, but another thread may take it.
bool hasRoom() {
  constexpr std::size_t kMoreThanItTakes = 16384;
  void* volatile room = std::malloc(kMoreThanItTakes);
  const bool has = room != nullptr;
  std::free(room);
  return has;
}

// A missing file is normal, but iniparser would write a message about it.
dictionary* load(const char* path) {
  const bool readable = faccessat(AT_FDCWD, path, R_OK, AT_EACCESS) == 0;
  return readable && hasRoom() ? iniparser_load(path) : nullptr;
}

}  // namespace

// Section names and keys are converted to lower case, in the file and in lookups.

IniFile::IniFile(const char* path) : dictionary_(nullptr, &iniparser_freedict) {
  const CLocale letters;
  dictionary_.reset(load(placeOf(path)));
}

int IniFile::sections() const { return iniparser_getnsec(dictionary_.get()); }

const char* IniFile::section(int i) const { return iniparser_getsecname(dictionary_.get(), i); }

std::vector<std::string> IniFile::keys(const std::string& section) const {
  const int count = iniparser_getsecnkeys(dictionary_.get(), section.c_str());
  std::vector<const char*> names(static_cast<std::size_t>(count));
  iniparser_getseckeys(dictionary_.get(), section.c_str(), names.data());
  std::vector<std::string> keys;
  keys.reserve(names.size());
  for (const char* name : names) {
    keys.emplace_back(name + section.size() + 1);  // "section:key"
  }
  return keys;
}

const char* IniFile::value(const char* key, const char* fallback) const {
  const CLocale letters;
  return iniparser_getstring(dictionary_.get(), key, fallback);
}

}  // namespace libquilp
