#include "standalone/Codebook/Elements.h"

#include <array>
#include <span>
#include <string_view>

namespace velahost {
namespace {

using namespace element;

// In the order of the enumeration.
constexpr std::array<std::string_view, 51> kNames = {
    "anlysUnit",  "catgry",   "catgryGrp", "catLevel",     "catStat",         "catValu",
    "codeBook",   "codInstr", "concept",   "dataDscr",     "dataFingerprint", "defntn",
    "derivation", "docDscr",  "embargo",   "fileCitation", "fileCont",        "fileDscr",
    "fileName",   "fileStrc", "fileTxt",   "geoMap",       "imputation",      "invalrng",
    "item",       "key",      "labl",      "Link",         "location",        "locMap",
    "mrow",       "nCube",    "nCubeGrp",  "notes",        "otherMat",        "qstn",
    "range",      "respUnit", "security",  "stdCatgry",    "stdyDscr",        "sumStat",
    "TotlResp",   "txt",      "undocCod",  "universe",     "valrng",          "var",
    "varFormat",  "varGrp",   "verStmt"};
static_assert(verStmt == kFirstElement + kNames.size() - 1);

constexpr std::array<std::string_view, 2> kNamespaces = {"ddi:codebook:",
                                                         "http://www.icpsr.umich.edu/DDI"};

constexpr std::array<ElementName, 26> kVarOrder = {
    location, labl,     imputation, security,   embargo,   respUnit, anlysUnit, qstn,      valrng,
    invalrng, undocCod, universe,   TotlResp,   sumStat,   txt,      stdCatgry, catgryGrp, catgry,
    codInstr, verStmt,  concept_,   derivation, varFormat, geoMap,   catLevel,  notes};
constexpr std::array<ElementName, 5> kCatgryOrder = {catValu, labl, txt, catStat, mrow};
constexpr std::array<ElementName, 5> kCodeBookOrder = {docDscr, stdyDscr, fileDscr, dataDscr,
                                                       otherMat};
constexpr std::array<ElementName, 3> kFileDscrOrder = {fileTxt, locMap, notes};
constexpr std::array<ElementName, 5> kFileTxtOrder = {fileName, fileCitation, dataFingerprint,
                                                      fileCont, fileStrc};
constexpr std::array<ElementName, 5> kDataDscrOrder = {varGrp, nCubeGrp, var, nCube, notes};
constexpr std::array<ElementName, 4> kInvalrngOrder = {range, item, key, notes};
constexpr std::array<ElementName, 6> kVarGrpOrder = {labl, txt, concept_, defntn, universe, notes};

class DdiCodebook final : public Vocabulary {
 public:
  DdiCodebook() : Vocabulary(kNames, kNamespaces) {}

  std::span<const ElementName> ChildOrder(ElementName parent) const override {
    switch (parent) {
      case var:
        return kVarOrder;
      case catgry:
        return kCatgryOrder;
      case codeBook:
        return kCodeBookOrder;
      case fileDscr:
        return kFileDscrOrder;
      case fileTxt:
        return kFileTxtOrder;
      case dataDscr:
        return kDataDscrOrder;
      case invalrng:
        return kInvalrngOrder;
      case varGrp:
        return kVarGrpOrder;
      default:
        return {};
    }
  }

  bool BreaksLines(ElementName parent) const override {
    return parent == codeBook || parent == dataDscr;
  }
};

}  // namespace

const Vocabulary& CodebookVocabulary() {
  static const DdiCodebook vocabulary;
  return vocabulary;
}

}  // namespace velahost
