#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>
#include <thread>

#include "libquilp.h"
#include "support.h"
#include "text/entities.h"

namespace {

using libquilp::decoded;
using std::string;

string freed(char* text) {
  const string copy = text;
  std::free(text);
  return copy;
}

string urlEncoded(string text) { return freed(libquilp::url_encode(text.data())); }
string urlDecoded(string text) { return freed(libquilp::url_decode(text.data())); }

TEST(Percent, KeepsAnAddressesStructureAndDecodesWithoutACheck) {
  EXPECT_EQ(urlEncoded("a b&c-+_.~/:?=\\\""), "a+b&c-+_.~/:?=\\\"");
  EXPECT_EQ(urlEncoded("\xC3\xA9\x01\x7F%'#"), "%c3%a9%01%7f%25%27%23");
  EXPECT_EQ(urlDecoded("%41%4"), "A4");
  EXPECT_EQ(urlDecoded("a+%c3%A9%"), "a \xC3\xA9");
  EXPECT_EQ(urlDecoded("%+"), "+");       // a single character after "%" is ordinary text
  EXPECT_EQ(urlDecoded("%gg%"), "\x10");  // 16 * 16 + 16, in eight bits
}

TEST(Percent, KnowsTheDigitsOfEveryByte) {
  const string digits = "0123456789abcdef";
  for (int byte = 0; byte < 256; ++byte) {
    const char c = static_cast<char>(byte);
    EXPECT_EQ(to_hex(c), digits[static_cast<size_t>(byte) & 15]);
    EXPECT_EQ(libquilp::to_hex(c), to_hex(c));
    const size_t value = digits.find(byte >= 'A' && byte <= 'F' ? static_cast<char>(byte + 32) : c);
    EXPECT_EQ(char2hex(c), value == string::npos ? 16 : static_cast<int>(value)) << byte;
    EXPECT_TRUE(value == string::npos || libquilp::from_hex(c) == char2hex(c)) << byte;
  }
}

TEST(Percent, EscapesBytesIntoABuffer) {
  const auto convert = [](string source, int size) {
    string buffer(static_cast<size_t>(size) + 1, '#');
    const int result = StringConvert2PercentString(source.data(), static_cast<int>(source.size()),
                                                   buffer.data(), size);
    return result == 0 ? string(buffer.c_str()) : "refused " + buffer.substr(0, 1);
  };
  EXPECT_EQ(convert("aB\xC3\xA9", 12), "%61%42%c3%a9");
  EXPECT_EQ(convert("aB\xC3\xA9", 11), "refused #");
  EXPECT_EQ(convert("\nA", 12), "%a");
  EXPECT_EQ(convert(string(70000, 'a'), 210000), "refused #");
}

TEST(Entities, DecodesWhatIsAReferenceAndKeepsTheRest) {
  const std::map<string, string> cases = {
      {"Tom &amp; Jerry", "Tom & Jerry"},
      {"&lt;![CDATA[x]]&gt;", "<![CDATA[x]]>"},
      {"&#233;&#xE9;&#X41;&#x10FFFF;",
       "\xC3\xA9\xC3\xA9"
       "A\xF4\x8F\xBF\xBF"},
      {"&#x7ff;&#x800;&#xD800;&#x10000;", "\xDF\xBF\xE0\xA0\x80\xED\xA0\x80\xF0\x90\x80\x80"},
      {"&#1114112;&#12a;&#x;;", "&#1114112;&#12a;"},  // the last is a zero byte and ends the text
      {"&#99999999999999999999999;", "&#99999999999999999999999;"},
      {"&# 65;&#\t+65;&#x0x41;&#-65;", "AAA&#-65;"},
      {"&#\xA0"
       "65;",
       "&#\xA0"
       "65;"},
      {"a&nbsp;b", "a b"},
      {"& alone; &unknown; &&amp;&amp", "& alone; &unknown; &&&amp"},
      {"&Amp;&AMP;&amp ;&thetasym;&thetasyms;", "&Amp;&AMP;&amp ;\xCF\x91&thetasyms;"},
      {"&sub;&sube;&sup;&sup1;&sup2;&supe;",
       "\xE2\x8A\x82\xE2\x8A\x86\xE2\x8A\x83\xC2\xB9\xC2\xB2\xE2\x8A\x87"},
      {"&lang;&rang;&apos;&quot;&AElig;&zwnj;", "\xE3\x80\x88\xE3\x80\x89'\"\xC3\x86\xE2\x80\x8C"},
      {"&&&;&amp;", "&&&;&"},
      {"", ""},
  };
  for (const auto& [text, expected] : cases) {
    EXPECT_EQ(decoded(text), expected) << text;
    string apart(text.size() + 1, '#');
    EXPECT_GE(decode_html_entities_utf8(apart.data(), text.c_str()), expected.size());
    EXPECT_EQ(apart.c_str(), expected) << text;
  }
}

TEST(Entities, LeavesErrnoAndPlainTextAlone) {
  errno = ERANGE;
  string text = "no reference here";
  EXPECT_EQ(decode_html_entities_utf8(text.data(), nullptr), text.size());
  EXPECT_EQ(decoded("&#99999999999999999999999;").size(), 26U);
  EXPECT_EQ(errno, ERANGE);
}

TEST(ReplaceString, ReplacesShortReferencesByTheTable) {
  const auto replaced = [](string text) {
    replace_string(&text);
    return text;
  };
  EXPECT_EQ(replaced("a&#x21;b"), "a!b");
  EXPECT_EQ(replaced("A&#x41;B&#65;C"), "ABC");
  EXPECT_EQ(replaced("x&#9;y&#x9;z"), "xyz");
  EXPECT_EQ(replaced("a\r\nb"), "ab");
  EXPECT_EQ(replaced("&#xAD;&#xFA;"), "\xC2\xAF\xC2\xB0\xC3\xBF");
  // A null entry counts as empty, and any other shape stays.
  EXPECT_EQ(replaced("a&#xFB;b&#233;&#x123;&#xg;&#;&#x"), "ab&#233;&#x123;&#xg;&#;&#x");
  // What was put is read again: "&" can start the next reference.
  EXPECT_EQ(replaced("&#x26;#x21;"), "!");
  EXPECT_EQ(replaced("&#38;#38;#33;"), "!");
  EXPECT_EQ(replaced("&#x26;#33;"), "!");
}

TEST(Removal, TrimsBeforeItRemoves) {
  const auto cleaned = [](string text) { return removeEmptyChar(text); };
  EXPECT_EQ(cleaned(""), "");
  EXPECT_EQ(cleaned(" \t "), " ");
  EXPECT_EQ(cleaned("\n"), "\n");
  EXPECT_EQ(cleaned("  a b  "), "a b");
  EXPECT_EQ(cleaned("x &nbsp;"), "x ");
  EXPECT_EQ(cleaned("&raquo;&nbsp;"), "");
  EXPECT_EQ(cleaned("&nb&nbsp;sp;&raq&nbsp;uo;z"), "z");
  EXPECT_EQ(cleaned("\xC2\xA0"
                    "a\xC2\xA0"),
            "\xC2\xA0"
            "a\xC2\xA0");
}

TEST(Keyword, CutsReleaseNamesDownToTheirTitle) {
  const std::map<string, string> cases = {
      {"The.Matrix.1999.1080p.BluRay.x264-SPARKS", "The Matrix"},
      {"1917.2019.720p", "1917"},
      {"Lost.S01E02.720p.HDTV", "Lost"},
      {"Show.Name.s1e1.Pilot", "Show Name Pilot"},
      {"Movie (Director's Cut) [2010]", "Movie"},
      {"Up (2009", "Up"},
      {"HDTVShow", "Show"},
      {"a (b (c) d) e) f", "a e) f"},
      {"a (b [c) d] e", "a d] e"},  // the round group takes the square opening with it
      {"a [b (c] d) e", "a b e"},   // the round group took the closing: only the opening goes
      {"(((x)y", "y"},
      {"x264 x264 DTS", "x264"},
      {"S01E02E03 S1 E2 xS1E1 S01Ex", "S1 E2 xS1E1 S01Ex"},
      {"Film 1899 2101 2100 more", "Film 1899 2101"},
      {"Film 1999x rest", "Film"},
      {"-_.~+ ", ""},
      {"", ""},
  };
  for (const auto& [name, words] : cases) {
    EXPECT_EQ(ProcessKeyword(name.c_str(), 0), words) << name;
  }
  // Each tag is blanked once, in its order: the second one's "x264" goes, its "CHD" with it.
  EXPECT_EQ(ProcessKeyword("x264-SPARKS x264-CHD", 0), "");
  EXPECT_EQ(ProcessKeyword("DTS-DTS", 0), "DTS");
  EXPECT_EQ(ProcessKeyword("DD5.1080p x264-CHDTS 2002Audio", 0), "DD5 TS 200");
  EXPECT_EQ(ProcessKeyword(nullptr, 0), "");
  EXPECT_EQ(ProcessKeyword("Am\xC3\xA9lie", 1), "Am%c3%a9lie");
  EXPECT_EQ(ProcessKeyword("Fast Furious's", 1), "Fast%20Furious%27s");
}

TEST(Language, ComesFromTheCataloguesConfiguration) {
  const char kConfiguration[] = "/etc/config/catalox.conf";
  const auto language = [](string shell) {
    const char* lang = nullptr;
    getDefaultLang(&lang, shell.data());
    return string(lang);
  };
  EXPECT_EQ(test::standardErrorOf([&] { EXPECT_EQ(language("/opt/tv.sh"), "en"); }), "");
  test::writeFile(kConfiguration, "[tv]\nLANG=de\n[tv.v2]\nLANG=chinese\n[plain]\nLANG=fr\n[" +
                                      string(63, 'n') + "]\nLANG=long\n");
  EXPECT_EQ(language("/opt/tv.sh"), "de");
  EXPECT_EQ(language("/opt/tv.v2.sh"), "chi");
  EXPECT_EQ(language("/opt/other.sh"), "en");
  EXPECT_EQ(language("plain"), "fr");
  EXPECT_EQ(language("/opt.d/plain"), "fr");
  EXPECT_EQ(language("/opt/" + string(200, 'n') + ".sh"), "lon");
  EXPECT_EQ(language(""), "en");

  // Each thread has a code of its own.
  const char* mine = nullptr;
  string shell = "/opt/tv.sh";
  getDefaultLang(&mine, shell.data());
  std::thread([&] { EXPECT_EQ(language("/opt/plain.sh"), "fr"); }).join();
  EXPECT_STREQ(mine, "de");
  std::remove(kConfiguration);
}

}  // namespace
