#include "platform/platform_check.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "output/utf8.h"
#include "platform.h"
#include "platform/registry_view.h"
#include "plugin/run_program.h"

namespace quilp {
namespace {

constexpr struct {
  std::string_view command;
  const char* type;
} kTypes[] = {{"movie", "Movie"}, {"tv", "TV"}, {"music", "Music"}, {"karaoke", "KTV"}};

const Media* mediaOfCommand(const std::string& command) {
  for (const auto& [name, type] : kTypes) {
    if (name == command) {
      return mediaOf(type);
    }
  }
  return nullptr;
}

/// The folder of a file of a fixed name.
std::string folderOf(const std::string& path) { return path.substr(0, path.rfind('/')); }

class Lacks {
 public:
  void add(const std::string& lack) { text_ += (text_.empty() ? "" : "; ") + lack; }

  void addUnwritable(const std::string& folder) {
    if (faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) != 0) {
      add(folder + " cannot be written: " + std::strerror(errno));
    }
  }

  void report() const {
    if (!text_.empty()) {
      std::fprintf(stderr, "quilp: %s\n", lineText(text_).c_str());
    }
  }

 private:
  std::string text_;
};

}  // namespace

void reportPlatform(const std::string& what) {
  const Media* media = mediaOfCommand(what);
  if (media == nullptr) {
    return;
  }
  const RegistryView& registry = RegistryView::get();
  Lacks lacks;
  const bool isKaraoke = what == "karaoke";
  const libquilp::RegistrySection* section = registry.serving(*media, Use::kPrint);
  const bool byAddOn = section != nullptr;
  if (byAddOn && !RegistryView::defect(*section).empty()) {
    lacks.add("the add-on of [" + section->name + "]: " + RegistryView::defect(*section));
  }
  if (!byAddOn && !isKaraoke && !libquilp::canBeExecuted(libquilp::kHttpClient)) {
    lacks.add(std::string("there is no ") + libquilp::kHttpClient);
  }
  if (byAddOn || what == "music") {
    lacks.addUnwritable(folderOf(libquilp::kTemporaryName));
  } else if (!isKaraoke) {
    lacks.addUnwritable(folderOf(libquilp::kMovieSearchPage));
  }
  if (!registry.problem().empty()) {
    lacks.add(std::string("the registry ") + libquilp::kRegistryFile + ' ' + registry.problem());
  }
  lacks.report();
}

}  // namespace quilp
