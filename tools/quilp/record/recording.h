#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace quilp {

/// One run of an add-on, or of curl.
struct Exchange {
  std::vector<std::string> question;   // argv without "-o FILE"; the address
  std::vector<std::string> variables;  // NAME=VALUE, what the protocol tells an add-on
  int error = 0;                       // errno if it could not be started
  int status = 0;                      // of waitpid for an add-on; curl's exit status
  bool cut = false;                    // the time limit ended it
  std::optional<std::string> headers;
  std::optional<std::string> answer;  // the document or page; none was written without it
};

/// All that a lookup saw.
struct Recording {
  std::vector<std::string> words;            // the command, without the name of the program
  std::map<std::string, std::string> files;  // settings of the platform that could be read
  std::vector<Exchange> addOns;
  std::vector<Exchange> fetches;
  std::map<std::string, bool> markers;  // what pages are cut at, and whether it was found at all

  /// As a file: sections of a name and a length, then so many bytes.
  std::string text() const;
};

/// Throws std::runtime_error for a file that is no recording, or a damaged one.
Recording readRecording(const std::string& file);

/// The same for a text; messages call it `name`.
Recording parseRecording(const std::string& name, const std::string& text);

}  // namespace quilp
