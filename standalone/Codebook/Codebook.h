#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/Data.h"
#include "standalone/Codebook/Elements.h"
#include "standalone/Codebook/Encoding.h"
#include "standalone/Codebook/Namespaces.h"
#include "standalone/Codebook/XmlTree.h"

namespace velahost {

// Counts the lines of a text, for positions that ascend.
class LineCounter {
 public:
  explicit LineCounter(std::string_view text) : text_(text) {}

  // The line, from 1, in which a byte stands. REQUIRES: none before the last position asked for.
  std::size_t LineOf(std::size_t position);

 private:
  std::string_view text_;
  std::size_t counted_ = 0;
  std::size_t line_ = 1;
};

// A document in memory: its bytes, and where in them the elements stand that a dictionary is made
// of. Once read it is not changed.
class Codebook {
 public:
  // An element of the document: its bytes, and the namespaces in scope around it.
  struct Place {
    std::size_t begin = 0;
    std::size_t end = 0;
    Namespaces::Scope scope = Namespaces::kOutermost;
  };
  // A place with its element as a tree; null in a codebook that was opened to be read only.
  struct Tree : Place {
    const XmlTree* tree = nullptr;
    XmlTree::Node root = XmlTree::kNone;
  };
  // A fileDscr. A document without one has one file with an empty place.
  struct File : Tree {
    std::string id;
  };
  struct Variable : Tree {
    std::string id;
    std::string name;
    bool weights = false;  // wgt="wgt"
  };
  // A varGrp, with the set that it reads as, save its members' names: these are the names of the
  // variables at the places in `members`.
  struct Group : Tree {
    std::string id;
    std::size_t file = 0;
    VariableSet set;
    std::vector<int> members;

    // A group without a name, a label and an ID is no set: nothing could tell it from others.
    bool IsSet() const { return !set.name.empty(); }
  };
  // An element whose children are read one by one: the root and each dataDscr.
  struct Container : Place {
    Element element = Element::Other;
    std::size_t contentBegin = 0;
    std::size_t contentEnd = 0;
    std::map<Element, Place> last;  // the last child of each kind
  };

  std::vector<std::string> MemberNames(const Group& group) const;

  // The bytes of a place.
  std::string_view Bytes(const Place& place) const {
    return std::string_view(text).substr(place.begin, place.end - place.begin);
  }

  std::string path;
  std::string text;
  Encoding encoding = Encoding::Utf8;
  Namespaces namespaces;
  Container root;
  std::vector<Container> dataDescriptions;
  std::vector<File> files;
  std::vector<Variable> variables;
  std::vector<Group> groups;
  std::vector<std::unique_ptr<const XmlTree>> trees;  // of the elements that have one
};

}  // namespace velahost
