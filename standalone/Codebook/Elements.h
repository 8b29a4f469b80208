#pragma once

#include <span>
#include <string_view>

namespace velahost {

// The elements of DDI Codebook that the host knows, by their local name.
enum class Element : unsigned char {
  Other,    // any other element of the standard
  Foreign,  // an element of another namespace
  anlysUnit,
  catgry,
  catgryGrp,
  catLevel,
  catStat,
  catValu,
  codeBook,
  codInstr,
  concept_,
  dataDscr,
  dataFingerprint,
  defntn,
  derivation,
  docDscr,
  embargo,
  fileCitation,
  fileCont,
  fileDscr,
  fileName,
  fileStrc,
  fileTxt,
  geoMap,
  imputation,
  invalrng,
  item,
  labl,
  Link,
  location,
  locMap,
  mrow,
  nCube,
  nCubeGrp,
  notes,
  otherMat,
  qstn,
  range,
  respUnit,
  security,
  stdCatgry,
  stdyDscr,
  sumStat,
  TotlResp,
  txt,
  undocCod,
  universe,
  valrng,
  var,
  varFormat,
  varGrp,
  verStmt,
};

// The element of a local name; Other for one that is not listed.
Element ElementNamed(std::string_view localName);

// The local name. REQUIRES: a listed element.
std::string_view NameOf(Element element);

// The standard's order of the children of an element; empty for one whose children the host does
// not order.
std::span<const Element> ChildOrder(Element parent);

}  // namespace velahost
