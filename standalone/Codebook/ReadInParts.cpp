#include "standalone/Codebook/ReadInParts.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <functional>
#include <future>
#include <iterator>
#include <memory>
#include <string_view>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#include "standalone/Codebook/DocumentReader.h"

namespace velahost {

namespace {

// Where a text is cut: behind the end tag, every partSize bytes or a little more from begin on, as
// far as the dataDscr goes. None if a part would be more than a parser reads at once.
std::vector<std::size_t> Cuts(std::string_view text, std::size_t begin, std::string_view endTag,
                              std::size_t partSize) {
  constexpr std::string_view kEnd = "dataDscr>";
  const auto* const end = std::search(text.begin() + static_cast<std::ptrdiff_t>(begin), text.end(),
                                      std::boyer_moore_horspool_searcher(kEnd.begin(), kEnd.end()));
  const std::size_t last = text.rfind(endTag, static_cast<std::size_t>(end - text.begin()));
  std::vector<std::size_t> cuts;
  if (last == std::string_view::npos) return cuts;
  for (std::size_t from = begin; from <= last; from = cuts.back() + partSize) {
    const std::size_t cut = text.find(endTag, from) + endTag.size();
    if (!cuts.empty() && cut - cuts.back() > XmlParser::kMostAtOnce) return {};
    cuts.push_back(cut);
  }
  return cuts;
}

// The threads that can run at the same time; 0 if the system does not tell.
std::size_t Threads() { return std::thread::hardware_concurrency(); }

template <typename Item>
void MoveBehind(std::vector<Item>& items, std::vector<Item>& others) {
  items.insert(items.end(), std::make_move_iterator(others.begin()),
               std::make_move_iterator(others.end()));
  others.clear();
}

// A list of a reading, or of its codebook.
template <typename Item>
std::vector<Item>& ListOf(CodebookReading& reading, std::vector<Item> CodebookReading::*list) {
  return reading.*list;
}
template <typename Item>
std::vector<Item>& ListOf(CodebookReading& reading, std::vector<Item> Codebook::*list) {
  return *reading.codebook.*list;
}

// The parts of one document, while it is read.
class Parts {
 public:
  explicit Parts(CodebookReading& reading) : reading_(reading), codebook_(*reading.codebook) {}
  Parts(const Parts&) = delete;
  Parts& operator=(const Parts&) = delete;
  ~Parts() { next_ = read_.size(); }  // the workers end with what they are at

  bool Empty() const { return cuts_.empty(); }

  // Starts to read what stands between the cuts, which is the inside of the last dataDscr. Called
  // behind the first cut.
  void Start(std::vector<std::size_t> cuts, Encoding encoding, Namespaces::Scope scope) {
    cuts_ = std::move(cuts);
    read_.resize(cuts_.size() - 1);
    dataDescription_ = codebook_.dataDescriptions.size() - 1;
    variables_ = codebook_.variables.size();
    groups_ = codebook_.groups.size();
    for (std::size_t i = 0; i < std::min(Threads(), read_.size()); ++i) {
      workers_.push_back(std::async(&Parts::ReadNext, this, codebook_.namespaces, encoding, scope));
    }
  }

  // Puts what has been read where it stands in the document. Throws XmlError if a part was none.
  void Take() {
    for (std::future<void>& worker : workers_) worker.get();
    MoveInto(&Codebook::variables, variables_);
    MoveInto(&CodebookReading::variables, variables_);
    MoveInto(&Codebook::groups, groups_);
    MoveInto(&CodebookReading::groupMembers, groups_);
    MoveInto(&Codebook::trees, codebook_.trees.size());
    for (const CodebookReading& part : read_) {
      auto& last = codebook_.dataDescriptions[dataDescription_].last;
      for (const auto& [element, place] : part.codebook->dataDescriptions.front().last) {
        Codebook::Place& known = last[element];
        if (known.end < place.end) known = place;
      }
    }
  }

 private:
  // Reads parts as long as there are any. Called on several threads at once.
  void ReadNext(Namespaces namespaces, Encoding encoding, Namespaces::Scope scope) {
    for (std::size_t i = next_++; i < read_.size(); i = next_++) {
      read_[i].use = reading_.use;
      read_[i].codebook = std::make_shared<Codebook>();
      DocumentReader handler(read_[i], scope);
      const auto text = std::string_view(codebook_.text).substr(cuts_[i], cuts_[i + 1] - cuts_[i]);
      try {
        XmlParser(namespaces, handler).ParsePart(text, cuts_[i], encoding, scope);
      } catch (...) {
        next_ = read_.size();  // the other parts are of no use now
        throw;
      }
    }
  }

  // Puts what a list of each part holds into that list of the whole, of which so many items have
  // been read before the parts and the rest behind them.
  template <typename List>
  void MoveInto(List list, std::size_t before) {
    auto& items = ListOf(reading_, list);
    const auto first = items.begin() + static_cast<std::ptrdiff_t>(before);
    std::remove_reference_t<decltype(items)> behind(std::make_move_iterator(first),
                                                    std::make_move_iterator(items.end()));
    items.erase(first, items.end());
    std::size_t count = before + behind.size();
    for (CodebookReading& part : read_) count += ListOf(part, list).size();
    items.reserve(count);
    for (CodebookReading& part : read_) MoveBehind(items, ListOf(part, list));
    MoveBehind(items, behind);
  }

  CodebookReading& reading_;
  Codebook& codebook_;
  std::vector<std::size_t> cuts_;
  std::vector<CodebookReading> read_;  // of each part
  std::atomic<std::size_t> next_ = 0;  // part to be read
  std::size_t dataDescription_ = 0;
  // How many had been read before the parts.
  std::size_t variables_ = 0;
  std::size_t groups_ = 0;
  std::vector<std::future<void>> workers_;
};

}  // namespace

bool ReadInParts(CodebookReading& reading, std::size_t partSize) {
  Codebook& codebook = *reading.codebook;
  const std::string_view text = codebook.text;
  DocumentReader handler(reading);
  XmlParser parser(codebook.namespaces, handler);
  Parts parts(reading);
  bool mayCut = Threads() > 1;
  try {
    for (std::size_t at = 0; at < text.size();) {
      parser.Parse(text.substr(at, partSize));
      at = std::min(at + partSize, text.size());
      const DocumentReader::Tag endTag = handler.VariableEnd();
      if (!mayCut || endTag.end == 0) continue;
      mayCut = false;
      auto cuts = Cuts(text, at, text.substr(endTag.begin, endTag.end - endTag.begin), partSize);
      const std::size_t least = 3;  // for two parts
      if (cuts.size() < least || parser.HasDocumentType()) continue;
      parser.Parse(text.substr(at, cuts.front() - at));
      at = cuts.front();
      if (!handler.StandsBehindVariable(at)) continue;
      const std::size_t last = cuts.back();
      parts.Start(std::move(cuts), parser.DocumentEncoding(), handler.Scope());
      at = last;
      parser.MoveTo(at, handler.Scope());
    }
    parser.Finish();
    parts.Take();
  } catch (const XmlError&) {
    if (parts.Empty()) throw;
    return false;
  }
  codebook.encoding = parser.DocumentEncoding();
  return true;
}

void ReadWhole(CodebookReading& reading) {
  Codebook& codebook = *reading.codebook;
  DocumentReader handler(reading);
  XmlParser parser(codebook.namespaces, handler);
  parser.ParseDocument(codebook.text);
  codebook.encoding = parser.DocumentEncoding();
}

}  // namespace velahost
