#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "standalone/Codebook/Elements.h"
#include "standalone/Text/Text.h"
#include "standalone/Xml/Markup.h"
#include "standalone/Xml/Parser.h"

// What markup says is read without the parser; it must say what the parser makes of it.

namespace {

using velahost::MarkupText;

// The text and the attribute of a root element, by the parser.
struct ByParser final : velahost::XmlHandler {
  explicit ByParser(std::string_view document) {
    velahost::Namespaces namespaces(velahost::CodebookVocabulary());
    velahost::XmlParser(namespaces, *this).ParseDocument(document);
  }
  void Start(const velahost::XmlStart& start) override {
    if (attribute.empty() && *start.attributes != nullptr) attribute = start.attributes[1];
  }
  bool ReadsText(velahost::ElementName /*element*/) const override { return true; }
  void End(std::size_t /*begin*/, std::size_t /*end*/) override {}
  void Text(std::string_view piece) override { text += piece; }

  std::string text;
  std::string attribute;
};

TEST(Markup, SaysWhatTheParserMakesOfIt) {
  const std::string contents[] = {"plain",
                                  "a &amp;&lt;&gt;&quot;&apos; b",
                                  "&#65;&#x1F600;&#xe9;",
                                  "a\r\nb\rc\nd",
                                  "<!-- <b> & --> x <?p ?> > y ?><b a='>' c=\">\">in</b>ner<e/>",
                                  "<![CDATA[ <&amp;\r\n]] ]]>]]&gt;",
                                  "&#13;&#10;&#9; \t",
                                  "\xC3\xA9\xE2\x82\xAC",
                                  ""};
  for (const std::string& content : contents) {
    const std::string document = "<a>" + content + "</a>";
    EXPECT_EQ(MarkupText::OfContent(content, velahost::Encoding()).View(), ByParser(document).text)
        << content;
  }
  const std::string values[] = {"a &amp;&lt;>&quot; b", "a\r\nb\r\n\nc\td", "&#10;&#13;&#x9;",
                                "\xC3\xA9"};
  for (const std::string& value : values) {
    EXPECT_EQ(MarkupText::OfAttribute(value, velahost::Encoding()).View(),
              ByParser("<a b='" + value + "'/>").attribute)
        << value;
  }
  const std::string latin = "<?xml version='1.0' encoding='ISO-8859-1'?><a b='\xE9'>\xFC&#233;</a>";
  EXPECT_EQ(MarkupText::OfContent("\xFC&#233;", *velahost::Encoding::Named("ISO-8859-1")).View(),
            ByParser(latin).text);
  EXPECT_EQ(MarkupText::OfAttribute("\xE9", *velahost::Encoding::Named("ISO-8859-1")).View(),
            ByParser(latin).attribute);
  EXPECT_EQ(MarkupText::OfContent("&a;b", velahost::Encoding()).View(), "&a;b");
}

TEST(Texts, OutliveTheirArenaAndEachOther) {
  std::vector<velahost::Text> texts;
  for (int round = 0; round < 3; ++round) {
    velahost::TextArena arena;
    for (const std::size_t size : {0U, 1U, 3U, 4U, 5U, 8191U, 8192U, 8193U, 70'000U}) {
      texts.push_back(arena.Add(std::string(size, 'x')));
      if (size % 2 == 1) texts.pop_back();
    }
    velahost::TextArena moved = std::move(arena);
    texts.push_back(moved.AddCollapsed(" a \n b "));
  }
  std::thread other([texts] {
    for (const velahost::Text& text : std::vector(texts)) {
      EXPECT_EQ(text.CString()[text.Size()], '\0');
    }
  });
  texts.erase(texts.begin(), texts.end() - 1);
  other.join();
  EXPECT_EQ(texts.front(), "a b");
}

}  // namespace
