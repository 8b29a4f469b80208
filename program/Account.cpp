#include "program/Account.h"

#include <fmt/format.h>

#include <cstddef>
#include <nlohmann/json.hpp>

#include "program/DifferenceText.h"
#include "program/Listing.h"
#include "program/Output.h"
#include "standalone/Comparison/Difference.h"

namespace applydic {
namespace {

using Json = nlohmann::ordered_json;
using velahost::Dictionary;
using velahost::Difference;

Json JsonOf(const std::optional<std::string>& text) { return text ? Json(*text) : Json(nullptr); }

std::vector<std::string> AddedNames(const Outcome& outcome) {
  std::vector<std::string> names;
  for (std::size_t i = outcome.changes.firstAdded; i < outcome.dictionary.variables.size(); ++i) {
    names.push_back(outcome.dictionary.variables[i]->name.String());
  }
  return names;
}

std::string CountedText(std::size_t count, const std::string& what) {
  return CountText(count) + " " + what + (count == 1 ? "" : "s");
}

// Where the codebook is, as the rest of a sentence that begins with `start`.
std::string WrittenText(const std::string& start, const Outcome& outcome) {
  if (outcome.written == "-") return start + " to standard output";
  const velahost::Saved& saved = outcome.saved;
  std::string text = start + (saved.isReplaced ? " over " : " to ") + MakeVisible(*outcome.written);
  if (saved.backup) text += "; the old file is " + MakeVisible(*saved.backup);
  return text;
}

Json DiagnosticJson(const velahost::Diagnostic& diagnostic) {
  return {{"level", static_cast<int>(diagnostic.level)},
          {"show", diagnostic.show},
          {"text", diagnostic.message.text},
          {"arguments", diagnostic.message.arguments},
          {"message", diagnostic.shown},
          {"line", diagnostic.place ? Json(diagnostic.place->line) : Json(nullptr)},
          {"column", diagnostic.place ? Json(diagnostic.place->column) : Json(nullptr)},
          {"advice", diagnostic.advice}};
}

}  // namespace

void WriteAccount(const Outcome& outcome, const AccountStyle& style, Page page,
                  const velahost::ByteSink& sink) {
  const Difference difference = DifferenceOf(outcome.changes, outcome.dictionary);
  Listing listing(page, sink, kDifferenceNames,
                  style.isWhole ? Listing::Texts::Whole : Listing::Texts::Brief);
  if (difference.Empty()) listing.Line("Nothing to change");
  ListFileDifference(difference.file, outcome.working.dictionary, outcome.dictionary, listing);
  if (style.hasValues) {
    ListVariableDifferences(difference.changed, SideOf(outcome.working),
                            SideAfter(outcome.working, outcome.dictionary), listing);
  } else {
    ListVariableNames(difference.changed, outcome.dictionary, listing);
  }
  ListCounts("Variables changed", difference.changed, listing);
  ListNames("Variables added", AddedNames(outcome), listing);
  ListNames("Source variables without a namesake", outcome.notPaired, listing);
  ListNames("Working variables not reached", outcome.notReached, listing);
  if (!outcome.saved.notKept.empty()) {
    listing.List("Not kept of the old file: ", outcome.saved.notKept, "");
  }
  listing.Line(outcome.written ? WrittenText("Written", outcome) : "Dry run: nothing written");
}

std::string AccountLine(const Outcome& outcome) {
  const std::size_t changed = outcome.changes.changed.size();
  const std::size_t added = outcome.dictionary.variables.size() - outcome.changes.firstAdded;
  std::vector<std::string> parts;
  if (changed > 0) parts.push_back(CountedText(changed, "variable") + " changed");
  if (added > 0) parts.push_back(CountedText(added, "variable") + " added");
  if (!outcome.changes.file.Empty()) {
    parts.push_back(fmt::format("file: {}", fmt::join(outcome.changes.file.Names(), ", ")));
  }
  const std::string done =
      parts.empty() ? "nothing to change" : fmt::to_string(fmt::join(parts, "; "));
  return done + "; " + (outcome.written ? WrittenText("written", outcome) : "not written");
}

void WriteOutcomeJson(const std::vector<velahost::Diagnostic>& diagnostics,
                      const std::optional<Outcome>& outcome, const velahost::ByteSink& sink) {
  JsonStream json(sink);
  WriteOutcomeMembers(diagnostics, outcome, LabelPairs::Compared, json);
  json.End();
}

void WriteOutcomeMembers(const std::vector<velahost::Diagnostic>& diagnostics,
                         const std::optional<Outcome>& outcome, LabelPairs pairs,
                         JsonStream& json) {
  static const velahost::CodebookFile kNone;
  static const Outcome kNothing = {kNone, {}, {}, {}, {}, {}, {}};
  const Outcome& result = outcome ? *outcome : kNothing;
  const Dictionary& before = result.working.dictionary;
  json.BeginArray("diagnostics");
  for (const velahost::Diagnostic& diagnostic : diagnostics) {
    json.Element(DiagnosticJson(diagnostic));
  }
  json.EndArray();
  WriteChanged(DifferenceOf(result.changes, result.dictionary), SideOf(result.working),
               SideAfter(result.working, result.dictionary), pairs, json);
  json.Member("added", AddedNames(result));
  WriteFileItems(result.changes.file, before, result.dictionary, json);
  json.Member("notPaired", result.notPaired);
  json.Member("notReached", result.notReached);
  json.Member("written", JsonOf(result.written));
  json.Member("replaced", result.saved.isReplaced);
  json.Member("backup", JsonOf(result.saved.backup));
  json.Member("notKept", result.saved.notKept);
}

}  // namespace applydic
