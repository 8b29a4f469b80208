#include "standalone/Codebook/Namespaces.h"

#include <algorithm>

namespace velahost {

namespace {

constexpr std::string_view kXmlns = "xmlns";

bool DeclaresNamespace(std::string_view attribute) {
  return attribute.starts_with(kXmlns) &&
         (attribute.size() == kXmlns.size() || attribute[kXmlns.size()] == ':');
}

}  // namespace

Namespaces::Namespaces() : scopes_(1) {}

Namespaces::Scope Namespaces::Enter(Scope outer, const char* const* attributes) {
  Scope scope = outer;
  for (; *attributes != nullptr; attributes += 2) {
    if (**attributes != 'x' || !DeclaresNamespace(*attributes)) continue;
    const std::string_view name = *attributes;
    const std::string_view prefix = name.size() == kXmlns.size() ? "" : name.substr(6);
    const std::string_view uri = attributes[1];
    if (Find(scope, prefix) == uri) continue;
    if (scope == outer) {
      scope = scopes_.size();
      scopes_.push_back(std::vector<Binding>(scopes_[outer]));
    }
    auto& bindings = scopes_[scope];
    std::erase_if(bindings, [&](const Binding& binding) { return binding.prefix == prefix; });
    bindings.push_back({std::string(prefix), std::string(uri), IsStandardUri(uri)});
  }
  return scope;
}

void Namespaces::Adopt(Scope scope, std::string_view prefix) {
  adopted_ = Find(scope, prefix);
  for (auto& binding : scopes_[scope]) binding.standard = IsStandardUri(binding.uri);
}

bool Namespaces::IsStandard(Scope scope, std::string_view prefix) const {
  for (const auto& binding : scopes_[scope]) {
    if (binding.prefix == prefix) return binding.standard;
  }
  return true;
}

std::string_view Namespaces::Find(Scope scope, std::string_view prefix) const {
  for (const auto& binding : scopes_[scope]) {
    if (binding.prefix == prefix) return binding.uri;
  }
  return {};
}

bool Namespaces::IsStandardUri(std::string_view uri) const {
  return uri.empty() || uri == adopted_ || uri.starts_with("ddi:codebook:") ||
         uri.starts_with("http://www.icpsr.umich.edu/DDI");
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
