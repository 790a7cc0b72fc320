#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace quilp::catalogue {

/// The catalogue file does not hold what it should.
class Damaged : public std::runtime_error {
 public:
  explicit Damaged(const std::string& what)
      : std::runtime_error("the catalogue is damaged: " + what) {}
};

/// Appends numbers of seven bits a byte, and texts after their length.
class Packer {
 public:
  explicit Packer(std::string& to) : to_(to) {}

  void number(std::uint64_t value) {
    for (; value >= 0x80; value >>= 7) {
      to_ += static_cast<char>(value | 0x80);
    }
    to_ += static_cast<char>(value);
  }
  void byte(unsigned value) { to_ += static_cast<char>(value); }
  void text(std::string_view value) {
    number(value.size());
    to_ += value;
  }

 private:
  std::string& to_;
};

/// Reads what a Packer wrote. Throws Damaged at anything else.
class Unpacker {
 public:
  explicit Unpacker(std::string_view from) : from_(from) {}

  bool atEnd() const { return from_.empty(); }
  std::string_view rest() const { return from_; }

  unsigned byte() {
    if (from_.empty()) {
      throw Damaged("a row ends early");
    }
    const auto value = static_cast<unsigned char>(from_[0]);
    from_.remove_prefix(1);
    return value;
  }
  std::uint64_t number() {
    std::uint64_t value = 0;
    for (unsigned shift = 0; shift < 63; shift += 7) {
      const unsigned bits = byte();
      value |= static_cast<std::uint64_t>(bits & 0x7f) << shift;
      if (bits < 0x80) {
        return value;
      }
    }
    throw Damaged("a number has no end");
  }
  std::uint32_t number32() {
    const std::uint64_t value = number();
    if (value > UINT32_MAX) {
      throw Damaged("a number is too large");
    }
    return static_cast<std::uint32_t>(value);
  }
  std::string_view text() {
    const std::uint64_t size = number();
    if (size > from_.size()) {
      throw Damaged("a text ends early");
    }
    const std::string_view value = from_.substr(0, static_cast<std::size_t>(size));
    from_.remove_prefix(value.size());
    return value;
  }

 private:
  std::string_view from_;
};

/// Four bytes that sort as the number does.
inline void appendSortable(std::string& to, std::uint32_t value) {
  for (int shift = 24; shift >= 0; shift -= 8) {
    to += static_cast<char>(value >> shift);
  }
}

inline std::uint32_t sortable(std::string_view key) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < 4 && i < key.size(); ++i) {
    value = value << 8 | static_cast<unsigned char>(key[i]);
  }
  return value;
}

/// The same on every machine: it is stored.
inline std::uint32_t hashOf(std::string_view text) {
  std::uint64_t hash = 0xcbf29ce484222325U;
  for (const char c : text) {
    hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3U;
  }
  return static_cast<std::uint32_t>(hash ^ hash >> 29 ^ hash >> 47);
}

}  // namespace quilp::catalogue
