#include "plain/read_name.h"

#include <dlfcn.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <memory>
#include <string>

namespace libquilp {
namespace {

/// Beside libquilp.so, also where a link leads there.
std::string moduleFile() {
  static const char kHere = 0;
  Dl_info here;
  char* library = dladdr(&kHere, &here) != 0 ? realpath(here.dli_fname, nullptr) : nullptr;
  if (library == nullptr) {
    return kNameModule;
  }
  const std::unique_ptr<char, void (*)(void*)> owned(library, &std::free);
  const std::string file = library;
  return file.substr(0, file.rfind('/') + 1) + kNameModule;
}

/// The module stays loaded: what it returns has texts of its own. Null if it cannot be loaded.
ReadFields* readerOf(const std::string& file) {
  static std::atomic<ReadFields*> loaded{nullptr};
  if (ReadFields* reader = loaded) {
    return reader;
  }
  void* module = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
  auto* reader =
      module != nullptr ? reinterpret_cast<ReadFields*>(dlsym(module, kReadFields)) : nullptr;
  loaded = reader;
  return reader;
}

/// An identifier is "imdb:tt0133093", as the stock add-ons take it.
Strings valuesOf(KeyValues& field) {
  if (field.form != KeyValues::Form::kPairs) {
    return std::move(field.values);
  }
  Strings values;
  for (std::size_t i = 0; i + 1 < field.values.size(); i += 2) {
    values.push_back(field.values[i] + ':' + field.values[i + 1]);
  }
  return values;
}

}  // namespace

PlainAnswer nameAnswer(const char* name, NamedKind kind) {
  PlainAnswer answer;
  const std::string file = moduleFile();
  ReadFields* read = readerOf(file);
  if (read == nullptr) {
    answer.reason = Reason::kCannotStart;
    answer.number = access(file.c_str(), R_OK) != 0 ? errno : ENOEXEC;
    answer.subject = "cannot load " + file;
    return answer;
  }
  std::vector<KeyValues> fields;
  read(name, kind, fields);
  Result result;
  for (KeyValues& field : fields) {
    const bool isList = field.form == KeyValues::Form::kTexts ||
                        field.form == KeyValues::Form::kPairs || field.values.size() > 1;
    result.push_back({std::string(field.key), valuesOf(field), {}, isList});
  }
  addResult(std::move(result), answer.results);
  return answer;
}

}  // namespace libquilp
