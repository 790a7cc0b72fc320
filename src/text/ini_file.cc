#include "text/ini_file.h"

#include <fcntl.h>
#include <unistd.h>

#include "text/c_locale.h"

namespace libquilp {
namespace {

// A file that is not there is an ordinary case, of which iniparser would write a message.
dictionary* load(const char* path) {
  return faccessat(AT_FDCWD, path, R_OK, AT_EACCESS) == 0 ? iniparser_load(path) : nullptr;
}

}  // namespace

// Names are folded to lower case when they are read and when they are looked up.

IniFile::IniFile(const char* path) : dictionary_(nullptr, &iniparser_freedict) {
  const CLocale letters;
  dictionary_.reset(load(path));
}

int IniFile::sections() const { return iniparser_getnsec(dictionary_.get()); }

const char* IniFile::section(int i) const { return iniparser_getsecname(dictionary_.get(), i); }

const char* IniFile::value(const char* key, const char* fallback) const {
  const CLocale letters;
  return iniparser_getstring(dictionary_.get(), key, fallback);
}

}  // namespace libquilp
