#include "standalone/Codebook/Elements.h"

#include <array>
#include <cstddef>
#include <unordered_map>

namespace velahost {

namespace {

using enum Element;

// In the order of the enumeration, from anlysUnit on.
constexpr std::array<std::string_view, 50> kNames = {"anlysUnit",
                                                     "catgry",
                                                     "catgryGrp",
                                                     "catLevel",
                                                     "catStat",
                                                     "catValu",
                                                     "codeBook",
                                                     "codInstr",
                                                     "concept",
                                                     "dataDscr",
                                                     "dataFingerprint",
                                                     "defntn",
                                                     "derivation",
                                                     "docDscr",
                                                     "embargo",
                                                     "fileCitation",
                                                     "fileCont",
                                                     "fileDscr",
                                                     "fileName",
                                                     "fileStrc",
                                                     "fileTxt",
                                                     "geoMap",
                                                     "imputation",
                                                     "invalrng",
                                                     "item",
                                                     "labl",
                                                     "Link",
                                                     "location",
                                                     "locMap",
                                                     "mrow",
                                                     "nCube",
                                                     "nCubeGrp",
                                                     "notes",
                                                     "otherMat",
                                                     "qstn",
                                                     "range",
                                                     "respUnit",
                                                     "security",
                                                     "stdCatgry",
                                                     "stdyDscr",
                                                     "sumStat",
                                                     "TotlResp",
                                                     "txt",
                                                     "undocCod",
                                                     "universe",
                                                     "valrng",
                                                     "var",
                                                     "varFormat",
                                                     "varGrp",
                                                     "verStmt"};

constexpr std::size_t kFirst = static_cast<std::size_t>(anlysUnit);
static_assert(static_cast<std::size_t>(verStmt) == kFirst + kNames.size() - 1);

constexpr std::array kVarOrder = {
    location, labl,     imputation, security,   embargo,   respUnit, anlysUnit, qstn,      valrng,
    invalrng, undocCod, universe,   TotlResp,   sumStat,   txt,      stdCatgry, catgryGrp, catgry,
    codInstr, verStmt,  concept_,   derivation, varFormat, geoMap,   catLevel,  notes};
constexpr std::array kCatgryOrder = {catValu, labl, txt, catStat, mrow};
constexpr std::array kCodeBookOrder = {docDscr, stdyDscr, fileDscr, dataDscr, otherMat};
constexpr std::array kFileDscrOrder = {fileTxt, locMap, notes};
constexpr std::array kFileTxtOrder = {fileName, fileCitation, dataFingerprint, fileCont, fileStrc};
constexpr std::array kDataDscrOrder = {varGrp, nCubeGrp, var, nCube, notes};
constexpr std::array kVarGrpOrder = {labl, txt, concept_, defntn, universe, notes};

}  // namespace

Element ElementNamed(std::string_view localName) {
  static const auto elements = [] {
    std::unordered_map<std::string_view, Element> map;
    for (std::size_t i = 0; i < kNames.size(); ++i) {
      map.emplace(kNames[i], static_cast<Element>(kFirst + i));
    }
    return map;
  }();
  const auto found = elements.find(localName);
  return found == elements.end() ? Other : found->second;
}

std::string_view NameOf(Element element) {
  return kNames[static_cast<std::size_t>(element) - kFirst];
}

std::span<const Element> ChildOrder(Element parent) {
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
    case varGrp:
      return kVarGrpOrder;
    default:
      return {};
  }
}

}  // namespace velahost
