#include "name/song_tags.h"

#include <algorithm>
#include <array>
#include <string>

#include "ascii.h"
#include "name/song_text.h"

namespace libquilp {
namespace {

constexpr SongField kLanguage = SongField::kLanguage;
constexpr SongField kVocalTrack = SongField::kVocalTrack;
constexpr SongField kStyle = SongField::kStyle;
constexpr SongField kMark = SongField::kMark;
constexpr SongField kFiller = SongField::kFiller;

// One line a language, track or kind of mark: its value, and the words for it between "|".
struct Row {
  SongField field;
  std::string_view value;
  std::string_view words;
};

constexpr Row kRows[] = {
    {kLanguage, "zh", "國語|国语|華語|华语|普通話|普通话|中文|mandarin|chinese"},
    {kLanguage, "yue", "粵語|粤语|廣東話|广东话|cantonese"},
    {kLanguage, "nan", "閩南語|闽南语|閩南話|闽南话|台語|台语|臺語|hokkien|taiwanese|minnan"},
    {kLanguage, "hak", "客家語|客家语|客家話|客家话|客語|客语|hakka"},
    {kLanguage, "en", "英語|英语|英文|영어|english|eng|inglés|anglais|englisch"},
    {kLanguage, "ja", "日語|日语|日文|日本語|일본어|japanese|jpn"},
    {kLanguage, "ko", "韓語|韩语|韓文|韩文|韓国語|한국어|korean|kor"},
    {kLanguage, "th", "泰語|泰语|泰文|thai"},
    {kLanguage, "es", "西班牙語|西班牙语|西語|西语|spanish|español|castellano"},
    {kLanguage, "fr", "法語|法语|法文|french|français"},
    {kLanguage, "de", "德語|德语|德文|german|deutsch"},
    {kLanguage, "it", "意大利語|意大利语|義大利語|意語|意语|italian|italiano"},
    {kLanguage, "pt", "葡萄牙語|葡萄牙语|葡語|葡语|portuguese|português"},
    {kLanguage, "ru", "俄語|俄语|俄文|russian|русский"},
    {kLanguage, "vi", "越南語|越南语|越語|越语|vietnamese|tiếng việt"},
    {kLanguage, "id", "印尼語|印尼语|indonesian|bahasa indonesia"},
    {kLanguage, "ms", "馬來語|马来语|malay|bahasa melayu"},
    {kLanguage, "tl", "菲律賓語|菲律宾语|tagalog|filipino"},
    {kLanguage, "hi", "印地語|印地语|hindi"},
    {kLanguage, "ar", "阿拉伯語|阿拉伯语|arabic"},
    {kLanguage, "he", "希伯來語|希伯来语|hebrew"},
    {kLanguage, "tr", "土耳其語|土耳其语|turkish"},
    {kLanguage, "el", "希臘語|希腊语|greek"},
    {kLanguage, "nl", "荷蘭語|荷兰语|dutch|nederlands"},
    {kLanguage, "pl", "波蘭語|波兰语|polish|polski"},
    {kLanguage, "sv", "瑞典語|瑞典语|swedish|svenska"},
    {kLanguage, "no", "挪威語|挪威语|norwegian|norsk"},
    {kLanguage, "da", "丹麥語|丹麦语|danish|dansk"},
    {kLanguage, "fi", "芬蘭語|芬兰语|finnish|suomi"},
    {kLanguage, "bo", "藏語|藏语|藏文|tibetan"},
    {kLanguage, "mn", "蒙語|蒙语|蒙古語|蒙古语|mongolian"},
    {kLanguage, "ug", "維語|维语|維吾爾語|维吾尔语|uyghur"},

    {kVocalTrack, "instrumental",
     "伴奏|純伴奏|纯伴奏|原版伴奏|伴唱|消音|消原唱|無人聲|无人声|去人声"},
    {kVocalTrack, "instrumental", "instrumental|inst|backing track|no vocals|no vocal|off vocal"},
    {kVocalTrack, "instrumental", "without vocals|minus one|mr|반주|минус|Минус"},
    {kVocalTrack, "vocal", "原唱|帶原唱|带原唱|人聲|人声|with vocals|with vocal|vocals|vocal"},
    {kVocalTrack, "guide", "導唱|导唱|guide vocal|guide vocals|guide melody"},
    {kVocalTrack, "L", "左聲道|左声道"},
    {kVocalTrack, "R", "右聲道|右声道"},
    {kVocalTrack, "S", "立體聲|立体声|stereo"},

    {kStyle,
     {},
     "流行|搖滾|摇滚|民歌|民謠|民谣|民樂|民乐|舞曲|兒歌|儿歌|戲曲|戏曲|京劇|京剧|粵劇|粤剧"},
    {kStyle,
     {},
     "黃梅戲|黄梅戏|情歌|老歌|紅歌|红歌|軍歌|军歌|抒情|懷舊|怀旧|影視|影视|對唱|对唱|合唱"},
    {kStyle,
     {},
     "獨唱|独唱|動漫|动漫|聯唱|联唱|革命歌曲|經典|经典|古風|古风|說唱|说唱|嘻哈|爵士|鄉村|乡村|"
     "網路|网络"},
    {kStyle, {}, "演歌|ポップス|ロック|アニメ|アニソン|童謡|발라드|댄스|트로트|dj"},
    {kStyle, {}, "pop|rock|country|jazz|blues|folk|gospel|disco|reggae|metal|soul|r&b|rap|hip hop"},
    {kStyle,
     {},
     "hip-hop|dance|ballad|oldies|standards|musical|broadway|christmas|latin|duet|enka"},
    {kStyle, {}, "anime|bolero|ranchera|bachata|salsa|cumbia|kids|children|nursery|schlager|trot"},

    {kMark,
     {},
     "karaoke|karaoké|karaokê|ktv|mtv|mv|卡拉ok|カラオケ|노래방|караоке|Караоке|קריוקי|كاريوكي|"
     "คาราโอเกะ|"
     "karaoke version|karaoke video"},
    {kMark,
     {},
     "高清|超清|標清|标清|藍光|蓝光|無損|无损|雙音軌|双音轨|hd|hq|uhd|4k|1080p|720p|480p"},
    {kMark, {}, "dvd|vcd|ld|cdg|cd+g|mp3+g|mp3g|lyrics|lyric video|with lyrics|歌詞付き|字幕|官方"},
    {kMark, {}, "official|official video|custom backing track"},
    {kFiller, {}, "版|歌曲|版本|version|ver|歌|video|audio|full|original|原版|official"},
};

// Whole square brackets only, as are the values above: in a title these are words.
constexpr Row kMarkerRows[] = {
    {kLanguage, "zh", "m|國|国"}, {kLanguage, "yue", "c|粵|粤"}, {kLanguage, "nan", "t|台|闽|閩"},
    {kLanguage, "hak", "客"},     {kLanguage, "en", "e|英"},     {kLanguage, "ja", "j|日|jp"},
    {kLanguage, "ko", "k|韓|韩"}, {kLanguage, "th", "tha|泰"},   {kLanguage, "es", "西"},
    {kVocalTrack, "L", "l"},      {kVocalTrack, "R", "r"},       {kVocalTrack, "S", "s"},
    {kVocalTrack, "0", "0"},      {kVocalTrack, "1", "1"},
};

constexpr std::size_t kLongestTagText = 96;

bool isTagBreak(char c) {
  return std::string_view(" ,/.|-+&_;:").find(c) != std::string_view::npos;
}

/// Calls visit(word) for each of a row's words.
template <class Visit>
void forEachWord(std::string_view words, Visit visit) {
  while (!words.empty()) {
    const std::size_t end = std::min(words.find('|'), words.size());
    visit(words.substr(0, end));
    words.remove_prefix(std::min(end + 1, words.size()));
  }
}

/// Whether `text` starts with the word, and no letter or digit goes on with it.
bool startsWithWord(std::string_view text, std::string_view word) {
  return text.substr(0, word.size()) == word &&
         (text.size() == word.size() || !isAlnum(static_cast<unsigned char>(word.back())) ||
          !isAlnum(static_cast<unsigned char>(text[word.size()])));
}

/// The tags by the first byte of their words.
const std::vector<SongTag>& tagsByFirst(unsigned char first) {
  static const auto kTags = [] {
    std::array<std::vector<SongTag>, 256> tags;
    for (const Row& row : kRows) {
      forEachWord(row.words, [&](std::string_view word) {
        tags[static_cast<unsigned char>(word.front())].push_back({word, row.field, row.value});
      });
    }
    return tags;
  }();
  return kTags[first];
}

/// The longest tag that `text` starts with; its word is empty when there is none.
SongTag tagAt(std::string_view text) {
  SongTag best{};
  for (const SongTag& tag : tagsByFirst(static_cast<unsigned char>(text.front()))) {
    if (tag.word.size() > best.word.size() && startsWithWord(text, tag.word)) {
      best = tag;
    }
  }
  return best;
}

}  // namespace

std::vector<SongTag> songTagsOf(std::string_view text) {
  std::vector<SongTag> tags;
  if (text.size() > kLongestTagText) {
    return tags;
  }
  const std::string lower = lowered(text);
  bool telling = false;
  for (std::size_t at = 0; at < lower.size();) {
    if (isTagBreak(lower[at])) {
      ++at;
      continue;
    }
    SongTag tag = tagAt(std::string_view(lower).substr(at));
    if (tag.word.empty()) {
      return {};
    }
    if (tag.field == SongField::kStyle) {
      tag.value = text.substr(at, tag.word.size());
    }
    at += tag.word.size();
    telling = telling || tag.field != SongField::kFiller;
    tags.push_back(tag);
  }
  return telling ? tags : std::vector<SongTag>();
}

std::vector<SongTag> markerTagsOf(std::string_view text) {
  const std::string lower = text.size() <= kLongestTagText ? lowered(text) : std::string();
  for (const Row& row : kMarkerRows) {
    bool found = false;
    forEachWord(row.words, [&](std::string_view word) { found = found || word == lower; });
    if (found) {
      return {{{}, row.field, row.value}};
    }
  }
  for (const Row& row : kRows) {
    if (!row.value.empty() && row.value == lower) {
      return {{{}, row.field, row.value}};
    }
  }
  return songTagsOf(text);
}

}  // namespace libquilp
