#pragma once

#include "standalone/Xml/Vocabulary.h"

namespace velahost {

// The elements of DDI Codebook that the host knows, by their local name.
namespace element {
enum : ElementName {
  anlysUnit = kFirstElement,
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
  key,
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
}  // namespace element

// The vocabulary of DDI Codebook: these elements, the standard's namespaces and its order of
// children.
const Vocabulary& CodebookVocabulary();

}  // namespace velahost
