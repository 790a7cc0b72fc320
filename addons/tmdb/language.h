#pragma once

#include <string>
#include <vector>

#include "kit/json.h"

namespace quilp::tmdb {

/// The texts of a title or episode in other languages, for those that are not translated. The
/// service itself leaves them empty or in the original language.
class Translations {
 public:
  /// Of an answer with translations. It must outlive them.
  Translations(const kit::Json& answer, const std::string& language);

  /// The answer's own text, else that of the next language: "de-AT" gives "de", "en", the original.
  std::string text(const std::string& name, const std::string& own) const;

  /// As text(), for a title, whose answer may be in the original language without saying so.
  std::string title(const std::string& name, const std::string& own,
                    const std::string& original) const;

 private:
  /// The text in a language; a region that is empty stands for any.
  std::string in(const std::string& language, const std::string& region,
                 const std::string& name) const;

  std::vector<kit::Json> list_;
  std::string base_;
  std::string region_;
  std::string original_;
};

}  // namespace quilp::tmdb
