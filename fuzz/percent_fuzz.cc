#include <cstdio>
#include <memory>

#include "fuzz.h"
#include "libquilp.h"

// Encodes and decodes any bytes, and compares with models of each.

namespace {

using Text = std::unique_ptr<char, decltype(&std::free)>;

const std::string kLetters = "abcdefghijklmnopqrstuvwxyz";

std::string escape(char c, const char* format) {
  char text[4];
  std::snprintf(text, sizeof text, format, static_cast<unsigned>(static_cast<unsigned char>(c)));
  return text;
}

std::string modelEncoded(const std::string& text) {
  const std::string kept = kLetters + "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-+_.~/:?&=\\\"";
  std::string encoded;
  for (const char c : text) {
    encoded += kept.find(c) != std::string::npos ? std::string(1, c)
               : c == ' '                        ? "+"
                                                 : escape(c, "%%%02x");
  }
  return encoded;
}

/// Any character has a value: beyond "f" the letters go on, and so does all the rest.
int modelDigit(char digit) {
  const int c = static_cast<unsigned char>(digit);
  return c >= '0' && c <= '9' ? c - '0' : (c >= 'A' && c <= 'Z' ? c + 32 : c) - 'a' + 10;
}

std::string modelDecoded(const std::string& text) {
  std::string decoded;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::size_t behind = text.size() - i - 1;
    if (text[i] == '+') {
      decoded += ' ';
    } else if (text[i] != '%') {
      decoded += text[i];
    } else if (behind >= 2) {
      decoded += static_cast<char>(16 * modelDigit(text[i + 1]) + modelDigit(text[i + 2]));
      i += 2;
    } else if (behind == 1) {
      decoded += text[++i];
    }
  }
  return decoded;
}

/// All that the call may write: its last byte is the terminator.
std::string modelEscaped(const std::string& source) {
  std::string escaped;
  for (const char c : source) {
    escaped += escape(c, "%%%x");
    escaped.append(escaped.size() % 3 != 0 ? 1 : 0, '\0');
  }
  return escaped + '\0';
}

void runDigits(char c) {
  const char low[] = {"0123456789abcdef"[static_cast<unsigned char>(c) % 16], '\0'};
  fuzz::expectText("a hexadecimal digit", {to_hex(c), libquilp::to_hex(c)}, {low[0], low[0]});
  const bool isHex = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f');
  fuzz::expect(char2hex(c) == (isHex ? modelDigit(c) : 16), "char2hex differs from the model");
  fuzz::expect(libquilp::from_hex(c) == static_cast<char>(modelDigit(c)),
               "from_hex differs from the model");
}

/// The first two bytes say how large the destination is.
void runEscapes(const std::string& input) {
  if (input.size() < 2) {
    return;
  }
  const int size =
      256 * static_cast<unsigned char>(input[0]) + static_cast<unsigned char>(input[1]);
  std::string source = input.substr(2);
  const int length = static_cast<int>(source.size());
  std::vector<char> destination(static_cast<std::size_t>(size) + 1, '#');
  const int status = StringConvert2PercentString(source.data(), length, destination.data(), size);
  const bool fits = length > 0 && length <= size / 3;
  fuzz::expect(status == (fits ? 0 : -1), "the escapes' status differs from the model");
  std::string expected = fits ? modelEscaped(source) : "";
  expected.resize(destination.size(), '#');
  fuzz::expectText("the escaped bytes", {destination.begin(), destination.end()}, expected);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size > 0) {
    runDigits(static_cast<char>(data[0]));
  }
  runEscapes(fuzz::bytesOf(data, size));

  const std::string text = fuzz::textOf(data, size);
  const Text encoded(libquilp::url_encode(fuzz::Exact(text).text()), &std::free);
  fuzz::expectText("the encoded text", encoded.get(), modelEncoded(text));

  const std::string expected = modelDecoded(text);
  const Text decoded(libquilp::url_decode(fuzz::Exact(text).text()), &std::free);
  fuzz::expectText("the decoded text", {decoded.get(), expected.size() + 1}, expected + '\0');
  return 0;
}
