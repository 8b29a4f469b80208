#include "program/Match.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "program/JsonStream.h"
#include "program/Listing.h"
#include "program/MatchSyntax.h"
#include "program/Output.h"
#include "program/Progress.h"
#include "program/Terminal.h"
#include "program/TwoCodebooks.h"
#include "standalone/Codebook/CodebookFile.h"
#include "standalone/Files/SaveFile.h"
#include "standalone/Matching/Matching.h"

namespace applydic {
namespace {

using Json = nlohmann::ordered_json;
using velahost::CodebookFile;
using velahost::Matches;
using velahost::Proposal;

// How many proposals of a kind are shown when all are in a file.
constexpr std::size_t kShown = 5;

velahost::QuestionLookup QuestionsOf(const CodebookFile& file) {
  return [&file](std::size_t column) {
    if (!file.dictionary.variables[column]->documented.Has(velahost::Documentation::Question)) {
      return std::string();
    }
    std::string question;
    for (const velahost::DocumentationText& text : velahost::DocumentationTexts(file, column)) {
      if (text.kind != velahost::Documentation::Question) continue;
      if (!question.empty()) question += ' ';
      question += text.text;
    }
    return question;
  };
}

// Throws Failure where the syntax file would be written over one of the codebooks.
void RefuseCodebook(const std::string& output, const TwoCodebooks& files) {
  const std::optional<velahost::FileIdentity> there = velahost::IdentityAt(output);
  if (!there) return;
  if (*there != files.before.identity && *there != files.now.identity) return;
  throw Failure("Cannot write " + output +
                ": this is one of the two codebooks; write to another file.");
}

std::string NameAt(const velahost::Dictionary& file, std::size_t column) {
  return file.variables[column]->name.String();
}

double Rounded(double score) { return std::floor(score * 1000) / 1000; }

Json RivalJson(const Proposal::Rival& rival, const MatchFiles& files) {
  return {{rival.isOld ? "old" : "new",
           NameAt(rival.isOld ? files.oldFile : files.newFile, rival.column)},
          {"score", Rounded(rival.score)}};
}

Json ProposalJson(const Proposal& proposal, const MatchFiles& files) {
  Json rivals = Json::array();
  for (const Proposal::Rival& rival : proposal.rivals) rivals.push_back(RivalJson(rival, files));
  return {{"old", NameAt(files.oldFile, proposal.oldColumn)},
          {"new", NameAt(files.newFile, proposal.newColumn)},
          {"score", Rounded(proposal.score)},
          {"certain", proposal.isCertain},
          {"reasons", proposal.reasons},
          {"rivals", std::move(rivals)}};
}

std::vector<std::string> NamesWithoutProposal(const Matches& matches, const MatchFiles& files) {
  std::vector<std::string> names;
  names.reserve(matches.withoutProposal.size());
  for (const std::size_t column : matches.withoutProposal) {
    names.push_back(NameAt(files.newFile, column));
  }
  return names;
}

void WriteJson(const MatchOptions& options, const Matches& matches, const MatchFiles& files,
               const velahost::ByteSink& sink) {
  JsonStream json(sink);
  json.Member("old", options.before);
  json.Member("new", options.now);
  json.Member("namesakes", matches.namesakes);
  json.BeginArray("proposals");
  for (const Proposal& proposal : matches.proposals) json.Element(ProposalJson(proposal, files));
  json.EndArray();
  json.Member("withoutProposal", NamesWithoutProposal(matches, files));
  json.Member("written", options.output ? Json(*options.output) : Json(nullptr));
  json.End();
}

// Lists proposals of a kind, all or the first few.
void ListProposals(const char* title, const std::vector<const Proposal*>& proposals,
                   const MatchFiles& files, std::size_t most, Listing& listing) {
  if (proposals.empty()) return;
  listing.Title(fmt::format("{}: {}", title, CountText(proposals.size())));
  for (std::size_t i = 0; i < std::min(most, proposals.size()); ++i) {
    const Proposal& proposal = *proposals[i];
    const std::string pair = MakeVisible(NameAt(files.oldFile, proposal.oldColumn)) + " → " +
                             MakeVisible(NameAt(files.newFile, proposal.newColumn));
    listing.Item(fmt::format("{:.2f}", std::floor(proposal.score * 100) / 100),
                 pair + ": " + MakeVisible(ReasonText(proposal, files)));
  }
  if (proposals.size() > most) {
    listing.Line(fmt::format("… and {} more", CountText(proposals.size() - most)));
  }
  listing.BlankLine();
}

void WriteText(const MatchOptions& options, const Matches& matches, const MatchFiles& files,
               const velahost::ByteSink& sink) {
  constexpr std::size_t kScoreWidth = 6;
  constexpr std::size_t kMostNames = 20;
  Listing listing(PageOfOutput(ColorWhen::Auto), sink, kScoreWidth);
  std::vector<const Proposal*> certain;
  std::vector<const Proposal*> uncertain;
  for (const Proposal& proposal : matches.proposals) {
    (proposal.isCertain ? certain : uncertain).push_back(&proposal);
  }
  const std::size_t most = options.output ? kShown : matches.proposals.size();
  ListProposals("Proposals", certain, files, most, listing);
  ListProposals("Uncertain proposals", uncertain, files, most, listing);
  if (!matches.withoutProposal.empty()) {
    std::vector<std::string> names = NamesWithoutProposal(matches, files);
    const std::size_t count = names.size();
    if (count > kMostNames) names.resize(kMostNames);
    for (std::string& name : names) name = MakeVisible(name);
    listing.List(fmt::format("Without a proposal: {}: ", CountText(count)), names,
                 count > kMostNames ? ", …" : "");
  }
  listing.Line("Paired by name: " + CountText(matches.namesakes));
  if (matches.proposals.empty()) listing.Line("Nothing to propose.");
  if (options.output) listing.Line("Written to " + MakeVisible(*options.output));
}

Matches Match(const TwoCodebooks& files) {
  const Progress::Stage stage("Pairing variables");
  return velahost::MatchVariables({files.before.dictionary, QuestionsOf(files.before)},
                                  {files.now.dictionary, QuestionsOf(files.now)});
}

}  // namespace

ExitStatus RunMatch(const MatchOptions& options) {
  if (options.output) velahost::CheckCanSave(*options.output);
  const TwoCodebooks codebooks = OpenBoth(options.before, options.now, options.language);
  WriteWarningsOf(codebooks);
  if (options.output) RefuseCodebook(*options.output, codebooks);
  const MatchFiles files{options.before, options.now, codebooks.before.dictionary,
                         codebooks.now.dictionary, options.language};
  const Matches matches = Match(codebooks);
  if (options.output) velahost::SaveFile(*options.output, SyntaxText(matches, files));
  WriteForReader(Stream::Output, [&](const velahost::ByteSink& sink) {
    if (options.json) {
      WriteJson(options, matches, files, sink);
    } else {
      WriteText(options, matches, files, sink);
    }
  });
  return kDone;
}

}  // namespace applydic
