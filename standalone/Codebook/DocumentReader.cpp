#include "standalone/Codebook/DocumentReader.h"

#include <memory>
#include <string>
#include <utility>

#include "standalone/Codebook/OpenCodebook.h"
#include "standalone/Text/Utf8.h"

namespace velahost {

namespace {

using Node = XmlTree::Node;

// Elements that are deeper than this stand in a tree, or nobody reads them.
constexpr std::size_t kDeepest = 3;
// No tree begins another element behind so many, or so many bytes of text: larger trees take long
// to grow.
constexpr std::size_t kElementsInTree = std::size_t{1} << 14;
constexpr std::size_t kTextInTree = std::size_t{1} << 24;

}  // namespace

DocumentReader::DocumentReader(CodebookReading& reading)
    : reading_(reading), codebook_(*reading.codebook) {}

DocumentReader::DocumentReader(CodebookReading& reading, Namespaces::Scope scope)
    : reading_(reading),
      codebook_(*reading.codebook),
      depth_(2),
      scopes_(2, scope),
      path_({Element::codeBook, Element::dataDscr}),
      begins_(2) {
  codebook_.dataDescriptions.emplace_back();
}

void DocumentReader::Start(const XmlStart& start) {
  if (inTree_) {
    tree_->Start(start);
    return;
  }
  const Namespaces::Scope around = scopes_.empty() ? Namespaces::kOutermost : scopes_.back();
  if (++depth_ > kDeepest) return;
  scopes_.push_back(start.scope);
  if (depth_ == 1) return StartRoot(start);
  const Element parent = path_.back();
  path_.push_back(start.element);
  begins_.push_back(start.begin);
  inTree_ = parent == Element::codeBook
                ? start.element == Element::fileDscr
                : parent == Element::dataDscr &&
                      (start.element == Element::var || start.element == Element::varGrp);
  if (inTree_) {
    StartTree(start);
  } else if (parent == Element::codeBook && start.element == Element::dataDscr) {
    Codebook::Container container;
    container.begin = start.begin;
    container.contentBegin = start.end;
    container.scope = around;
    container.element = Element::dataDscr;
    codebook_.dataDescriptions.push_back(container);
  }
}

void DocumentReader::End(std::size_t begin, std::size_t end) {
  const bool endsTree = inTree_;
  if (inTree_) {
    tree_->End(begin, end);
    if (!tree_->Complete()) return;
    inTree_ = false;
  }
  if (depth_-- > kDeepest) return;
  scopes_.pop_back();
  const Element element = path_.back();
  path_.pop_back();
  const std::size_t elementBegin = begins_.back();
  begins_.pop_back();
  const auto close = [&](Codebook::Container& container) {
    container.contentEnd = begin;
    container.end = end;
  };
  if (path_.empty()) return close(codebook_.root);
  if (endsTree) ReadTree({elementBegin, end, scopes_.back()});
  const Codebook::Place place = {elementBegin, end, Namespaces::kOutermost};
  if (path_.back() == Element::codeBook) {
    codebook_.root.last[element] = place;
    if (element == Element::dataDscr) close(codebook_.dataDescriptions.back());
  } else if (path_.back() == Element::dataDscr) {
    codebook_.dataDescriptions.back().last[element] = place;
    if (element == Element::var && begin != end) variableEnd_ = {begin, end};
  }
}

bool DocumentReader::StandsBehindVariable(std::size_t position) const {
  return depth_ == 2 && path_.back() == Element::dataDscr && variableEnd_.end == position;
}

void DocumentReader::StartRoot(const XmlStart& start) {
  if (LocalNameOf(start.name) != "codeBook") {
    throw CodebookError(codebook_.path + ": line " +
                        std::to_string(LineCounter(codebook_.text).LineOf(start.begin)) +
                        ": the document is no codebook: its root element is " + start.name +
                        ", not codeBook");
  }
  codebook_.namespaces.Adopt(start.scope, PrefixOf(start.name));
  codebook_.root.begin = start.begin;
  codebook_.root.contentBegin = start.end;
  codebook_.root.element = Element::codeBook;
  path_.push_back(Element::codeBook);
  begins_.push_back(start.begin);
}

void DocumentReader::StartTree(const XmlStart& start) {
  if (reading_.use == OpenFor::Writing) {
    if (tree_ == &read_ || tree_->ElementCount() >= kElementsInTree ||
        tree_->TextSize() >= kTextInTree) {
      auto next = std::make_unique<XmlTree>();
      tree_ = next.get();
      codebook_.trees.push_back(std::move(next));
    }
  } else {
    tree_->Clear();
  }
  tree_->Start(start);
}

void DocumentReader::ReadTree(const Codebook::Place& place) {
  const XmlTree& tree = *tree_;
  const Node root = tree.Root();
  const Codebook::Tree kept =
      tree_ == &read_ ? Codebook::Tree{place} : Codebook::Tree{place, tree_, root};
  const auto id = [&] { return std::string(Trim(tree.Attribute(root, "ID").value_or(""))); };
  switch (tree.ElementOf(root)) {
    case Element::fileDscr:
      codebook_.files.push_back({kept, id()});
      reading_.files.push_back(ReadFile(tree, root));
      break;
    case Element::varGrp:
      codebook_.groups.push_back({kept, id(), 0, ReadSet(tree, root), {}});
      reading_.groupMembers.emplace_back(tree.Attribute(root, "var").value_or(""));
      break;
    default:
      VariableReading reading = ReadVariable(tree, root);
      codebook_.variables.push_back(
          {kept, std::move(reading.id), reading.variable->name, reading.weights});
      reading_.variables.push_back(std::move(reading));
  }
}

}  // namespace velahost
