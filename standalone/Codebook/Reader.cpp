#include "standalone/Codebook/Reader.h"

#include <string>
#include <utility>

#include "standalone/Codebook/Documentation.h"
#include "standalone/Codebook/Elements.h"
#include "standalone/Codebook/FileDescription.h"
#include "standalone/Codebook/Sets.h"
#include "standalone/Codebook/Variables.h"
#include "standalone/Text/Utf8.h"

namespace velahost {

CodebookReader::CodebookReader(std::string_view text, OpenFor use, const std::string& language,
                               Namespaces& namespaces)
    : namespaces_(&namespaces), text_{text, {}}, use_(use), labels_({.run = language}) {}

CodebookReader::CodebookReader(std::string_view text, OpenFor use,
                               const velahost::Languages& languages, Namespaces::Scope scope)
    : text_{text, {}},
      use_(use),
      labels_(languages),
      stack_{{0, element::codeBook, false, scope}, {0, element::dataDscr, false, scope}} {}

void CodebookReader::Start(const XmlStart& start) {
  if (stack_.empty() && LocalNameOf(start.name) != "codeBook") {
    if (outside_++ == 0) rootName_ = start.name;
    return;
  }
  if (!stack_.empty() && start.element == element::codeBook) RefuseSecond(start);
  if (passedOver_ > 0 || !Keeps()) {
    ++passedOver_;
    return;
  }
  text_.encoding = start.encoding;
  if (stack_.empty()) StartCodebook(start);
  const ElementName name = stack_.empty() ? ElementName{element::codeBook} : start.element;
  const auto place = static_cast<ElementPlace>(reading_.elements.size());
  if (gatheredDepth_ == 0 && IsGathered(name)) gatheredDepth_ = stack_.size() + 1;
  reading_.elements.push_back({.begin = static_cast<std::uint32_t>(start.begin),
                               .contentBegin = static_cast<std::uint32_t>(start.end),
                               .contentEnd = 0,
                               .end = 0,
                               .count = 1,
                               .name = name,
                               .hasAttributes = *start.attributes != nullptr});
  stack_.push_back({place, name, true, start.scope});
}

void CodebookReader::StartCodebook(const XmlStart& start) {
  if (codebookBegin_) RefuseSecond(start);
  codebookBegin_ = start.begin;
  namespaces_->Adopt(start.scope, PrefixOf(start.name));
  for (const char* const* attribute = start.attributes; *attribute != nullptr; attribute += 2) {
    if (std::string_view(*attribute) == "xml:lang") labels_.SetDocumentLanguage(attribute[1]);
  }
}

void CodebookReader::RefuseSecond(const XmlStart& start) const {
  throw XmlError("line " + LineOf(start.begin) + ": the document has another codeBook on line " +
                 LineOf(codebookBegin_.value_or(0)) + ": give a document with one");
}

void CodebookReader::RequireCodebook() const {
  if (codebookBegin_) return;
  throw XmlError("the document has no codebook: its root element is " + rootName_ +
                 ", and no codeBook stands in it");
}

std::string CodebookReader::LineOf(std::size_t position) const {
  return std::to_string(LineCounter(text_.text).LineOf(position));
}

void CodebookReader::End(std::size_t begin, std::size_t end) {
  if (passedOver_ > 0) {
    --passedOver_;
    return;
  }
  if (stack_.empty()) {
    --outside_;
    return;
  }
  const Open open = stack_.back();
  const bool endsGathered = stack_.size() == gatheredDepth_;
  stack_.pop_back();
  const auto contentEnd = static_cast<std::uint32_t>(begin);
  const auto elementEnd = static_cast<std::uint32_t>(end);
  const auto elementCount = static_cast<std::uint32_t>(reading_.elements.size());
  if (!open.beginsHere) {
    reading_.ends.push_back({contentEnd, elementEnd, elementCount});
    return;
  }
  ElementExtent& element = reading_.elements[open.place];
  element.contentEnd = contentEnd;
  element.end = elementEnd;
  element.count = elementCount - open.place;
  if (!endsGathered) return;
  gatheredDepth_ = 0;
  ReadGathered(open.place);
  if (open.name == element::var && begin != end) variableEnd_ = {begin, end};
}

Reading CodebookReader::Take() {
  for (Open& open : stack_) {
    if (open.beginsHere) reading_.open.push_back(open.place);
    open.beginsHere = false;
  }
  reading_.labelLanguage = labels_.FirstLanguage();
  reading_.languages = labels_.Languages();
  return std::exchange(reading_, {});
}

bool CodebookReader::StandsAfterVariable(std::size_t position) const {
  return passedOver_ == 0 && stack_.size() == 2 && stack_.back().name == element::dataDscr &&
         variableEnd_.end == position;
}

// Whether what starts now is kept: the root, its children, those of dataDscr, and what is gathered.
bool CodebookReader::Keeps() const {
  return stack_.size() < 2 || gatheredDepth_ > 0 ||
         (stack_.size() == 2 && stack_.back().name == element::dataDscr);
}

// Whether the element that starts now is gathered with what is in it.
bool CodebookReader::IsGathered(ElementName name) const {
  if (stack_.size() == 1) return name == element::fileDscr;
  return stack_.size() == 2 && (name == element::var || name == element::varGrp);
}

void CodebookReader::ReadGathered(ElementPlace place) {
  const Element element(text_, reading_.elements[place]);
  switch (element.Name()) {
    case element::fileDscr:
      reading_.files.push_back(
          {place, texts_.Add(Trim(element.Attribute("ID"))), ReadFileDescription(element, texts_)});
      break;
    case element::varGrp:
      reading_.groups.push_back({place, stack_.back().scope, ReadGroup(element, labels_, texts_)});
      break;
    default:
      reading_.variables.push_back(
          {place, stack_.back().scope, ReadVariable(element, variables_, labels_, texts_)});
  }
  if (use_ == OpenFor::Reading) DropAllButCarried(place);
}

// Drops what is in an element, but for the children that may be carried to another document.
void CodebookReader::DropAllButCarried(ElementPlace place) {
  std::vector<ElementExtent>& elements = reading_.elements;
  const std::size_t end = place + elements[place].count;
  std::size_t kept = place + 1;
  for (std::size_t child = kept; child < end;) {
    const std::size_t next = child + elements[child].count;
    if (MayBeCarried(elements[child].name)) {
      elements[kept] = elements[child];
      elements[kept++].count = 1;
    }
    child = next;
  }
  elements.resize(kept);
  elements[place].count = static_cast<std::uint32_t>(kept - place);
}

}  // namespace velahost
