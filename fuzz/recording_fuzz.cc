#include <stdexcept>

#include "fuzz.h"
#include "record/keys.h"
#include "record/recording.h"

// Reads any bytes as a recording, and keeps any bytes in one.

namespace {

using quilp::Recording;

void expectSame(const Recording& recording) {
  const std::string text = recording.text();
  fuzz::expect(quilp::parseRecording("text", text).text() == text,
               "a recording is read otherwise than it was written");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text = fuzz::bytesOf(data, size);
  try {
    expectSame(quilp::parseRecording("text", text));
  } catch (const std::runtime_error&) {  // it is none
  }
  Recording recording;
  recording.words = {text};
  recording.files["/file"] = text;
  recording.fetches.push_back({{text}, {}, 0, 1, false, text, text});
  recording.addOns.push_back({{"/add-on", text}, {text}, 2, -1, true, {}, text});
  expectSame(recording);
  quilp::removeKeys(recording, text);
  expectSame(recording);
  const std::string clean = quilp::withoutKeys(text);
  fuzz::expect(quilp::withoutKeys(clean) == clean, "a key is left in a question");
  return 0;
}
