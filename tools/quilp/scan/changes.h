#pragma once

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace quilp {

/// Writes and renames files so that all of it can be taken back. The journal has a line for each
/// change before it is made.
class Changes {
 public:
  enum class Done { kYes, kKept, kSame };

  /// With `dryRun` nothing is changed, and there is no journal. Throws std::system_error when the
  /// journal cannot be opened.
  Changes(std::string journal, bool replace, bool dryRun);
  /// Without changes there is no new journal.
  ~Changes();
  Changes(const Changes&) = delete;
  Changes& operator=(const Changes&) = delete;

  /// Writes a file whole or not at all. One that is there is kept, unless changes replace: then a
  /// copy is kept in the journal's folder. Throws std::system_error.
  Done write(const std::filesystem::path& file, std::string_view content);

  /// kKept where there is a file of the new name. Throws std::system_error.
  Done rename(const std::filesystem::path& from, const std::filesystem::path& to);

  /// Whether write() would keep a file that is there.
  bool keeps(const std::filesystem::path& file) const;

  std::size_t count() const { return count_; }
  const std::string& journal() const { return path_; }

 private:
  struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };

  void note(const char* what, const std::filesystem::path& file, const std::string& more,
            const std::string& backup);

  const std::string path_;
  const bool replace_;
  const bool dryRun_;
  std::unique_ptr<std::FILE, Close> file_;
  bool isNew_ = false;
  std::size_t count_ = 0;
};

/// Takes back what a journal lists, the last change first, and tells what it leaves: a file that
/// was changed since. Returns how many were left. Throws std::runtime_error.
std::size_t undo(const std::string& journal);

}  // namespace quilp
