#include "standalone/Codebook/FileDescription.h"

#include <utility>

#include "standalone/Codebook/Elements.h"
#include "standalone/Codebook/Notes.h"
#include "standalone/Text/Utf8.h"
#include "standalone/Xml/Markup.h"

namespace velahost {
namespace {

// The notes that are documents.
std::vector<Element> FindDocuments(Element fileDscr) {
  std::vector<Element> documents;
  for (const Element note : fileDscr.All(element::notes)) {
    if (!note.Attribute("type").IsThere() && !Trim(note.Text()).empty()) documents.push_back(note);
  }
  return documents;
}

// The text of a document, its line ends as line feeds also where they are written as references.
std::string LinesOf(Element note) {
  const MarkupText content = note.Text();
  const std::string_view text = Trim(content);
  std::string lines;
  lines.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool endsLine = text[i] == '\r';
    if (endsLine && i + 1 < text.size() && text[i + 1] == '\n') continue;
    lines += endsLine ? '\n' : text[i];
  }
  return lines;
}

// The first fileCont with or without text; null if there is none.
Element FindFileCont(Element fileDscr, bool hasText) {
  for (const Element fileTxt : fileDscr.All(element::fileTxt)) {
    for (const Element fileCont : fileTxt.All(element::fileCont)) {
      if (HasText(fileCont.Content()) == hasText) return fileCont;
    }
  }
  return {};
}

NewElement NewDocument(const Text& document) {
  return {.element = element::notes, .text = document.String()};
}

NewElement NewFileCont(const Text& label) {
  return {.element = element::fileCont, .text = label.String()};
}

NewElement NewFileTxt(const Text& label) {
  return {.element = element::fileTxt, .children = {NewFileCont(label)}};
}

// A placeholder without text is filled.
void WriteLabel(Element fileDscr, const Text& label, Editor& editor) {
  Element fileCont = FindFileCont(fileDscr, true);
  if (!fileCont) fileCont = FindFileCont(fileDscr, false);
  if (fileCont) {
    editor.SetText(fileCont, label);
  } else if (const Element fileTxt = fileDscr.Child(element::fileTxt)) {
    editor.Insert(fileTxt, NewFileCont(label));
  } else {
    editor.Insert(fileDscr, NewFileTxt(label));
  }
}

}  // namespace

FileReading ReadFileDescription(Element fileDscr, TextArena& texts) {
  FileReading reading;
  if (const Element fileCont = FindFileCont(fileDscr, true)) {
    reading.label = texts.AddCollapsed(fileCont.Text());
  }
  for (const Element note : FindDocuments(fileDscr)) {
    reading.documents.push_back(texts.Add(LinesOf(note)));
  }
  if (const Element note = FindNote(fileDscr, kWeightNote)) {
    reading.weight = texts.AddCollapsed(note.Text());
  }
  reading.attributes = ReadAttributes(fileDscr, texts);
  return reading;
}

void WriteFileDescription(Element fileDscr, const FileItems& now, FileItemSet changed,
                          Editor& editor) {
  if (changed.Has(FileItem::Label) && now.label) WriteLabel(fileDscr, *now.label, editor);
  if (changed.Has(FileItem::Documents)) {
    WriteInOrder(
        fileDscr, FindDocuments(fileDscr), now.documents,
        [](Element note, const Text& document) { return LinesOf(note) == document.View(); },
        [](Element /*note*/, const Text& /*document*/) {}, NewDocument, editor);
  }
  if (changed.Has(FileItem::Attributes)) WriteAttributes(now.attributes, fileDscr, editor);
}

NewElement NewFileDescription(const FileItems& items, const std::optional<std::string>& weight) {
  NewElement fileDscr{.element = element::fileDscr};
  if (items.label) fileDscr.children.push_back(NewFileTxt(*items.label));
  for (const Text& document : items.documents) {
    fileDscr.children.push_back(NewDocument(document));
  }
  if (weight) fileDscr.children.push_back(NewNote(element::fileDscr, kWeightNote, *weight));
  AddAttributes(items.attributes, fileDscr);
  return fileDscr;
}

}  // namespace velahost
