#include "name/fields.h"

#include <utility>

#include "name/song.h"

namespace libquilp {
namespace {

using Form = Field::Form;

/// Fields that are told, in their order.
class Fields {
 public:
  void add(std::string_view key, const std::string& value) {
    if (!value.empty()) {
      all_.push_back({key, Form::kText, {value}});
    }
  }

  void add(std::string_view key, const std::vector<std::string>& values) {
    if (!values.empty()) {
      all_.push_back({key, Form::kTexts, values});
    }
  }

  std::vector<Field> take() { return std::move(all_); }

 private:
  std::vector<Field> all_;
};

}  // namespace

std::vector<Field> fieldsOf(const Song& song) {
  Fields fields;
  fields.add("artist", song.artists);
  fields.add("title", song.title);
  fields.add("language", song.languages);
  fields.add("vocal_track", song.vocalTrack);
  fields.add("style", song.style);
  fields.add("disc_id", song.discId);
  fields.add("container", song.container);
  return fields.take();
}

}  // namespace libquilp
