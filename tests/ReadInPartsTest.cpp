#include <gtest/gtest.h>

#include <optional>
#include <ostream>
#include <string>
#include <utility>

#include "standalone/Codebook/Parts.h"
#include "standalone/Xml/Parser.h"
#include "tests/ReadingDescription.h"

// A large document reads the same in parts as from end to end, whatever stands where it could be
// cut.

namespace {

struct Large {
  const char* name;
  std::string head;
  std::string variable;  // "#" stands for a number; repeated until there is enough
  std::string tail;
  bool cut = true;          // in the right places
  std::string middle = {};  // once among the variables
};
void PrintTo(const Large& large, std::ostream* out) { *out << large.name; }

std::string TextOf(const Large& large) {
  constexpr std::size_t kEnough = 20'000;
  std::string text = large.head;
  bool middle = false;
  for (int i = 0; text.size() < kEnough; ++i) {
    if (!middle && text.size() > kEnough / 2) {
      text += large.middle;
      middle = true;
    }
    std::string variable = large.variable;
    for (std::size_t at = 0; (at = variable.find('#', at)) != std::string::npos;) {
      variable.replace(at, 1, std::to_string(i));
    }
    text += variable;
  }
  return text + large.tail;
}

// All that a reading holds, or the error that it ends with.
template <typename Read>
std::string Outcome(const Large& large, Read read) {
  const std::string text = TextOf(large);
  try {
    const std::optional<velahost::DocumentReading> reading = read(text);
    return reading ? DescriptionOf(*reading) : "cut in vain";
  } catch (const velahost::XmlError& error) {
    return error.what();
  }
}

class ReadInParts : public testing::TestWithParam<Large> {};

TEST_P(ReadInParts, IsAsReadWhole) {
  const std::string whole = Outcome(GetParam(), [](const std::string& text) {
    return std::optional(velahost::ReadWhole(text, velahost::OpenFor::Writing, ""));
  });
  constexpr std::size_t kPartSize = 2000;
  const std::string inParts = Outcome(GetParam(), [](const std::string& text) {
    return velahost::ReadInParts(text, velahost::OpenFor::Writing, "", kPartSize);
  });
  if (inParts == "cut in vain") {
    EXPECT_FALSE(GetParam().cut);
  } else {
    EXPECT_TRUE(inParts == whole) << whole.substr(0, 500) << "\n---\n" << inParts.substr(0, 500);
  }
}

const std::string kHead = "<codeBook><fileDscr ID='F'/><dataDscr>\n";
const std::string kTail = "</dataDscr><otherMat/></codeBook>";
const std::string kVar =
    "<var ID='V#' name='v#'><labl>Label # of this variable</labl><catgry><catValu>1</catValu>"
    "<labl>One</labl></catgry></var>\n";
const Large kLarge[] = {
    {"Plain", kHead, kVar, kTail},
    {"OnOneLine", "<codeBook><dataDscr>", "<var name='v#' wgt='wgt'>text</var>",
     "</dataDscr></codeBook>"},
    {"WithPrefix", "<d:codeBook xmlns:d='ddi:codebook:2_5'><d:dataDscr xmlns:x='x'>",
     "<x:var name='x#'/><d:var name='v#'><d:labl>l</d:labl></d:var>",
     "<d:notes/></d:dataDscr></d:codeBook>"},
    {"NamespacesInside", "<codeBook><dataDscr xmlns='ddi:codebook:2_5' xmlns:e='e'>",
     "<var name='v#' xmlns:f='f#'><e:labl>e</e:labl><labl>l#</labl></var>", kTail},
    {"Latin1", "<?xml version='1.0' encoding='ISO-8859-1'?>\n" + kHead,
     "<var name='\xE9#'><labl>\xE4\xF6\xFC</labl></var>\r\n", kTail},
    {"EmptyOnesToo", kHead, "<var name='e#'/>" + kVar + "<!-- </dataDscr> -->", kTail},
    {"GroupsAmongThem", kHead, kVar + "<varGrp ID='G#' var='V# V0'><labl>g#</labl></varGrp>",
     "<notes/>" + kTail},
    {"EndTagsWithABlank", kHead, "<var name='v#'><labl>l</labl></var >", kTail},
    {"NotesBehind", kHead, kVar, "<notes>n</notes><!-- </var> -->" + kTail},
    {"VariablesBehind", kHead, kVar, "<var name='b1'/><var name='b2'/><varGrp/>" + kTail},
    {"DescriptionsInComments", kHead, kVar + "<!-- <dataDscr> -->", kTail},
    {"DocumentType", "<!DOCTYPE codeBook SYSTEM 'c.dtd'>" + kHead,
     "<var name='v#'><labl>&unknown;</labl></var>", kTail},
    {"EndTagsInComments", kHead, kVar + "<!-- </var></var></var></var></var></var></var></var> -->",
     kTail, false},
    {"EndTagsInSections", kHead,
     "<var name='v#'><labl><![CDATA[</var></var></var></var></var></var></var>]]></labl></var>",
     kTail, false},
    {"EndTagsInInstructions", kHead,
     kVar + "<?p </var></var></var></var></var></var></var></var>?>", kTail, false},
    {"TwoDescriptions", kHead, kVar, kTail, true, "</dataDscr><dataDscr>"},
    {"UnknownEntity", kHead, kVar, kTail, false, "\n&unknown;"},
    {"NotWellFormedAmongThem", kHead, kVar, kTail, false, "\n<a></b>"},
    {"NotWellFormedBehindThem", kHead, kVar, "\n<a></b>", false},
    {"InvalidBytes", kHead, kVar, kTail, false, "\xFF"},
    {"Unfinished", kHead, kVar, "", false},
    {"MoreEndsThanStarts", kHead, kVar, kTail, false, "</dataDscr></codeBook><codeBook><dataDscr>"},
};
INSTANTIATE_TEST_SUITE_P(Documents, ReadInParts, testing::ValuesIn(kLarge),
                         [](const auto& param) { return std::string(param.param.name); });

}  // namespace
