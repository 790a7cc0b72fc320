#include "text/cutter.h"

#include <cstdlib>
#include <cstring>
#include <stdexcept>

#include "text/watch.h"

namespace libquilp {
namespace {

constexpr std::size_t kContinuationBytes = 3;  // the most in one character

bool isContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

}  // namespace

std::string_view cutAt(std::string_view text, std::size_t start, std::size_t count) {
  if (start > text.size()) {
    throw std::out_of_range("basic_string::substr");
  }
  return text.substr(start, count);
}

std::string_view atMost(std::string_view text, std::size_t size) {
  if (text.size() <= size) {
    return text;
  }
  std::size_t end = size;
  while (end > 0 && size - end < kContinuationBytes && isContinuation(text[end])) {
    --end;
  }
  return text.substr(0, isContinuation(text[end]) ? size : end);  // not a UTF-8 character
}

bool Cutter::past(std::string_view marker) {
  const std::size_t found = text_.find(marker, at_);
  markerSought(marker, found != std::string_view::npos);
  if (found == std::string_view::npos) {
    return false;
  }
  at_ = found + marker.size();
  return true;
}

Cut Cutter::upTo(std::string_view marker) {
  const std::size_t start = at_;
  if (!past(marker)) {
    return {};
  }
  return text_.substr(start, at_ - marker.size() - start);
}

std::string_view Cutter::upToOrRest(std::string_view marker) {
  const Cut cut = upTo(marker);
  return cut ? *cut : take(text_.size());
}

Cut Cutter::between(std::string_view open, std::string_view close) {
  const std::size_t start = at_;
  if (!past(open)) {
    return {};
  }
  const Cut cut = upTo(close);
  if (!cut) {
    at_ = start;
  }
  return cut;
}

Cut Cutter::betweenOrRest(std::string_view open, std::string_view close) {
  if (!past(open)) {
    return {};
  }
  return upToOrRest(close);
}

std::string_view Cutter::take(std::size_t size) {
  const std::string_view cut = rest().substr(0, size);
  at_ += cut.size();
  return cut;
}

char* duplicate(Cut cut) { return cut ? strndup(cut->data(), cut->size()) : nullptr; }

}  // namespace libquilp
