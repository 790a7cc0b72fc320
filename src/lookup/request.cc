#include "lookup/request.h"

#include <cstdio>

#include "libquilp.h"
#include "plugin/add_on_call.h"

namespace libquilp {
namespace {

std::string textOf(Value value, const Values& values, const AddOn& addOn) {
  switch (value) {
    case Value::kKeyword:
      return ProcessKeyword(values.keyword, 0);
    case Value::kCount:
      return std::to_string(values.count);
    case Value::kLanguage: {
      const char* language = values.language;
      if (language == nullptr) {
        std::string program = addOn.program;
        getDefaultLang(&language, program.data());
      }
      return language;
    }
    case Value::kId:
      return values.isWholeId ? values.id : withoutPrefix(values.id);
    case Value::kSeason:
      return std::to_string(values.season);
    case Value::kEpisode:
      return std::to_string(values.episode);
    case Value::kAlbum:
      return values.album;
    case Value::kArtist:
      return values.artist;
    case Value::kPath:
      return values.path;
  }
  return {};
}

}  // namespace

Values Values::search(const char* keyword, int count, const char* language) {
  Values values;
  values.keyword = orEmpty(keyword);
  values.count = count;
  values.language = language;
  return values;
}

Values Values::title(const char* id, const char* language) {
  Values values;
  values.id = id;
  values.language = language;
  return values;
}

Values Values::ofEpisode(const char* id, int season, int episode, const char* language) {
  Values values = title(id, language);
  values.season = season;
  values.episode = episode;
  return values;
}

Values Values::ofAlbum(const char* album, const char* artist, int count) {
  Values values = ofArtist(artist, count);
  values.album = orEmpty(album);
  return values;
}

Values Values::ofArtist(const char* artist, int count) {
  Values values;
  values.artist = orEmpty(artist);
  values.count = count;
  return values;
}

Values Values::song(const char* path) {
  Values values;
  values.path = orEmpty(path);
  return values;
}

std::optional<AddOn> addOnFor(const Request& request, Use use, const Context& context) {
  return findAddOn(request.media.type, asksOwnClassOnly(request.media, use), context);
}

std::vector<std::string> argumentsOf(const Request& request, const Values& values,
                                     const AddOn& addOn) {
  std::vector<std::string> arguments = {request.verb};
  for (const Option& option : request.options) {
    arguments.insert(arguments.end(), {option.name, textOf(option.value, values, addOn)});
  }
  return arguments;
}

Variables variablesOf(const Request& request, const Values& values) {
  Variables variables;
  for (const Option& option : request.options) {
    if (option.value == Value::kKeyword) {
      variables.emplace_back(kNameVariable, orEmpty(values.keyword));
    }
  }
  if (values.year != 0) {
    variables.emplace_back(kYearVariable, std::to_string(values.year));
  }
  if (values.wantedLanguage != nullptr) {
    variables.emplace_back(kLanguageVariable, values.wantedLanguage);
  }
  return variables;
}

bool writeOut(const PrintedAnswer& answer) {
  if (answer.document) {
    std::fputs(answer.document->c_str(), stdout);
  }
  return answer.document.has_value();
}

}  // namespace libquilp
