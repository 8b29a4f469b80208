#include "standalone/Xml/Namespaces.h"

#include <algorithm>

namespace velahost {

namespace {

constexpr std::string_view kXmlns = "xmlns";

bool DeclaresNamespace(std::string_view attribute) {
  return attribute.starts_with(kXmlns) &&
         (attribute.size() == kXmlns.size() || attribute[kXmlns.size()] == ':');
}

}  // namespace

std::optional<Namespaces::Scope> Namespaces::Enter(Scope outer, const char* const* attributes) {
  Scope scope = outer;
  for (; *attributes != nullptr; attributes += 2) {
    if (**attributes != 'x' || !DeclaresNamespace(*attributes)) continue;
    const std::string_view name = *attributes;
    const std::string_view prefix = name.size() == kXmlns.size() ? "" : name.substr(6);
    const std::string_view uri = attributes[1];
    if (Find(scope, prefix) == uri) continue;
    const std::size_t inScope = scope == kOutermost ? 1 : bindings_[scope - 1].inScope + 1;
    if (inScope > kMostInScope) return std::nullopt;
    mostInScope_ = std::max(mostInScope_, inScope);
    bindings_.push_back(
        {std::string(prefix), std::string(uri), IsStandardUri(uri), scope, inScope});
    scope = static_cast<Scope>(bindings_.size());
  }
  return scope;
}

void Namespaces::Adopt(Scope scope, std::string_view prefix) {
  adopted_ = Find(scope, prefix);
  for (; scope != kOutermost; scope = bindings_[scope - 1].outer) {
    bindings_[scope - 1].standard = IsStandardUri(bindings_[scope - 1].uri);
  }
}

bool Namespaces::IsStandard(Scope scope, std::string_view prefix) const {
  const Binding* const binding = BindingOf(scope, prefix);
  return binding == nullptr || binding->standard;
}

std::string_view Namespaces::Find(Scope scope, std::string_view prefix) const {
  const Binding* const binding = BindingOf(scope, prefix);
  return binding == nullptr ? std::string_view() : binding->uri;
}

std::pair<Namespaces, Namespaces::Scope> Namespaces::Only(Scope scope) const {
  std::pair<Namespaces, Scope> only(Namespaces(*vocabulary_), kOutermost);
  only.first.adopted_ = adopted_;
  std::vector<Binding>& bindings = only.first.bindings_;
  for (; scope != kOutermost; scope = bindings_[scope - 1].outer) {
    bindings.push_back(bindings_[scope - 1]);
  }
  std::reverse(bindings.begin(), bindings.end());
  for (std::size_t i = 0; i < bindings.size(); ++i) bindings[i].outer = static_cast<Scope>(i);
  only.second = static_cast<Scope>(bindings.size());
  return only;
}

const Namespaces::Binding* Namespaces::BindingOf(Scope scope, std::string_view prefix) const {
  while (scope != kOutermost) {
    const Binding& binding = bindings_[scope - 1];
    if (binding.prefix == prefix) return &binding;
    scope = binding.outer;
  }
  return nullptr;
}

bool Namespaces::IsStandardUri(std::string_view uri) const {
  return uri.empty() || uri == adopted_ || vocabulary_->HasNamespace(uri);
}

std::string_view PrefixOf(std::string_view name) {
  const std::size_t colon = name.find(':');
  return colon == std::string_view::npos ? std::string_view() : name.substr(0, colon);
}

std::string_view LocalNameOf(std::string_view name) {
  const std::size_t colon = name.find(':');
  return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

}  // namespace velahost
