#include "fuzz.h"
#include "libquilp.h"
#include "lookups.h"

// Reads any bytes as a file name, as a title part and as an artist part, and compares with a model
// that goes byte by byte and knows nothing of the library's tables.

namespace {

constexpr std::size_t kRoom = 1023;

bool isAt(const std::string& text, std::size_t at, const std::string& marker) {
  return text.compare(at, marker.size(), marker) == 0;
}

/// Truncates to the buffer, without splitting a character.
std::string cut(const std::string& text) {
  if (text.size() <= kRoom) {
    return text;
  }
  for (std::size_t end = kRoom; end + 3 >= kRoom; --end) {
    if ((text[end] & 0xC0) != 0x80) {
      return text.substr(0, end);
    }
  }
  return text.substr(0, kRoom);
}

int wordsOf(const std::string& text) {
  int words = 0;
  int skip = 0;
  bool inRun = false;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (skip > 0) {
      --skip;
    } else if (inRun) {
      words += byte >= 0xC0;
      inRun = byte < 0xC0 && c != ' ' && c != '_';
    } else if (byte >= 0xC0) {
      ++words;
      skip = byte <= 0xE0 ? 1 : byte <= 0xEF ? 2 : 3;
    } else if ((c >= '0' && c <= '9') || ((c | 0x20) >= 'a' && (c | 0x20) <= 'z' && c > 0)) {
      ++words;
      inRun = true;
    }
  }
  return words;
}

void modelTitle(const std::string& text, KTV_ExtraData_t& song) {
  const std::string latin[] = {"[M]", "[C]", "[T]", "[E]", "[J]", "[K]", "[THA]", "[ES]"};
  const std::string chinese[] = {"国國", "粤粵", "闽台", "英英", "日日", "韩韓", "泰泰", "西西"};
  const std::string tracks = "LRS01";
  std::string title;
  bool done = false;
  bool languageFound = false;
  bool trackFound = false;
  std::size_t step = 0;
  bool keepStep = false;
  const auto finish = [&] {
    if (!done && !title.empty()) {
      song.title = cut(title);
      song.titlePatterns.push_back({song.title, wordsOf(song.title), 1});
      done = true;
    }
  };
  for (std::size_t i = 0; i < text.size();) {
    step = keepStep ? step : 0;
    keepStep = false;
    if (text[i] != '[') {
      title += done ? "" : text.substr(i, 1);
      ++i;
      continue;
    }
    finish();
    if (!languageFound) {
      song.language = 0;
      for (int code = 8; code > 0; --code) {
        const std::string& characters = chinese[code - 1];
        if (isAt(text, i, latin[code - 1])) {
          song.language = code;
          step = latin[code - 1].size();
        } else if (isAt(text, i, "[" + characters.substr(0, 3) + "]") ||
                   isAt(text, i, "[" + characters.substr(3) + "]")) {
          song.language = code;
        }
      }
      if (song.language > 0) {
        languageFound = true;
        i += step;
        continue;
      }
    }
    if (!trackFound) {
      const bool closed = i + 2 < text.size() && text[i + 2] == ']';
      const std::size_t track = closed ? tracks.find(text[i + 1]) : std::string::npos;
      song.audioTrack = track == std::string::npos ? 0 : static_cast<int>(track) + 1;
      if (song.audioTrack > 0) {
        trackFound = true;
        step = 3;
        keepStep = true;
        i += step;
        continue;
      }
    }
    ++i;
  }
  finish();
}

void modelArtists(const std::string& text, KTV_ExtraData_t& song) {
  std::string name;
  bool inBracket = false;
  const auto add = [&](int gender) {
    if (!name.empty()) {
      song.artists.push_back({cut(name), gender, 0, {}});
    }
    name.clear();
  };
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool wide = isAt(text, i, "＋") || isAt(text, i, "＆");
    if (wide || text[i] == '+' || text[i] == '&') {
      add(0);
      inBracket = false;
      i += wide ? 2 : 0;
    } else if (inBracket) {
      continue;
    } else if (text[i] == '[') {
      add(isAt(text, i, "[M]") ? 1 : isAt(text, i, "[F]") ? 2 : isAt(text, i, "[G]") ? 3 : 0);
      inBracket = true;
    } else {
      name += text[i];
    }
  }
  add(0);
}

void modelName(const std::string& whole, KTV_ExtraData_t& song) {
  std::string text = cut(whole);
  text = text.substr(0, text.rfind('.'));
  const std::size_t underscore = text.find('_');
  if (underscore != std::string::npos) {
    modelArtists(text.substr(0, underscore), song);
    text.erase(0, underscore + 1);
  }
  modelTitle(text, song);
}

template <class Parse, class Model>
void compare(const char* what, const std::string& text, Parse parse, Model model) {
  KTV_ExtraData_t info;
  initKTVInfo(&info);
  parse(info);
  KTV_ExtraData_t expected;
  initKTVInfo(&expected);
  model(text, expected);
  fuzz::expectText(what, test::described(info), test::described(expected));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text = fuzz::textOf(data, size);
  fuzz::Exact exact(text);
  compare(
      "the name", text, [&](KTV_ExtraData_t& info) { BasicGetKTVInfo(exact.text(), &info); },
      modelName);
  compare(
      "the title part", text,
      [&](KTV_ExtraData_t& info) { parseTitleAndLangAndVocal(exact.bytes(), &info); }, modelTitle);
  compare(
      "the artist part", text, [&](KTV_ExtraData_t& info) { parseArtist(exact.bytes(), &info); },
      modelArtists);
  return 0;
}
