#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace libquilp {

/// A piece of a page; none when its markers are missing, which is not the same as an empty one.
using Cut = std::optional<std::string_view>;

/// As std::string::substr, without the copy: a count beyond the end, or one that wrapped around,
/// runs to the end; a start beyond it throws std::out_of_range.
std::string_view cutAt(std::string_view text, std::size_t start, std::size_t count);

/// As much of the text as `size` bytes hold, no part of a UTF-8 character at its end.
std::string_view atMost(std::string_view text, std::size_t size);

/// Walks one text from marker to marker and cuts out what stands between. A search that fails moves
/// nothing, so that the next field is looked for from the same place.
class Cutter {
 public:
  explicit Cutter(std::string_view text) : text_(text) {}

  /// Moves behind the next `marker`.
  bool past(std::string_view marker);

  /// The text from here to the next `marker`, and moves behind that.
  Cut upTo(std::string_view marker);

  /// The same, but without a marker it is all that is left.
  std::string_view upToOrRest(std::string_view marker);

  /// The text between the next `open` and the next `close` behind it, and moves behind that.
  Cut between(std::string_view open, std::string_view close);

  /// The same, but without `close` it is all that is left.
  Cut betweenOrRest(std::string_view open, std::string_view close);

  /// The next `size` bytes, or as many as are left, and moves behind them.
  std::string_view take(std::size_t size);

  std::string_view rest() const { return text_.substr(at_); }
  bool done() const { return at_ == text_.size(); }

 private:
  std::string_view text_;
  std::size_t at_ = 0;
};

inline bool contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

/// A copy for a record's field, allocated with malloc; null for none.
char* duplicate(Cut cut);

}  // namespace libquilp
