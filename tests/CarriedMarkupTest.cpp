#include <expat.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "tests/HostRun.h"

// Random pairs of documents in whatever encodings, with prefixes bound otherwise on the way,
// elements of other namespaces in what documents variables, and several data files. What is saved
// is well formed and reads as the account says, every element keeps its namespace, and a second run
// changes nothing.

namespace {

// The elements of a document by their namespaces, in order, as expat resolves them; an error for
// one that is not well formed.
std::vector<std::string> ElementsOf(const std::string& document) {
  std::vector<std::string> elements;
  XML_Parser parser = XML_ParserCreateNS("ISO-8859-1", '|');
  XML_SetUserData(parser, &elements);
  XML_SetStartElementHandler(parser, [](void* data, const char* name, const char** /*attributes*/) {
    static_cast<std::vector<std::string>*>(data)->emplace_back(name);
  });
  const auto size = static_cast<int>(document.size());
  if (XML_Parse(parser, document.data(), size, XML_TRUE) != XML_STATUS_OK) {
    elements = {XML_ErrorString(XML_GetErrorCode(parser))};
  }
  XML_ParserFree(parser);
  return elements;
}

constexpr const char* kStandard = "ddi:codebook:2_5";

class Documents {
 public:
  explicit Documents(unsigned seed) : random_(seed) {}

  std::size_t UpTo(std::size_t most) { return random_() % (most + 1); }
  const std::string& Any(const std::vector<std::string>& of) { return of[UpTo(of.size() - 1)]; }

  // A document of the variables, each with what documents it, in the second of its data files.
  std::string Make(const std::string& encoding, const std::vector<std::string>& variables) {
    const std::string root = Any({"", "d:", "e:"});
    const std::string inside = Any({root, "", "f:"});
    std::string text =
        "<?xml version='1.0' encoding='" + encoding + "'?>" + Start(root, "codeBook", "");
    text += "<" + root + "fileDscr ID='F1'/><" + root + "fileDscr ID='F2'/>";
    // The default, or the root's prefix, may mean something else from here on.
    const std::string other = Any({"", " xmlns='urn:other'", " xmlns:d='urn:other'"});
    const bool isRebound = (inside.empty() && other == " xmlns='urn:other'") ||
                           (inside == "d:" && other == " xmlns:d='urn:other'");
    text += Start(inside, "dataDscr", isRebound ? "" : other);
    for (const std::string& name : variables) {
      const std::string own = Any({inside, "g:"});
      text += Start(own, "var", " name='" + name + "' files='F2'");
      text += Documentation(own);
      text += "</" + own + "var>";
    }
    return text + "</" + inside + "dataDscr></" + root + "codeBook>";
  }

 private:
  static std::string Start(const std::string& prefix, const std::string& name,
                           const std::string& more) {
    const std::string bare = prefix.empty() ? "" : ":" + prefix.substr(0, prefix.size() - 1);
    return "<" + prefix + name + " xmlns" + bare + "='" + kStandard + "'" + more + ">";
  }

  // Some elements of the standard with others in them; p is the standard's prefix there.
  std::string Documentation(const std::string& p) {
    std::string text;
    for (const char* kind : {"qstn", "txt", "universe"}) {
      if (UpTo(2) > 0) text += Element(p + kind, p);
    }
    return text;
  }
  std::string Element(const std::string& name, const std::string& p) {
    const std::vector<std::string> inner = {
        "text &amp; more&#13;",
        "<" + p + "emph>E</" + p + "emph>",
        "<x:b xmlns:x='urn:x'>b<" + p + "emph>E</" + p + "emph></x:b>",
        "<d:x xmlns:d='urn:f'>" + (p == "d:" ? "" : "<" + p + "emph>q</" + p + "emph>") + "</d:x>",
        "<div xmlns='urn:html'><h:emph xmlns:h='" + std::string(kStandard) + "'>E</h:emph></div>",
        "<a xmlns='u'><c xmlns=''>c</c></a>",
        "<" + p + "Link refs='Q'>l</" + p + "Link>\n<!-- c -->"};
    return "<" + name + ">t" + Any(inner) + Any(inner) + "</" + name + ">";
  }

  std::mt19937 random_;
};

// The names of the documentation of a variable in a list of elements, in a fixed order.
std::vector<std::string> DocumentationIn(const std::string& document) {
  std::vector<std::string> found;
  for (const std::string& element : ElementsOf(document)) {
    const bool isDocumentation = element.find("urn:") == 0 ||
                                 element.find('|') == std::string::npos || element[0] == 'u' ||
                                 element == std::string(kStandard) + "|emph";
    if (isDocumentation) found.push_back(element);
  }
  std::sort(found.begin(), found.end());
  return found;
}

TEST(CarriedMarkup, KeepsItsNamespacesAndIsReadBack) {
  const Folder folder;
  const std::vector<std::string> encodings = {"UTF-8", "US-ASCII", "windows-1252", "KOI8-R"};
  const std::string command = "FROM '" + folder.At("s.xml") + "#F2' /NEWVARS";
  for (unsigned seed = 0; seed < 300; ++seed) {
    Documents documents(seed);
    const std::string source = documents.Make(documents.Any(encodings), {"a", "b", "c"});
    std::string working = documents.Make(documents.Any(encodings), {"x"});
    const testing::ScopedTrace trace(__FILE__, __LINE__, source);
    const testing::ScopedTrace onto(__FILE__, __LINE__, working);
    ASSERT_GT(ElementsOf(source).size(), 1U) << ElementsOf(source).front();
    folder.Write("s.xml", source);
    std::string saved;
    {
      Hosted hosted(folder.Write("w.xml", working) + "#F2");
      hosted.Run(command);
      saved = hosted.Saved();
      folder.Write("w.xml", saved);
      const velahost::CodebookFile again = velahost::OpenCodebook(folder.At("w.xml") + "#F2");
      ASSERT_EQ(DictionaryJson(again.dictionary), hosted.Json()) << saved;
      ASSERT_EQ(again.dictionary.variables.size(), 4U);
    }
    ASSERT_GT(ElementsOf(saved).size(), 1U) << ElementsOf(saved).front() << saved;
    std::vector<std::string> expected = DocumentationIn(source);
    for (const std::string& element : DocumentationIn(working)) expected.push_back(element);
    std::sort(expected.begin(), expected.end());
    ASSERT_EQ(DocumentationIn(saved), expected) << saved;
    Hosted hosted(folder.At("w.xml") + "#F2");
    hosted.Run(command);
    ASSERT_EQ(hosted.Saved(), saved);
  }
}

TEST(CarriedMarkup, StaysBehindWhereItsNamesCannotBeWritten) {
  const Folder folder;
  folder.Write("s.xml",
               "<codeBook><dataDscr><var "
               "name='A'><txt>t&#13;<Link>l</Link></txt><qstn><größe>y</größe></qstn></var>"
               "<var name='N'><universe ключ='1'>u</universe></var></dataDscr></codeBook>");
  Hosted hosted(
      folder.Write("w.xml",
                   "<?xml version='1.0' encoding='US-ASCII'?>\n<codeBook><dataDscr>\n<var "
                   "name='A'/></dataDscr></codeBook>"));
  hosted.Run("FROM '" + folder.At("s.xml") + "' /NEWVARS");
  std::vector<std::string> warnings;
  for (const auto& diagnostic : hosted.host.diagnostics.All()) warnings.push_back(diagnostic.shown);
  const std::string why =
      " is not brought, since it has names of elements or attributes that the encoding US-ASCII "
      "lacks...";
  EXPECT_EQ(warnings, (std::vector<std::string>{"A: The element qstn" + why,
                                                "N: The element universe" + why}));
  EXPECT_EQ(
      hosted.Saved(),
      "<?xml version='1.0' encoding='US-ASCII'?>\n<codeBook><dataDscr>\n<var name='A'>\n  "
      "<txt>t&#13;l</txt>\n</var>\n<var ID=\"V1\" name=\"N\">\n  <varFormat type=\"numeric\"/>\n"
      "</var></dataDscr></codeBook>");
}

}  // namespace
