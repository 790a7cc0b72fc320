#include <gtest/gtest.h>

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

TEST(XMLNodeOpen, TakesTheFirstElementOfTheName) {
  EXPECT_STREQ(open("\xEF\xBB\xBF<?xml version='1.0'?><!-- c --><b/><A>1</A><a>2</a>").getText(),
               "1");
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
