#include "platform/why_nothing.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "platform.h"
#include "platform/registry_view.h"

namespace quilp {
namespace {

/// That the folder of a file cannot be written, after a semicolon; empty when it can.
std::string lackOfFolder(const std::string& file) {
  const std::string folder = file.substr(0, file.rfind('/'));
  return faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) == 0
             ? ""
             : "; " + folder + " cannot be written: " + std::strerror(errno);
}

}  // namespace

std::string whyNothing(const libquilp::Answer& answer, const libquilp::Media& media) {
  std::string text = sentence(answer);
  if (text.empty()) {
    return text;
  }
  const bool isSong = media.printing == libquilp::Printing::kNone;
  const bool isMusic = media.printing == libquilp::Printing::kAddOnDocument;
  if (answer.addOn || isMusic) {
    text += lackOfFolder(libquilp::kTemporaryName);
  } else if (!isSong) {
    text += lackOfFolder(libquilp::kMovieSearchPage);
  }
  const RegistryView& registry = RegistryView::get();
  const std::string& problem = registry.problem();
  // Without add-ons the file may be missing: another reason explains the failure.
  const bool isOther = registry.isMissing() && answer.reason != libquilp::Reason::kNothingFound;
  if (!problem.empty() && !isSong && !isOther) {
    text += std::string("; the registry ") + libquilp::kRegistryFile + ' ' + problem;
  }
  return text;
}

}  // namespace quilp
