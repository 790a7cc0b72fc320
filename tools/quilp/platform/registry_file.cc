#include "platform/registry_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <system_error>

#include "platform.h"
#include "platform/registry_view.h"
#include "plugin/files.h"

namespace quilp {
namespace {

using libquilp::RegistrySection;

[[noreturn]] void fail(const std::string& path) {
  const std::string hint =
      errno == EACCES || errno == EPERM ? "; only its owner, such as root, may change it" : "";
  throw std::runtime_error(path + " cannot be changed: " + std::strerror(errno) + hint);
}

std::string resolved(const std::string& path) {
  std::error_code error;
  const auto target = std::filesystem::weakly_canonical(path, error);
  return error ? path : target.string();
}

std::string folderOf(const std::string& path) { return path.substr(0, path.rfind('/')); }

std::string lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
  return text;
}

/// Writes a file that has another's mode and owner, and reaches the disk before its name.
class NewFile {
 public:
  explicit NewFile(const std::string& path) : path_(path + ".XXXXXX") {
    file_ = mkostemp(path_.data(), O_CLOEXEC);
    if (file_ < 0) {
      fail(path);
    }
  }
  ~NewFile() {
    if (file_ >= 0) {
      close(file_);
      unlink(path_.c_str());
    }
  }
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  /// Returns the new file's path, which is the caller's from now on.
  std::string write(const std::string& text, const struct stat* like) {
    std::size_t done = 0;
    while (done < text.size()) {
      const ssize_t count = ::write(file_, text.data() + done, text.size() - done);
      if (count < 0 && errno != EINTR) {
        fail(path_);
      }
      done += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
    // The owner first: a change of the owner takes bits from the mode.
    const bool isOthers =
        like != nullptr && (like->st_uid != geteuid() || like->st_gid != getegid());
    if ((isOthers && fchown(file_, like->st_uid, like->st_gid) != 0) ||
        fchmod(file_, like != nullptr ? like->st_mode & 07777U : 0644) != 0 || fsync(file_) != 0) {
      fail(path_);
    }
    if (close(std::exchange(file_, -1)) != 0) {
      unlink(path_.c_str());
      fail(path_);
    }
    return path_;
  }

 private:
  std::string path_;
  int file_ = -1;
};

void rename(const std::string& from, const std::string& to) {
  if (std::rename(from.c_str(), to.c_str()) != 0) {
    const int error = errno;
    unlink(from.c_str());
    errno = error;
    fail(to);
  }
}

std::string sectionName(const StockAddOn& addOn, const std::string& type) {
  return addOn.name + ('-' + lower(type));
}

}  // namespace

bool isOf(const StockAddOn& addOn, const RegistrySection& section) {
  const std::string shell = section.shell.value_or("");
  std::error_code error;
  return shell == addOn.program() ||
         (!shell.empty() && std::filesystem::equivalent(shell, addOn.program(), error));
}

RegistryFile::RegistryFile() : path_(resolved(libquilp::kRegistryFile)), text_("") {
  const std::string folder = folderOf(path_);
  if (mkdir(folder.c_str(), 0755) != 0 && errno != EEXIST) {
    fail(path_);
  }
  folder_ = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (folder_ < 0 || flock(folder_, LOCK_EX) != 0) {
    fail(path_);
  }
  exists_ = access(path_.c_str(), F_OK) == 0;
  const RegistryView& view = RegistryView::get();
  if (exists_ && !view.problem().empty()) {
    throw std::runtime_error(std::string(libquilp::kRegistryFile) + ' ' + view.problem());
  }
  if (exists_) {
    old_ = libquilp::readFile(path_.c_str()).value_or("");
    text_ = RegistryText(old_);
    sections_ = view.sections();
  }
}

RegistryFile::~RegistryFile() {
  if (!new_.empty()) {
    unlink(new_.c_str());
  }
  if (folder_ >= 0) {
    close(folder_);
  }
}

/// Writes the new file, and reads it as lookups will.
void RegistryFile::write() {
  if (!new_.empty()) {
    unlink(std::exchange(new_, "").c_str());
  }
  struct stat status {};
  const bool has = stat(path_.c_str(), &status) == 0;
  new_ = NewFile(path_).write(text_.text(), has ? &status : nullptr);
  const auto sections = libquilp::readRegistry(new_.c_str());
  if (!sections) {
    throw std::runtime_error(path_ + " has a form that cannot be changed by a program");
  }
  sections_ = *sections;
}

void RegistryFile::enable(const StockAddOn& addOn) {
  if (!addOn.isInstalled()) {
    throw std::runtime_error(std::string(addOn.name) + " is not installed: " + addOn.program() +
                             " cannot be executed");
  }
  for (const std::string& type : addOn.typeList()) {
    enable(addOn, type);
  }
}

void RegistryFile::enable(const StockAddOn& addOn, const std::string& type) {
  std::string name = sectionName(addOn, type);
  const auto own =
      std::find_if(sections_.begin(), sections_.end(), [&](const RegistrySection& section) {
        return section.name == name || (section.type == type && isOf(addOn, section));
      });
  const auto first = std::find_if(
      sections_.begin(), sections_.end(),
      [&](const RegistrySection& section) { return section.type == type && section.isEnabled(); });
  const std::string before = first != sections_.end() && first < own ? first->name : "";
  const std::vector<std::pair<std::string, std::string>> values = {{"Class", libquilp::kOwnClass},
                                                                   {"Type", type},
                                                                   {"Enable", "TRUE"},
                                                                   {"Shell", addOn.program()}};
  if (own == sections_.end()) {
    text_.add(name, values, before);
  } else {
    name = own->name;
    const RegistrySection::Value is[] = {own->ownerClass, own->type, own->enable, own->shell};
    for (std::size_t i = 0; i < values.size(); ++i) {
      if (is[i] != values[i].second && !(i == 3 && isOf(addOn, *own))) {
        text_.set(name, values[i].first, values[i].second);
      }
    }
    if (!before.empty()) {
      text_.moveBefore(name, before);
    }
  }
  if (text_.text() == old_) {
    return;
  }
  write();
  const RegistrySection* const asked = libquilp::firstEnabledSection(sections_, type.c_str(), true);
  if (asked == nullptr || asked->name != name || !isOf(addOn, *asked)) {
    throw std::runtime_error(path_ + ": [" + name +
                             "] has a form that cannot be changed by a program");
  }
}

void RegistryFile::disable(const StockAddOn& addOn) {
  const auto isEnabled = [&addOn](const RegistrySection& section) {
    return section.isEnabled() && isOf(addOn, section);
  };
  for (const RegistrySection& section : sections_) {
    if (isEnabled(section)) {
      text_.set(section.name, "Enable", "FALSE");
    }
  }
  if (text_.text() == old_) {
    return;
  }
  write();
  if (std::any_of(sections_.begin(), sections_.end(), isEnabled)) {
    throw std::runtime_error(path_ + " has a form that cannot be changed by a program");
  }
}

void RegistryFile::save() {
  if (new_.empty() || text_.text() == old_) {
    return;
  }
  if (exists_) {
    struct stat status {};
    stat(path_.c_str(), &status);
    rename(NewFile(path_).write(old_, &status), path_ + ".bak");
  }
  rename(std::exchange(new_, ""), path_);
  fsync(folder_);
}

}  // namespace quilp
