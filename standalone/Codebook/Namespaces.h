#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace velahost {

// The namespace declarations of a document: scopes that open where an element declares one. An
// element belongs to the standard when its namespace is one of the standard's, that of the root
// element, or none; a prefix that nothing declares counts as none.
class Namespaces {
 public:
  using Scope = std::size_t;

  // The scope around the root: nothing is declared.
  static constexpr Scope kOutermost = 0;

  Namespaces();

  // The scope inside an element of the scope: the same if none of the attributes (names and values
  // in turn, ended by null) declares a namespace.
  Scope Enter(Scope outer, const char* const* attributes);
  // Makes the namespace that the prefix has in the scope the standard's, in every scope opened from
  // now on and in this one.
  void Adopt(Scope scope, std::string_view prefix);

  bool IsStandard(Scope scope, std::string_view prefix) const;
  // The namespace that a prefix is bound to; empty for none.
  std::string_view Find(Scope scope, std::string_view prefix) const;

 private:
  struct Binding {
    std::string prefix;
    std::string uri;
    bool standard;
  };
  bool IsStandardUri(std::string_view uri) const;

  std::vector<std::vector<Binding>> scopes_;  // each with what it inherits
  std::string adopted_;
};

// The prefix of a name, without its colon; empty if there is none.
std::string_view PrefixOf(std::string_view name);
std::string_view LocalNameOf(std::string_view name);

}  // namespace velahost
