#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "standalone/Dictionary/LabelLanguages.h"
#include "standalone/Text/Text.h"
#include "standalone/Xml/Document.h"
#include "standalone/Xml/Editor.h"
#include "standalone/Xml/NewElement.h"

// Labels: the labl elements of a var, a catgry or a varGrp, of which there may be one for each
// language. Which of them is the label is decided here alone.

namespace velahost {

// The languages of a document's labels in a run.
struct Languages {
  std::string run = {};       // that of the labels that count; empty: none
  std::string document = {};  // codeBook/@xml:lang, that of a labl which states none; empty: none
  bool hasOldName = false;    // a labl states its language as xml-lang
};

// Whether two languages are the same, letter case aside; whether they are before the first hyphen.
bool IsSameLanguage(std::string_view a, std::string_view b);
bool IsSamePrimaryLanguage(std::string_view a, std::string_view b);

// The language that an element or a tag states; empty for none.
MarkupText StatedLanguage(Element element);
std::string_view StatedLanguage(const StartTag& tag);

// The language that the first label of a variable in a document seems to have, found without
// parsing it: only the reading of the document shows whether that is so.
std::string GuessLabelLanguage(std::string_view text);

// The label of an element in the run's language, or without one the first; null where there is
// none. One without text is none.
Element FindLabel(Element parent, const Languages& languages);

// Reads labels of one document, one after the other.
class LabelReader {
 public:
  explicit LabelReader(velahost::Languages languages) : languages_(std::move(languages)) {}

  const velahost::Languages& Languages() const { return languages_; }
  void SetDocumentLanguage(std::string_view language) { languages_.document = language; }

  Element Find(Element parent) const { return FindLabel(parent, languages_); }
  // The same in whatever language.
  static Element FindFirst(Element parent) { return FindLabel(parent, {}); }
  // The languages of a label of the parent; of a null label, the labels in all languages.
  LabelLanguages LanguagesOf(Element parent, Element label, TextArena& texts);

  // The language of the first label of a variable; nothing where no label was read yet.
  const std::optional<std::string>& FirstLanguage() const { return firstLanguage_; }
  // Looks for the first label of a variable.
  void LookForFirst(Element var);

 private:
  velahost::Languages languages_;
  std::optional<std::string> firstLanguage_;
  LabelLanguages lastOwn_;  // of the last label in one language: most have the same
};

// Edits an element so that its label in the run's language is the text, which had these languages
// where it comes from. level is that of a new labl: "variable" or "category"; empty for none.
void WriteLabel(Element parent, std::string_view level, const Text& text,
                const LabelLanguages& from, const Languages& languages, Editor& editor);
// Takes every labl out of an element that could be read as its label.
void RemoveLabels(Element parent, const Languages& languages, Editor& editor);
// Whether a labl could be read as the label.
bool MayBeLabel(Element labl, const Languages& languages);

// Adds a label to a new element, and the same label in other languages. No text: only those.
void AddLabels(NewElement& parent, std::string_view level, std::optional<std::string_view> text,
               const LabelLanguages& from, const Languages& languages);
// The same for a name that stands in a labl, in whatever language.
void AddNamingLabels(NewElement& parent, const Text& name, const LabelLanguages& from,
                     const Languages& languages);

}  // namespace velahost
