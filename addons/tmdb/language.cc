#include "language.h"

#include "kit/titles.h"

namespace quilp::tmdb {

Translations::Translations(const kit::Json& answer, const std::string& language)
    : list_(answer["translations"]["translations"].list()),
      base_(kit::baseOf(language)),
      region_(kit::regionOf(language)),
      original_(answer["original_language"].text()) {}

std::string Translations::in(const std::string& language, const std::string& region,
                             const std::string& name) const {
  for (const kit::Json& each : list_) {
    std::string text = each["data"][name].text();
    if (!text.empty() && each["iso_639_1"].text() == language &&
        (region.empty() || each["iso_3166_1"].text() == region)) {
      return text;
    }
  }
  return "";
}

std::string Translations::text(const std::string& name, const std::string& own) const {
  if (!own.empty()) {
    return own;
  }
  for (const std::string& language : {base_, std::string("en"), original_}) {
    std::string text = in(language, "", name);
    if (!text.empty()) {
      return text;
    }
  }
  return "";
}

std::string Translations::title(const std::string& name, const std::string& own,
                                const std::string& original) const {
  // A title that is not the original one is a translation.
  if (!own.empty() && own != original) {
    return own;
  }
  std::string exact = region_.empty() ? "" : in(base_, region_, name);
  if (!exact.empty()) {
    return exact;
  }
  for (const std::string& language : {base_, std::string("en")}) {
    if (language == original_ && !original.empty()) {
      return original;
    }
    std::string text = in(language, "", name);
    if (!text.empty()) {
      return text;
    }
  }
  return own.empty() ? original : own;
}

}  // namespace quilp::tmdb
