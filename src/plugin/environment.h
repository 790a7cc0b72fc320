#pragma once

#include <string>
#include <utility>
#include <vector>

namespace libquilp {

/// Names and values that an add-on finds in its environment.
using Variables = std::vector<std::pair<std::string, std::string>>;

inline constexpr char kNameVariable[] = "QUILP_NAME";  // the words of a search, before cleaning
inline constexpr char kYearVariable[] = "QUILP_YEAR";
inline constexpr char kLanguageVariable[] = "QUILP_LANGUAGE";

/// The environment of the process with other variables of the library's own: those that it
/// inherited would be of another search.
class Environment {
 public:
  explicit Environment(const Variables& own);

  /// For posix_spawn; valid as long as this object and the environment of the process.
  char** data() { return entries_.data(); }

 private:
  std::vector<std::string> own_;
  std::vector<char*> entries_;
};

}  // namespace libquilp
