#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace libquilp {

/// A piece of a page. No value means that a marker is missing; the piece itself may be empty.
using Cut = std::optional<std::string_view>;

/// Like std::string::substr, without the copy: a count beyond the end, or one that wrapped around,
/// reaches to the end; a start beyond the end throws std::out_of_range.
std::string_view cutAt(std::string_view text, std::size_t start, std::size_t count);

/// The first `size` bytes of the text, or fewer, so that no UTF-8 character is split.
std::string_view atMost(std::string_view text, std::size_t size);

/// Walks one text from marker to marker and cuts out the pieces between them. A failed search does
/// not move the position: the next search starts at the same place.
class Cutter {
 public:
  explicit Cutter(std::string_view text) : text_(text) {}

  /// Moves after the next `marker`.
  bool past(std::string_view marker);

  /// Returns the text up to the next `marker` and moves after the marker.
  Cut upTo(std::string_view marker);

  /// The same, but returns the rest of the text if the marker is missing.
  std::string_view upToOrRest(std::string_view marker);

  /// Returns the text between the next `open` and the `close` after it, and moves after `close`.
  Cut between(std::string_view open, std::string_view close);

  /// The same, but returns the rest of the text if `close` is missing.
  Cut betweenOrRest(std::string_view open, std::string_view close);

  /// Returns the next `size` bytes, or fewer at the end of the text, and moves after them.
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

/// Copies a cut for a record's field, with malloc; null for a missing one.
char* duplicate(Cut cut);

}  // namespace libquilp
