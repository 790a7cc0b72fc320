#include "scan/changes.h"

#include <fcntl.h>
#include <json/reader.h>
#include <json/writer.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <fstream>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <system_error>
#include <vector>

#include "output/message.h"

namespace quilp {
namespace {

namespace fs = std::filesystem;

constexpr char kWrote[] = "wrote";
constexpr char kReplaced[] = "replaced";
constexpr char kRenamed[] = "renamed";

[[noreturn]] void fail(const std::string& what) {
  throw std::system_error(errno, std::generic_category(), what);
}

/// To see whether a file is still what was written.
std::string fingerprint(std::string_view content) {
  std::uint64_t hash = 0xcbf29ce484222325;
  for (const char c : content) {
    hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3;
  }
  return std::to_string(content.size()) + '-' + std::to_string(hash);
}

std::optional<std::string> contentOf(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  if (!in) {
    return std::nullopt;
  }
  std::ostringstream content;
  content << in.rdbuf();
  return content.str();
}

/// JSON cannot hold every file name: bytes that are not ASCII are written as U+0080 to U+00FF.
std::string escaped(const std::string& bytes) {
  std::string text;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80) {
      text += c;
    } else {
      text += static_cast<char>(0xC0 | byte >> 6);
      text += static_cast<char>(0x80 | (byte & 0x3F));
    }
  }
  return text;
}

std::string unescaped(const std::string& text) {
  std::string bytes;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if (byte < 0x80 || i + 1 == text.size()) {
      bytes += text[i];
    } else {
      const auto next = static_cast<unsigned char>(text[++i]);
      bytes += static_cast<char>((byte & 0x03) << 6 | (next & 0x3F));
    }
  }
  return bytes;
}

std::string lineOf(const Json::Value& value) {
  Json::StreamWriterBuilder writer;
  writer["indentation"] = "";
  return Json::writeString(writer, value);
}

class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() {
    if (number_ >= 0) {
      close(number_);
    }
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int number() const { return number_; }

 private:
  int number_;
};

bool writeAll(int descriptor, std::string_view content) {
  bool good = descriptor >= 0;
  for (std::size_t at = 0; good && at < content.size();) {
    const ssize_t wrote = ::write(descriptor, content.data() + at, content.size() - at);
    good = wrote > 0 || (wrote < 0 && errno == EINTR);
    at += wrote > 0 ? static_cast<std::size_t>(wrote) : 0;
  }
  return good && fsync(descriptor) == 0;
}

void writeNew(const fs::path& file, std::string_view content) {
  const Descriptor descriptor(
      open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, 0644));
  if (!writeAll(descriptor.number(), content)) {
    const int error = errno;
    unlink(file.c_str());
    errno = error;
    fail("cannot write " + file.native());
  }
}

/// Fails with EEXIST where there is a file of the new name.
int renameToNew(const fs::path& from, const fs::path& to) {
  const int result = renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE);
  if (result == 0 || errno != EINVAL) {
    return result;
  }
  // A file system that cannot refuse by itself.
  if (fs::exists(fs::symlink_status(to))) {
    errno = EEXIST;
    return -1;
  }
  return ::rename(from.c_str(), to.c_str());
}

fs::path folderOf(const fs::path& file) {
  return file.has_parent_path() ? file.parent_path() : fs::path(".");
}

/// The file that a new content is written to first.
fs::path besideOf(const fs::path& file) {
  return folderOf(file) / ('.' + std::to_string(getpid()) + ".quilp");
}

/// Replaces a file by one of the new content.
void writeWhole(const fs::path& file, std::string_view content) {
  const fs::path beside = besideOf(file);
  writeNew(beside, content);
  if (::rename(beside.c_str(), file.c_str()) != 0) {
    const int error = errno;
    unlink(beside.c_str());
    errno = error;
    fail("cannot write " + file.native());
  }
}

/// Makes a new file, which gets its name when it is whole: nothing is left of one that is not.
template <class Note>
void writeWithoutName(const fs::path& file, std::string_view content, const Note& note) {
  const Descriptor descriptor(open(folderOf(file).c_str(), O_WRONLY | O_TMPFILE | O_CLOEXEC, 0644));
  const std::string entry = "/proc/self/fd/" + std::to_string(descriptor.number());
  if (descriptor.number() >= 0 && access(entry.c_str(), F_OK) == 0) {
    if (!writeAll(descriptor.number(), content)) {
      fail("cannot write " + file.native());
    }
    note();
    if (linkat(AT_FDCWD, entry.c_str(), AT_FDCWD, file.c_str(), AT_SYMLINK_FOLLOW) != 0) {
      fail("cannot write " + file.native());
    }
    return;
  }
  // A file system without files that have no name.
  const fs::path beside = besideOf(file);
  writeNew(beside, content);
  note();
  if (renameToNew(beside, file) != 0) {
    const int error = errno;
    unlink(beside.c_str());
    errno = error;
    fail("cannot write " + file.native());
  }
}

fs::path backupOf(const std::string& journal, const std::string& number) {
  return fs::path(journal + ".files") / number;
}

std::string freeNumber(const std::string& journal) {
  int number = 1;
  while (fs::exists(backupOf(journal, std::to_string(number)))) {
    ++number;
  }
  return std::to_string(number);
}

/// Undoes one line of a journal. Returns false where the file was changed since.
bool undoOne(const std::string& journal, const Json::Value& line) {
  const std::string what = line["change"].asString();
  const fs::path file = unescaped(line["file"].asString());
  const std::string more = unescaped(line["more"].asString());
  if (what == kRenamed) {
    const bool wasMade =
        !fs::exists(fs::symlink_status(file)) && fs::exists(fs::symlink_status(more));
    return !wasMade || renameToNew(more, file) == 0;
  }
  const std::optional<std::string> content = contentOf(file);
  if (what == kReplaced) {
    const std::optional<std::string> old = contentOf(backupOf(journal, line["backup"].asString()));
    if (!old || content == old) {  // the change was never made, or is taken back already
      return old.has_value();
    }
    if (content && fingerprint(*content) != more) {
      return false;
    }
    writeWhole(file, *old);
    return true;
  }
  if (!content) {
    return true;
  }
  return fingerprint(*content) == more && unlink(file.c_str()) == 0;
}

}  // namespace

Changes::Changes(std::string journal, bool replace, bool dryRun)
    : path_(std::move(journal)), replace_(replace), dryRun_(dryRun) {
  if (dryRun_) {
    return;
  }
  isNew_ = !fs::exists(fs::symlink_status(path_));
  file_.reset(std::fopen(path_.c_str(), "ae"));
  if (!file_) {
    fail("cannot open " + path_);
  }
}

Changes::~Changes() {
  if (isNew_ && count_ == 0) {
    unlink(path_.c_str());
  }
}

void Changes::note(const char* what, const fs::path& file, const std::string& more,
                   const std::string& backup) {
  ++count_;
  if (dryRun_) {
    return;
  }
  Json::Value line;
  line["change"] = what;
  line["file"] = escaped(fs::absolute(file).lexically_normal().native());
  line["more"] = escaped(more);
  if (!backup.empty()) {
    line["backup"] = backup;
  }
  if (std::fprintf(file_.get(), "%s\n", lineOf(line).c_str()) < 0 ||
      std::fflush(file_.get()) != 0 || fsync(fileno(file_.get())) != 0) {
    fail("cannot write " + path_);
  }
}

Changes::Done Changes::write(const fs::path& file, std::string_view content) {
  const bool exists = fs::exists(fs::symlink_status(file));
  if (exists && contentOf(file) == content) {
    return Done::kSame;
  }
  if (keeps(file)) {
    return Done::kKept;
  }
  if (dryRun_) {
    note(kWrote, file, "", "");
    return Done::kYes;
  }
  if (exists) {
    fs::create_directories(fs::path(path_ + ".files"));
    const std::string number = freeNumber(path_);
    fs::copy_file(file, backupOf(path_, number));
    note(kReplaced, file, fingerprint(content), number);
    writeWhole(file, content);
    return Done::kYes;
  }
  writeWithoutName(file, content, [&] { note(kWrote, file, fingerprint(content), ""); });
  return Done::kYes;
}

bool Changes::keeps(const fs::path& file) const {
  return !replace_ && fs::exists(fs::symlink_status(file));
}

Changes::Done Changes::rename(const fs::path& from, const fs::path& to) {
  if (from == to) {
    return Done::kSame;
  }
  if (fs::exists(fs::symlink_status(to))) {
    return Done::kKept;
  }
  note(kRenamed, from, fs::absolute(to).lexically_normal().native(), "");
  if (dryRun_) {
    return Done::kYes;
  }
  fs::create_directories(to.parent_path());
  if (renameToNew(from, to) != 0) {
    fail("cannot rename " + from.native());
  }
  return Done::kYes;
}

std::size_t undo(const std::string& journal) {
  std::ifstream in(journal);
  if (!in) {
    throw std::runtime_error("cannot read " + journal);
  }
  const std::unique_ptr<Json::CharReader> reader(Json::CharReaderBuilder().newCharReader());
  std::vector<Json::Value> lines;
  for (std::string line; std::getline(in, line);) {
    Json::Value value;
    const bool whole = !in.eof();  // the last line may have been cut off before its change
    if (whole && reader->parse(line.data(), line.data() + line.size(), &value, nullptr) &&
        value.isObject() && value["change"].isString()) {
      lines.push_back(value);
    } else if (whole) {
      throw std::runtime_error(journal + " is no journal of quilp scan");
    }
  }
  std::string left;
  std::size_t count = 0;
  for (auto line = lines.rbegin(); line != lines.rend(); ++line) {
    if (!undoOne(journal, *line)) {
      ++count;
      tell("left as it is: " + unescaped((*line)["file"].asString()));
      left.insert(0, lineOf(*line) + '\n');
    }
  }
  if (count == 0) {
    std::error_code ignored;
    fs::remove_all(journal + ".files", ignored);
    fs::remove(journal, ignored);
  } else {
    writeWhole(journal, left);
  }
  return count;
}

}  // namespace quilp
