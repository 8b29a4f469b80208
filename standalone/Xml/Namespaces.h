#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "standalone/Xml/Vocabulary.h"

namespace velahost {

// The namespace declarations of a document: scopes that open where an element declares one. An
// element belongs to the vocabulary when its namespace is one of the vocabulary's, that of the root
// element, or none; a prefix that nothing declares counts as none.
class Namespaces {
 public:
  // A scope is its innermost declaration, counted from 1.
  using Scope = std::uint32_t;

  // The vocabulary lives as long as this object and its copies.
  explicit Namespaces(const Vocabulary& vocabulary) : vocabulary_(&vocabulary) {}

  const Vocabulary& Words() const { return *vocabulary_; }

  // The scope around the root: nothing is declared.
  static constexpr Scope kOutermost = 0;

  // A look-up walks the declarations in scope: no more than this many are let in.
  static constexpr std::size_t kMostInScope = 1000;

  // The scope inside an element of the scope: the same if none of the attributes (names and values
  // in turn, ended by null) declares a namespace. Nothing if too many would be in scope.
  std::optional<Scope> Enter(Scope outer, const char* const* attributes);
  // Makes the namespace that the prefix has in the scope one of the vocabulary's, in every scope
  // opened from now on and in this one.
  void Adopt(Scope scope, std::string_view prefix);

  bool IsStandard(Scope scope, std::string_view prefix) const;
  // The namespace that a prefix is bound to; empty for none.
  std::string_view Find(Scope scope, std::string_view prefix) const;

  // The namespace that was adopted; empty for none.
  std::string_view AdoptedUri() const { return adopted_; }
  // The most declarations that have been in scope at one place.
  std::size_t MostInScope() const { return mostInScope_; }

  // The declarations in a scope alone, and the scope among them.
  std::pair<Namespaces, Scope> Only(Scope scope) const;

 private:
  struct Binding {
    std::string prefix;
    std::string uri;
    bool standard;
    Scope outer;
    std::size_t inScope;  // with those around it
  };
  // The declaration of the prefix; null for none.
  const Binding* BindingOf(Scope scope, std::string_view prefix) const;
  bool IsStandardUri(std::string_view uri) const;

  const Vocabulary* vocabulary_;
  std::vector<Binding> bindings_;
  std::size_t mostInScope_ = 0;
  std::string adopted_;
};

// The prefix of a name, without its colon; empty if there is none.
std::string_view PrefixOf(std::string_view name);
std::string_view LocalNameOf(std::string_view name);

}  // namespace velahost
