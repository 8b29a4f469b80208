#pragma once

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/Codebook/CarriedMarkup.h"
#include "standalone/Codebook/FileDescription.h"
#include "standalone/Codebook/Labels.h"
#include "standalone/Codebook/Sets.h"
#include "standalone/Codebook/Variables.h"
#include "standalone/Text/Hash.h"
#include "standalone/Xml/Document.h"
#include "standalone/Xml/Namespaces.h"

namespace velahost {

// A place among the elements of a document that are kept.
using ElementPlace = std::uint32_t;

// What was read of a document, or of a part of one: the elements that are kept, and what stands in
// those that describe files, variables and sets.
struct Reading {
  struct File {
    ElementPlace place;
    Text id;
    FileReading file;
  };
  struct Variable {
    ElementPlace place;
    Namespaces::Scope scope;  // around the var
    VariableReading variable;
  };
  struct Group {
    ElementPlace place;
    Namespaces::Scope scope;  // around the varGrp
    GroupReading group;
  };
  // Where an element ends that began in another part, and how many elements of this part stand
  // before that.
  struct End {
    std::uint32_t contentEnd;
    std::uint32_t end;
    std::uint32_t elementsBefore;
  };

  std::vector<ElementExtent> elements;
  std::vector<File> files;
  std::vector<Variable> variables;
  std::vector<Group> groups;
  // The language of the first label of a variable; nothing where there is none.
  std::optional<std::string> labelLanguage;
  Languages languages;
  // The elements that begin here and do not end here, outermost first.
  std::vector<ElementPlace> open;
  // The ends of elements that do not begin here, innermost first.
  std::vector<End> ends;

  // Makes room for what was read of the next parts.
  void Reserve(const std::vector<Reading>& next);
  // Adds what was read of the next part of the document.
  void Append(Reading&& next);
};

// A document with what the data files in it are described by.
class Codebook {
 public:
  struct File {
    Element element;  // a fileDscr; null in a document without one, which has one file
    Text id;
  };
  struct Variable {
    Element element;                                   // a var
    Namespaces::Scope scope = Namespaces::kOutermost;  // around it
    Text id;
    bool weights = false;  // wgt="wgt"
  };
  struct Group {
    Element element;                                   // a varGrp
    Namespaces::Scope scope = Namespaces::kOutermost;  // around it
    GroupReading reading;
    bool isOfFile = false;  // it belongs to the data file that was opened
  };

  Codebook(std::string documentPath, Bytes bytes, Encoding encoding, Namespaces namespaces,
           std::vector<ElementExtent> elements, Languages ofLabels)
      : path(std::move(documentPath)),
        document(std::move(bytes), encoding, std::move(namespaces), std::move(elements)),
        languages(std::move(ofLabels)) {}

  // The dataDscr that a variable or group stands in; of a null element the first, null if there is
  // none.
  Element DescriptionAround(Element child) const;
  // The place of the variable, or of the group, of that ID, the first of several; nothing if there
  // is none. May be called on several threads at once.
  std::optional<std::size_t> VariableOfId(std::string_view id) const {
    return variablesById_.Find(variables, id, [](const Variable& of) { return of.id.View(); });
  }
  std::optional<std::size_t> GroupOfId(std::string_view id) const {
    return groupsById_.Find(groups, id, [](const Group& of) { return of.reading.id.View(); });
  }
  // The place in a dataDscr; of a null one, that in the one that will be made in the root.
  MarkupPlace PlaceAround(Element description) const;

  const std::string path;
  const Document document;
  const Languages languages;
  std::vector<File> files;
  std::vector<Variable> variables;
  std::vector<Group> groups;

 private:
  // Places by ID, found when the first is asked for.
  class Index {
   public:
    template <class Item, class IdOf>
    std::optional<std::size_t> Find(const std::vector<Item>& items, std::string_view id,
                                    IdOf idOf) const {
      std::call_once(isMade_, [&] {
        for (std::size_t i = 0; i < items.size(); ++i) {
          if (!idOf(items[i]).empty()) places_.emplace(idOf(items[i]), i);
        }
      });
      const auto found = places_.find(id);
      return found == places_.end() ? std::nullopt : std::optional(found->second);
    }

   private:
    mutable std::once_flag isMade_;
    mutable ViewMap<std::size_t> places_;
  };
  Index variablesById_;
  Index groupsById_;
};

}  // namespace velahost
