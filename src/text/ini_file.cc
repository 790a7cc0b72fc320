#include "text/ini_file.h"

#include <fcntl.h>
#include <unistd.h>

namespace libquilp {
namespace {

// A file that is not there is an ordinary case, of which iniparser would write a message.
dictionary* load(const char* path) {
  return faccessat(AT_FDCWD, path, R_OK, AT_EACCESS) == 0 ? iniparser_load(path) : nullptr;
}

}  // namespace

IniFile::IniFile(const char* path) : dictionary_(load(path), &iniparser_freedict) {}

int IniFile::sections() const { return iniparser_getnsec(dictionary_.get()); }

const char* IniFile::section(int i) const { return iniparser_getsecname(dictionary_.get(), i); }

const char* IniFile::value(const char* key, const char* fallback) const {
  return iniparser_getstring(dictionary_.get(), key, fallback);
}

}  // namespace libquilp
