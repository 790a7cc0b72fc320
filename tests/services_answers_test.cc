// Answers of services that are spoilt in every way still give well-formed documents, or none.

#include <gtest/gtest.h>
#include <json/json.h>

#include <chrono>
#include <fstream>
#include <iterator>

#include "kit/values.h"
#include "services.h"
#include "xml/well_formed.h"

namespace {

std::string sampleOf(const AnswerReader& reader) {
  std::ifstream file(std::string(QUILP_TESTS) + "/services/" + reader.sample + ".json");
  return {std::istreambuf_iterator<char>(file), {}};
}

void expectWellFormed(const AnswerReader& reader, const std::string& answer) {
  const std::string document = documentOf(reader, answer);
  EXPECT_TRUE(document.empty() || libquilp::findXMLFault(document).reason == nullptr)
      << reader.sample << ": " << answer.substr(0, 2000) << document;
}

/// Calls visit() with each value of `root` replaced by each of others, or removed.
void spoil(Json::Value& root, Json::Value& value, const std::function<void()>& visit) {
  static const Json::Value kOthers[] = {Json::nullValue,
                                        Json::Value(Json::objectValue),
                                        Json::Value(Json::arrayValue),
                                        true,
                                        -1,
                                        1e300,
                                        18446744073709551615U,
                                        "",
                                        "]]>&lt;\x01\xFF<\u0000",
                                        std::string(100000, '<')};
  for (const Json::Value& other : kOthers) {
    Json::Value spoilt = other;
    value.swap(spoilt);
    visit();
    value.swap(spoilt);
  }
  if (value.isObject()) {
    for (const std::string& name : value.getMemberNames()) {
      Json::Value removed;
      value.removeMember(name, &removed);
      visit();
      value[name] = removed;
      spoil(root, value[name], visit);
    }
  } else if (value.isArray()) {
    Json::Value nested(Json::arrayValue);
    nested.append(value);
    value.swap(nested);
    visit();
    value.swap(nested);
    for (Json::Value& each : value) {
      spoil(root, each, visit);
    }
  }
}

TEST(Answers, EveryValueMissingOrOfAnotherType) {
  Json::StreamWriterBuilder writer;
  writer["indentation"] = "";
  for (const AnswerReader& reader : answerReaders()) {
    Json::Value root;
    std::ifstream(std::string(QUILP_TESTS) + "/services/" + reader.sample + ".json") >> root;
    int spoilt = 0;
    spoil(root, root, [&] {
      expectWellFormed(reader, Json::writeString(writer, root));
      ++spoilt;
    });
    EXPECT_GT(spoilt, 50) << reader.sample;
  }
}

TEST(Answers, TruncatedAnswersAreRefused) {
  for (const AnswerReader& reader : answerReaders()) {
    const std::string sample = sampleOf(reader);
    ASSERT_NE(documentOf(reader, sample), "") << reader.sample;
    for (std::size_t size = 0; size + 2 < sample.size(); size += 97) {
      EXPECT_EQ(documentOf(reader, sample.substr(0, size)), "") << reader.sample << ' ' << size;
    }
  }
}

TEST(Answers, HugeAnswersCostLittle) {
  constexpr std::size_t kSize = 16 << 20;
  const auto repeated = [](const std::string& piece) {
    std::string text;
    while (text.size() < kSize) {
      text += piece;
    }
    return text;
  };
  const std::string huge[] = {
      repeated("["),
      repeated("{\"a\":"),
      '[' + repeated("0,") + "0]",
      "[\"" + repeated("<p>") + "\"]",
      "{\"summary\":\"" + repeated("&lt;<") + "\",\"name\":\"" + std::string(1000, '&') + "\"}",
  };
  for (const AnswerReader& reader : answerReaders()) {
    for (const std::string& answer : huge) {
      const auto start = std::chrono::steady_clock::now();
      documentOf(reader, answer);
      EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(60))
          << reader.sample << ' ' << answer.substr(0, 20);
    }
  }
}

TEST(Values, Dates) {
  using quilp::kit::dateOf;
  for (const auto& [text, date] : std::initializer_list<std::pair<const char*, const char*>>{
           {"2014-03-02", "2014-03-02"},
           {"2014-03-02T21:00:00Z", "2014-03-02"},
           {"2014-03", "2014-03"},
           {"2014-00-00", "2014"},
           {"2014-03-00", "2014-03"},
           {"2014-13-01", "2014"},
           {"2014", "2014"},
           {"20140302", ""},
           {"0000-00-00", ""},
           {"soon", ""},
           {"", ""}}) {
    EXPECT_EQ(dateOf(text), date) << text;
  }
}

TEST(Values, Addresses) {
  using quilp::kit::addressOf;
  for (const auto& [text, address] : std::initializer_list<std::pair<const char*, const char*>>{
           {"http://a.example/b c", ""},
           {"http://a.example/b", "https://a.example/b"},
           {"//a.example/b", "https://a.example/b"},
           {"https://a.example/b?c=d&e", "https://a.example/b?c=d&e"},
           {"javascript:alert(1)", ""},
           {"file:///etc/passwd", ""},
           {"https://", ""},
           {"https:///b", ""},
           {"/b.jpg", ""}}) {
    EXPECT_EQ(addressOf(text), address) << text;
  }
}

TEST(Values, TextOfHtml) {
  using quilp::kit::textOfHtml;
  for (const auto& [html, text] : std::initializer_list<std::pair<const char*, const char*>>{
           {"<p>One.</p><p>Two &amp; <i>t</i>hree</p>", "One. Two & three"},
           {"a<br/>b<BR>c", "a b c"},
           {"1 < 2 <3", "1 < 2 <3"},
           {"cut <a href=\"", "cut"},
           {"<!-- no -->yes", "yes"},
           {"&lt;p&gt;", "<p>"},
           {"", ""}}) {
    EXPECT_EQ(textOfHtml(html), text) << html;
  }
}

}  // namespace
