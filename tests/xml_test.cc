#include <gtest/gtest.h>

#include <cstdlib>
#include <iterator>
#include <string>

#include "support.h"
#include "xml/xml_node.h"

namespace libquilp {
namespace {

const char kPath[] = "/tmp/document.xml";

XMLNode open(const std::string& text, const char* tag, int& error) {
  test::writeFile(kPath, text);
  return XMLNode::openFileHelper(kPath, &error, tag);
}

XMLNode open(const std::string& text) {
  int error = -1;
  const XMLNode node = open(text, "a", error);
  EXPECT_EQ(error, 0) << text;
  return node;
}

TEST(XMLNodeOpen, TellsWhatIsNoDocument) {
  std::string nested;
  for (int i = 0; i < 1000000; ++i) {
    nested += "<b>";
  }
  for (const std::string& text :
       {std::string(), std::string("  "), std::string("text"), std::string("<a>"),
        std::string("<a></b>"), std::string("<a b=></a>"), std::string("<c><a/></c>"),
        std::string("<a><![CDATA[x</a>"), "<a>" + nested}) {
    int error = 0;
    const XMLNode node = open(text, "a", error);
    EXPECT_NE(error, 0) << text.substr(0, 40);
    EXPECT_FALSE(node);
  }
  int error = 0;
  EXPECT_FALSE(XMLNode::openFileHelper("/tmp/none.xml", &error, "a"));
  EXPECT_NE(error, 0);
  EXPECT_FALSE(XMLNode::openFileHelper("/tmp", &error, "a"));
  EXPECT_NE(error, 0);
}

struct Verdict {
  std::string name, document;
  bool opens;
};

// Every row but the last is what libxml2 says too.
TEST(XMLNodeOpen, OpensWhatIsWellFormedAlone) {
  const Verdict rows[] = {
      {"five names, references", "<a b='&lt;&#9;'>&amp;&lt;&gt;&quot;&apos;&#65;&#x1F600;</a>",
       true},
      {"a bare ampersand", "<a>R & B</a>", false},
      {"an ampersand in an address", "<a b='?x=1&y=2'/>", false},
      {"an undeclared entity", "<a>&nbsp;</a>", false},
      {"an ampersand in a section", "<a><![CDATA[R & B ]] > <]]></a>", true},
      {"a duplicate attribute", "<a b='1' b='2'/>", false},
      {"attributes that differ in case", "<a b='1' B='2'/>", true},
      {"attributes without a blank", "<a b='1'c='2'/>", false},
      {"< in an attribute", "<a b='<'/>", false},
      {"> in an attribute", "<a b='>'/>", true},
      {"text before the root", "x<a/>", false},
      {"text after the root", "<a/>x", false},
      {"a section after the root", "<a/><![CDATA[]]>", false},
      {"a second root", "<a/><b/>", false},
      {"]]> in text", "<a>]]></a>", false},
      {"a control character", "<a>\x01</a>", false},
      {"a zero byte", std::string("<a>\0</a>", 8), false},
      {"a control character by number", "<a>&#1;</a>", false},
      {"a surrogate by number", "<a>&#xD800;</a>", false},
      {"a number too large", "<a>&#x110000;</a>", false},
      {"U+FFFF", "<a>\xEF\xBF\xBF</a>", false},
      {"-- in a comment", "<a><!-- -- --></a>", false},
      {"names that differ in case", "<a></A>", false},
      {"a declaration after a blank", " <?xml version='1.0'?><a/>", false},
      {"version 1.1", "<?xml version='1.1'?><a/>", true},
      {"version 2.0", "<?xml version='2.0'?><a/>", false},
      {"version 1.x", "<?xml version='1.x'?><a/>", false},
      {"a declaration without a version", "<?xml encoding='UTF-8'?><a/>", false},
      {"bytes that are no UTF-8", "<a>\xE9</a>", false},
      {"a surrogate in UTF-8", "<a>\xED\xA0\x80</a>", false},
      {"the same bytes as Latin-1", "<?xml version='1.0' encoding='iso-8859-1'?><a>\xE9</a>", true},
      {"UTF-16 claimed alone", "<?xml version='1.0' encoding='UTF-16'?><a/>", false},
      {"UTF-16", std::string("\xFF\xFE<\0a\0/\0>\0", 10), true},
      {"half a UTF-16 pair", std::string("\xFE\xFF\0<\0a\0>\xD8\0\0<\0/\0a\0>", 18), false},
      {"a declared entity", "<!DOCTYPE a [<!ENTITY e 'x'>]><a>&e;</a>", true},
      {"an entity of itself", "<!DOCTYPE a [<!ENTITY e '&e;'>]><a b='&e;'/>", false},
      {"UTF-16 without a mark", std::string("<\0a\0/\0>\0", 8), false},
  };
  for (const Verdict& row : rows) {
    int error = 0;
    EXPECT_EQ(static_cast<bool>(open(row.document, "a", error)), row.opens) << row.name;
    EXPECT_EQ(error == 0, row.opens) << row.name;
    if (&row != &rows[std::size(rows) - 1]) {  // libxml2 guesses what has no mark
      const int status =
          std::system(("xmllint --noout --nonet " + std::string(kPath) + " 2>/dev/null").c_str());
      EXPECT_EQ(status == 0, row.opens) << row.name << ": libxml2 says " << status;
    }
  }
  EXPECT_STREQ(open(std::string("\xFE\xFF\0<\0a\0>\0\xE9\0<\0/\0a\0>", 18)).getText(), "\xC3\xA9");
}

// Entities that name one another, 100000 deep, do not overflow the stack.
TEST(XMLNodeOpen, RefusesManyEntities) {
  std::string document = "<!DOCTYPE a [<!ENTITY e0 'x'>";
  for (int i = 1; i < 100000; ++i) {
    document += "<!ENTITY e" + std::to_string(i) + " '&e" + std::to_string(i - 1) + ";'>";
  }
  int error = 0;
  EXPECT_FALSE(open(document + "]><a b='&e99999;'/>", "a", error));
}

TEST(XMLNodeOpen, TakesTheRootOfTheName) {
  EXPECT_STREQ(open("\xEF\xBB\xBF<?xml version='1.0'?><!-- c --><A>1</A>").getText(), "1");
  // Neither the claimed encoding nor an inner declaration changes a byte.
  EXPECT_STREQ(open("<?xml version='1.0' encoding='iso-8859-1'?><!DOCTYPE a [<!ENTITY e 'x'>]>"
                    "<a>\xC3\xA9 &e;</a>")
                   .getText(),
               "\xC3\xA9 &e;");
}

TEST(XMLNodeRead, KeepsTextAndClearSectionsApart) {
  const XMLNode a =
      open("<a>  one &amp; &#x41;\n <![CDATA[ <b> &amp; \r\n]]><c> \n </c> two<![CDATA[]]></a>");
  EXPECT_EQ(a.nClear(), 2);
  EXPECT_STREQ(a.getClear(0).lpszValue, " <b> &amp; \r\n");
  EXPECT_STREQ(a.getClear(1).lpszValue, "");
  EXPECT_EQ(a.getClear(2).lpszValue, nullptr);
  EXPECT_EQ(a.nText(), 2);
  EXPECT_STREQ(a.getText(0), "one & A");
  EXPECT_STREQ(a.getText(1), "two");
  EXPECT_EQ(a.getChildNode("c").nText(), 0);
}

TEST(XMLNodeRead, FindsChildrenAndAttributesWithoutRegardToCase) {
  const XMLNode a = open("<a><x i='1' Id='2'/>t<Y/><X i='3'/></a>");
  EXPECT_EQ(a.nChildNode(), 3);
  EXPECT_EQ(a.nChildNode("x"), 2);
  EXPECT_STREQ(a.getChildNode("X", 1).getAttribute("I"), "3");
  EXPECT_STREQ(a.getChildNode(0).getAttribute(1).lpszName, "Id");
  EXPECT_STREQ(a.getChildNode(0).getAttribute(1).lpszValue, "2");
  EXPECT_EQ(a.getChildNode(0).nAttribute(), 2);
  EXPECT_EQ(a.getChildNode(0).getAttribute(2).lpszValue, nullptr);
  EXPECT_EQ(a.getChildNode(0).getAttribute("none"), nullptr);
  EXPECT_TRUE(a.getChildNode(0).getNextNode().getNextNode());
  EXPECT_FALSE(a.getChildNode(0).getNextNode().getNextNode().getNextNode());
  std::string names;
  a.getChildNode(0).forEachAttribute([&](const XMLAttribute& own) { names += own.lpszName; });
  EXPECT_EQ(names, "iId");
}

TEST(XMLNodeRead, AnEmptyNodeIsSafe) {
  const XMLNode none = open("<a/>").getChildNode("b").getChildNode(3).getChildNode("c", 2);
  EXPECT_FALSE(none);
  EXPECT_EQ(none.nChildNode() + none.nClear() + none.nText() + none.nAttribute(), 0);
  EXPECT_EQ(none.getText(), nullptr);
  EXPECT_EQ(none.getAttribute("i"), nullptr);
}

TEST(XMLNodeWrite, IndentsAndEscapes) {
  XMLNode top = XMLNode::createXMLTopNode("xml", true);
  top.addAttribute("version", "1.0");
  XMLNode list = top.addChild("list");
  XMLNode entry = list.addChild("entry");
  entry.addAttribute("rank", "<\"'&>");
  entry.addChild("title").addText("<&>\"' \xC3\xA9");
  entry.addChild("empty").addText("");
  entry.addChild("none").addText(nullptr);
  char* text = top.createXMLString(1);
  EXPECT_STREQ(text,
               "<?xml version=\"1.0\"?>\n"
               "<list>\n"
               "\t<entry rank=\"&lt;&quot;&apos;&amp;&gt;\">\n"
               "\t\t<title>&lt;&amp;&gt;&quot;&apos; \xC3\xA9</title>\n"
               "\t\t<empty></empty>\n"
               "\t\t<none/>\n"
               "\t</entry>\n"
               "</list>\n");
  freeXMLString(text);
}

TEST(XMLNodeWrite, DepthCostsNoStack) {
  XMLNode top = XMLNode::createXMLTopNode("d", false);
  XMLNode node = top;
  for (int i = 0; i < 20000; ++i) {
    node = node.addChild("d");
  }
  char* text = top.createXMLString(0);
  EXPECT_EQ(std::string(text).size(), 20000 * 7 + 4U);
  freeXMLString(text);
}

}  // namespace
}  // namespace libquilp
