#include "tests/cases/CodebookText.h"

#include <deque>
#include <map>
#include <regex>
#include <stdexcept>

namespace cases {
namespace {

// The words of a line: quoted texts, with their quotes, brackets, and what else blanks part. A line
// that is not in the notation gives a document that does not read as the line says; the runner
// finds that out.
using Words = std::deque<std::string>;

Words SplitWords(const std::string& line) {
  static const std::regex kWord(R"("(?:[^"]|"")*"|[(){}]|[^ "(){}]+)");
  Words words;
  for (std::sregex_iterator i(line.begin(), line.end(), kWord), end; i != end; ++i) {
    words.push_back(i->str());
  }
  return words;
}

bool IsQuoted(const std::string& word) { return word[0] == '"'; }

std::string TakeWord(Words& words) {
  if (words.empty()) throw std::runtime_error("a line of a dictionary ends too early");
  std::string word = words.front();
  words.pop_front();
  return word;
}

// The words up to a closing bracket, which is taken too.
Words TakeUpTo(const std::string& bracket, Words& words) {
  Words taken;
  for (std::string word = TakeWord(words); word != bracket; word = TakeWord(words)) {
    taken.push_back(word);
  }
  return taken;
}

// What a word says, as it stands in a document.
std::string Text(const std::string& word) {
  if (!IsQuoted(word)) return word;
  std::string text;
  for (std::size_t i = 1; i + 1 < word.size(); ++i) {
    text += word[i] == '&'   ? "&amp;"
            : word[i] == '<' ? "&lt;"
            : word[i] == '"' ? "&quot;"
                             : std::string(1, word[i]);
    if (word[i] == '"') ++i;
  }
  return text;
}

std::string Element(const std::string& name, const std::string& text) {
  return "<" + name + ">" + text + "</" + name + ">";
}

std::string Note(const std::string& type, const std::string& text, const std::string& more = "") {
  return "<notes type=\"VELA:" + type + "\"" + more + ">" + text + "</notes>";
}

std::string AttributeNotes(Words& words) {
  TakeWord(words);
  std::string notes;
  std::string subject;
  for (const std::string& word : TakeUpTo(")", words)) {
    if (IsQuoted(word)) {
      notes += Note("attribute", Text(word), subject);
    } else {
      subject = " subject=\"" + word + "\"";
    }
  }
  return notes;
}

std::string Documentation(Words& words) {
  TakeWord(words);
  std::string elements;
  for (Words parts = TakeUpTo(")", words); !parts.empty();) {
    const std::string name = TakeWord(parts);
    elements += Element(name, Text(TakeWord(parts)));
  }
  return elements;
}

std::string Categories(Words& words) {
  std::string categories;
  for (Words pairs = TakeUpTo("}", words); !pairs.empty();) {
    categories += "<catgry>" + Element("catValu", Text(TakeWord(pairs)));
    categories += Element("labl", Text(TakeWord(pairs))) + "</catgry>";
  }
  return categories;
}

std::string InvalidRange(Words& words) {
  TakeWord(words);
  std::string items;
  for (const std::string& word : TakeUpTo(")", words)) {
    const std::size_t colon = IsQuoted(word) ? std::string::npos : word.find(':');
    const std::string low = word.substr(0, colon);
    if (colon == std::string::npos) {
      items += "<item VALUE=\"" + Text(word) + "\"/>";
      continue;
    }
    const std::string high = word.substr(colon + 1);
    items += "<range" + (low == "lo" ? "" : " min=\"" + low + "\"") +
             (high == "hi" ? "" : " max=\"" + high + "\"") + "/>";
  }
  return Element("invalrng", items);
}

std::string Variable(Words words) {
  static const std::map<std::string, std::string> kNoteTypes = {
      {"write", "writeFormat"}, {"width", "columnWidth"}, {"role", "role"}, {"align", "alignment"}};
  const std::string name = TakeWord(words);
  const std::string format = TakeWord(words);
  std::string nature;
  std::string label;
  std::string missing;
  std::string categories;
  std::string documentation;
  std::string notes;
  while (!words.empty()) {
    const std::string word = TakeWord(words);
    const std::string key = word.substr(0, word.find('='));
    const std::string value = word.substr(word.find('=') + 1);
    if (IsQuoted(word)) label = Element("labl", Text(word));
    if (key == "{") categories = Categories(words);
    if (key == "missing") missing = InvalidRange(words);
    if (key == "attr") notes += AttributeNotes(words);
    if (key == "doc") documentation = Documentation(words);
    if (key == "level") nature = " nature=\"" + (value == "scale" ? "interval" : value) + "\"";
    if (kNoteTypes.contains(key)) notes += Note(kNoteTypes.at(key), value);
  }
  static const std::regex kStringFormat("(A|HEX)[0-9]+|A-");
  const bool isString = std::regex_match(format, kStringFormat);
  const std::string stated = format.ends_with('-') ? "" : "\" formatname=\"" + format;
  return "<var ID=\"V." + name + "\" name=\"" + name + "\"" + nature + ">" + label + documentation +
         missing + categories + "<varFormat type=\"" + (isString ? "character" : "numeric") +
         stated + "\"/>" + notes + "</var>\n";
}

std::string Group(const std::string& type, Words words) {
  const std::string start = "<varGrp type=\"" + type + "\" name=\"" + TakeWord(words) + "\"";
  std::string word = TakeWord(words);
  const std::string label = IsQuoted(word) ? Element("labl", Text(word)) : "";
  std::string members;
  for (const std::string& member : TakeUpTo(")", words)) {
    if (member != "(") members += "V." + member + " ";
  }
  return start + (members.empty() ? "" : " var=\"" + members + "\"") + ">" + label + "</varGrp>\n";
}

}  // namespace

std::string CodebookText(const Lines& dictionary) {
  std::string label;
  std::string notes;
  std::string groups;
  std::string variables;
  for (const std::string& line : dictionary) {
    Words words = SplitWords(line);
    if (words.front() != "file") {
      variables += Variable(words);
      continue;
    }
    TakeWord(words);
    const std::string item = TakeWord(words);
    if (item == "label") label = Element("fileTxt", Element("fileCont", Text(TakeWord(words))));
    if (item == "document") notes += Element("notes", Text(TakeWord(words)));
    if (item == "weight") notes += Note("weight", TakeWord(words));
    if (item == "attr") notes += AttributeNotes(words);
    if (item == "mrset") groups += Group("multipleResp", words);
    if (item == "varset") groups += Group("section", words);
  }
  return "<codeBook xmlns=\"ddi:codebook:2_5\" version=\"2.5\">\n" +
         Element("fileDscr", label + notes) + "\n" + Element("dataDscr", groups + variables) +
         "\n</codeBook>\n";
}

}  // namespace cases
