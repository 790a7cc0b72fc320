#include "inputs.h"

namespace bench {

std::string repeated(const std::string& piece, std::size_t size) {
  std::string text;
  text.reserve(size + piece.size());
  while (text.size() < size) {
    text += piece;
  }
  return text;
}

std::string ordinaryText(std::size_t size) {
  return repeated(
      "A keeper who cannot sleep folds a lighthouse out of old letters, and one night it is lit. "
      "Ships that nobody has seen for years find their way home by it; the village, which has "
      "lived from wrecks as long as anyone remembers, has to decide whose light it is. Tom &amp; "
      "Ida Roth&#39;s third film was shot in the off season, in one caf&eacute; and on one pier. ",
      size);
}

}  // namespace bench
