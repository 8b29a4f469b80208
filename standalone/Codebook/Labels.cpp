#include "standalone/Codebook/Labels.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

#include "standalone/Codebook/Elements.h"
#include "standalone/Codebook/Notes.h"
#include "standalone/Text/Utf8.h"

namespace velahost {
namespace {

constexpr std::string_view kAttribute = "xml:lang";
constexpr std::string_view kOldAttribute = "xml-lang";

// How well a labl fits the run's language: the less, the better.
enum Fit : int { kExact, kPrimary, kUnstated, kOther };

// The language of a labl: the one that it states, else the document's.
std::string_view LanguageOf(const MarkupText& stated, const Languages& languages) {
  return stated.View().empty() ? std::string_view(languages.document) : stated.View();
}

Fit FitOf(Element labl, const Languages& languages) {
  const MarkupText stated = StatedLanguage(labl);
  const std::string_view language = LanguageOf(stated, languages);
  if (language.empty()) return kUnstated;
  if (IsSameLanguage(language, languages.run)) return kExact;
  return IsSamePrimaryLanguage(language, languages.run) ? kPrimary : kOther;
}

// The labl with or without text that fits best; null where none does.
Element FindBest(Element parent, const Languages& languages, bool hasText) {
  Element best;
  Fit bestFit = kOther;
  for (const Element labl : parent.All(element::labl)) {
    if (HasText(labl.Content()) != hasText) continue;
    if (languages.run.empty()) return labl;
    const Fit fit = FitOf(labl, languages);
    if (fit == kExact) return labl;
    if (fit >= bestFit) continue;
    best = labl;
    bestFit = fit;
  }
  return best;
}

NewElement NewLabel(std::string_view level, std::string_view language, std::string_view text,
                    const Languages& languages) {
  NewElement labl{.element = element::labl, .text = std::string(text)};
  if (!level.empty()) labl.attributes.emplace_back("level", level);
  if (!language.empty() && !IsSameLanguage(language, languages.document)) {
    labl.attributes.emplace_back(languages.hasOldName ? kOldAttribute : kAttribute, language);
  }
  return labl;
}

// The language of a new label in this document whose text has that one where it comes from.
std::string_view NewLanguage(const LabelLanguages& from, const Languages& languages) {
  return languages.run.empty() ? from.Own() : std::string_view(languages.run);
}

// How far a guess looks for the begin of a tag and for its end. Nothing is known yet of whether the
// text is well formed, so that it may look like tags over and over, none of which ends.
constexpr std::size_t kLongestPrefix = 64;
constexpr std::size_t kLongestTag = 4096;

// What looks like a start tag in a text.
struct GuessedTag {
  std::size_t begin;  // in the text
  std::string_view tag;
};

// Where the start tag seems to begin whose name, without a prefix, stands at a place; nothing where
// it is no name of a start tag.
std::optional<std::size_t> GuessBegin(std::string_view text, std::size_t name) {
  if (name == 0) return std::nullopt;
  if (text[name - 1] == '<') return name - 1;
  if (text[name - 1] != ':') return std::nullopt;
  const std::size_t from = name - std::min(name, kLongestPrefix);
  const std::size_t before = text.substr(from, name - from).find_last_of("<>/'\" ");
  if (before == std::string_view::npos || text[from + before] != '<') return std::nullopt;
  return from + before;
}

// The first start tag of that name behind a place. That one decides: where it does not end soon,
// there is none.
std::optional<GuessedTag> GuessTag(std::string_view text, std::string_view name, std::size_t from) {
  for (std::size_t at = text.find(name, from); at != std::string_view::npos;
       at = text.find(name, at + 1)) {
    const std::optional<std::size_t> begin = GuessBegin(text, at);
    if (!begin) continue;
    const std::string_view rest = text.substr(*begin, kLongestTag);
    const std::string_view tag = rest.substr(0, TagEnd(rest));
    return tag.ends_with('>') ? std::optional(GuessedTag{*begin, tag}) : std::nullopt;
  }
  return std::nullopt;
}

// The value of an attribute in what looks like a tag; empty for none.
std::string GuessValue(std::string_view tag, std::string_view name) {
  const std::size_t at = tag.find(name);
  if (at == std::string_view::npos) return {};
  const std::size_t quote = tag.find_first_of("'\"", at);
  if (quote == std::string_view::npos) return {};
  const std::string_view value = tag.substr(quote + 1);
  return std::string(value.substr(0, value.find(tag[quote])));
}

}  // namespace

bool IsSameLanguage(std::string_view a, std::string_view b) { return EqualIgnoringCase(a, b); }

bool IsSamePrimaryLanguage(std::string_view a, std::string_view b) {
  return EqualIgnoringCase(a.substr(0, a.find('-')), b.substr(0, b.find('-')));
}

MarkupText StatedLanguage(Element element) {
  MarkupText stated = element.Attribute(kAttribute);
  return stated.View().empty() ? element.Attribute(kOldAttribute) : stated;
}

std::string GuessLabelLanguage(std::string_view text) {
  const std::optional<GuessedTag> var = GuessTag(text, "var ", 0);
  if (!var) return {};
  const std::optional<GuessedTag> labl = GuessTag(text, "labl", var->begin);
  if (!labl) return {};
  for (const std::string_view name : {kAttribute, kOldAttribute}) {
    if (std::string stated = GuessValue(labl->tag, name); !stated.empty()) return stated;
  }
  const std::optional<GuessedTag> codeBook = GuessTag(text, "codeBook", 0);
  return codeBook ? GuessValue(codeBook->tag, kAttribute) : std::string();
}

std::string_view StatedLanguage(const StartTag& tag) {
  for (const std::string_view name : {kAttribute, kOldAttribute}) {
    const auto attribute = tag.Find(name);
    if (attribute && attribute->valueBegin != attribute->valueEnd) return tag.ValueOf(*attribute);
  }
  return {};
}

Element FindLabel(Element parent, const Languages& languages) {
  return FindBest(parent, languages, true);
}

LabelLanguages LabelReader::LanguagesOf(Element parent, Element label, TextArena& texts) {
  const auto languageOf = [this](Element labl) {
    const MarkupText stated = StatedLanguage(labl);
    languages_.hasOldName |= !stated.View().empty() && labl.Attribute(kAttribute).View().empty();
    return std::string(LanguageOf(stated, languages_));
  };
  std::vector<std::pair<std::string, std::string>> others;
  for (const Element labl : parent.All(element::labl)) {
    if (labl == label || !HasText(labl.Content())) continue;
    others.emplace_back(languageOf(labl), LineOf(labl));
  }
  const std::string own = label ? languageOf(label) : std::string();
  if (others.empty()) {
    if (own.empty()) return {};
    if (lastOwn_.Own() != own) lastOwn_ = LabelLanguages(own, {}, texts);
    return lastOwn_;
  }
  std::vector<LabelLanguages::Translation> translations;
  translations.reserve(others.size());
  for (const auto& [language, text] : others) translations.push_back({language, text});
  return {own, translations, texts};
}

void LabelReader::LookForFirst(Element var) {
  if (firstLanguage_) return;
  for (const Element labl : var.All(element::labl)) {
    if (!HasText(labl.Content())) continue;
    firstLanguage_ = LanguageOf(StatedLanguage(labl), languages_);
    return;
  }
}

void WriteLabel(Element parent, std::string_view level, const Text& text,
                const LabelLanguages& from, const Languages& languages, Editor& editor) {
  if (const Element label = FindLabel(parent, languages)) {
    if (LineOf(label) != text.View()) editor.SetText(label, text);
  } else if (const Element placeholder = FindBest(parent, languages, false)) {
    editor.SetText(placeholder, text);
  } else {
    editor.Insert(parent, NewLabel(level, NewLanguage(from, languages), text, languages));
  }
}

bool MayBeLabel(Element labl, const Languages& languages) {
  return languages.run.empty() || FitOf(labl, languages) != kOther;
}

void RemoveLabels(Element parent, const Languages& languages, Editor& editor) {
  for (const Element labl : parent.All(element::labl)) {
    if (MayBeLabel(labl, languages)) editor.Remove(labl);
  }
}

void AddLabels(NewElement& parent, std::string_view level, std::optional<std::string_view> text,
               const LabelLanguages& from, const Languages& languages) {
  if (text) {
    parent.children.push_back(NewLabel(level, NewLanguage(from, languages), *text, languages));
  }
  for (const auto& [language, translation] : from.Others()) {
    parent.children.push_back(NewLabel(level, language, translation, languages));
  }
}

void AddNamingLabels(NewElement& parent, const Text& name, const LabelLanguages& from,
                     const Languages& languages) {
  const bool isInOther = !from.Own().empty() && !IsSamePrimaryLanguage(from.Own(), languages.run);
  parent.children.push_back(
      NewLabel("", isInOther ? from.Own() : NewLanguage(from, languages), name, languages));
  AddLabels(parent, "", std::nullopt, from, languages);
}

}  // namespace velahost
