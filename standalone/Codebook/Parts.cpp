#include "standalone/Codebook/Parts.h"

#include <algorithm>
#include <atomic>
#include <future>
#include <utility>
#include <vector>

#include "standalone/Codebook/Elements.h"
#include "standalone/Codebook/Labels.h"
#include "standalone/Codebook/Reader.h"
#include "standalone/Files/FileKind.h"
#include "standalone/Parallel/Beside.h"
#include "standalone/Xml/Parser.h"

namespace velahost {
namespace {

// Where the first tag of a dataDscr after begin ends its name, or the end of the text. The capital
// is looked for, since there are few of it.
std::size_t FindDescription(std::string_view text, std::size_t begin) {
  constexpr std::string_view kName = "dataDscr>";
  constexpr std::size_t kCapital = kName.find('D');
  std::size_t at = begin + kCapital;
  while ((at = text.find(kName[kCapital], at)) != std::string_view::npos) {
    if (text.substr(at - kCapital).starts_with(kName)) return at - kCapital;
    ++at;
  }
  return text.size();
}

// Where a text is cut: after the end tag, every partSize bytes or a little more from begin on, as
// far as the dataDscr goes. None if a part would be more than a parser reads at once.
std::vector<std::size_t> Cuts(std::string_view text, std::size_t begin, std::string_view endTag,
                              std::size_t partSize) {
  const std::size_t last = text.rfind(endTag, FindDescription(text, begin));
  std::vector<std::size_t> cuts;
  if (last == std::string_view::npos) return cuts;
  for (std::size_t from = begin; from <= last; from = cuts.back() + partSize) {
    const std::size_t cut = text.find(endTag, from) + endTag.size();
    if (!cuts.empty() && cut - cuts.back() > XmlParser::kMostAtOnce) return {};
    cuts.push_back(cut);
  }
  return cuts;
}

// The parts of one document, while they are read on threads of their own.
class Parts {
 public:
  Parts() = default;
  Parts(const Parts&) = delete;
  Parts& operator=(const Parts&) = delete;
  ~Parts() { next_ = readings_.size(); }  // the workers end with what they are at

  bool AreRead() const { return !workers_.empty(); }

  // Starts to read what stands between the cuts, which is the inside of a dataDscr.
  void Start(std::string_view text, OpenFor use, const Languages& languages,
             std::vector<std::size_t> cuts, const Namespaces& namespaces, Encoding encoding,
             Namespaces::Scope scope) {
    cuts_ = std::move(cuts);
    readings_.resize(cuts_.size() - 1);
    for (std::size_t i = 0; i < std::min(Threads(), readings_.size()); ++i) {
      workers_.push_back(
          RunBeside(&Parts::ReadNext, this, text, use, languages, namespaces, encoding, scope));
    }
  }

  // What was read of them, in document order. Throws XmlError if a part is none.
  std::vector<Reading> Take() {
    for (std::future<void>& worker : workers_) worker.get();
    return std::move(readings_);
  }

 private:
  // Reads parts as long as there are any. Called on several threads at once.
  void ReadNext(std::string_view text, OpenFor use, const Languages& languages,
                Namespaces namespaces, Encoding encoding, Namespaces::Scope scope) {
    CodebookReader reader(text, use, languages, scope);
    for (std::size_t i = next_++; i < readings_.size(); i = next_++) {
      const std::string_view part = text.substr(cuts_[i], cuts_[i + 1] - cuts_[i]);
      try {
        XmlParser(namespaces, reader).ParsePart(part, cuts_[i], encoding, scope);
      } catch (...) {
        next_ = readings_.size();  // the other parts are of no use now
        throw;
      }
      readings_[i] = reader.Take();
    }
  }

  std::vector<std::size_t> cuts_;
  std::vector<Reading> readings_;      // of each part
  std::atomic<std::size_t> next_ = 0;  // part to be read
  std::vector<std::future<void>> workers_;
};

}  // namespace

namespace {

DocumentReading ReadIn(const std::string& language, std::string_view text, OpenFor use) {
  if (auto inParts = ReadInParts(text, use, language)) return std::move(*inParts);
  return ReadWhole(text, use, language);
}

}  // namespace

void CheckStart(std::string_view first) {
  if (const auto what = KindOfOther(first)) {
    throw XmlError("this is no codebook, but " + *what + ": give a DDI Codebook document (XML)");
  }
  Namespaces namespaces(CodebookVocabulary());
  CodebookReader reader(first, OpenFor::Reading, "", namespaces);
  XmlParser(namespaces, reader).Parse(first);
}

DocumentReading ReadDocument(std::string_view text, OpenFor use,
                             const std::optional<std::string>& language) {
  if (text.size() > kMostBytes) throw XmlError("the document has more than 4 GB");
  if (language) return ReadIn(*language, text, use);
  const std::string guessed = GuessLabelLanguage(text);
  DocumentReading read = ReadIn(guessed, text, use);
  const std::string stated = read.reading.labelLanguage.value_or("");
  return stated == guessed ? std::move(read) : ReadIn(stated, text, use);
}

std::optional<DocumentReading> ReadInParts(std::string_view text, OpenFor use,
                                           const std::string& language, std::size_t partSize) {
  Namespaces namespaces(CodebookVocabulary());
  CodebookReader reader(text, use, language, namespaces);
  XmlParser parser(namespaces, reader);
  Reading head;
  Parts parts;
  bool mayCut = Threads() > 1;
  try {
    for (std::size_t at = 0; at < text.size();) {
      const std::string_view piece = text.substr(at, parser.NextPiece(partSize));
      parser.Parse(piece);
      at += piece.size();
      const CodebookReader::Tag endTag = reader.VariableEnd();
      if (!mayCut || endTag.end == 0) continue;
      mayCut = false;
      auto cuts = Cuts(text, at, text.substr(endTag.begin, endTag.end - endTag.begin), partSize);
      const std::size_t least = 3;  // for two parts
      if (cuts.size() < least || parser.HasDocumentType()) continue;
      parser.Parse(text.substr(at, cuts.front() - at));
      at = cuts.front();
      if (!reader.StandsAfterVariable(at)) continue;
      head = reader.Take();
      at = cuts.back();
      parts.Start(text, use, reader.Languages(), std::move(cuts), namespaces,
                  parser.DocumentEncoding(), reader.Scope());
      parser.MoveTo(at, reader.Scope());
    }
    parser.Finish();
    reader.RequireCodebook();
    std::vector<Reading> readings = parts.Take();
    head.Reserve(readings);
    for (Reading& part : readings) head.Append(std::move(part));
  } catch (const XmlError&) {
    if (parts.AreRead()) return std::nullopt;
    throw;
  }
  head.Append(reader.Take());
  return DocumentReading{std::move(head), std::move(namespaces), parser.DocumentEncoding(),
                         parser.SaysUtf16()};
}

DocumentReading ReadWhole(std::string_view text, OpenFor use, const std::string& language) {
  Namespaces namespaces(CodebookVocabulary());
  CodebookReader reader(text, use, language, namespaces);
  XmlParser parser(namespaces, reader);
  parser.ParseDocument(text);
  reader.RequireCodebook();
  return {reader.Take(), std::move(namespaces), parser.DocumentEncoding(), parser.SaysUtf16()};
}

}  // namespace velahost
