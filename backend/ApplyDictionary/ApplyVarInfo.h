#pragma once

struct ApplyDictionarySpec;
class VELA_Variable;

// Applies the selected properties of the source variable to the target, a variable of the working
// file. They may be one and the same; otherwise the source stays as it is.
//
// Only the label passes between a numeric and a string variable. Missing values and value labels
// pass to a narrower string only when all of them fit without their trailing blanks, and the column
// width only when it does not shrink a string. A property that cannot be applied stays as it is,
// with a warning of level 1 that shows the target, and the next one follows. The target keeps what
// the source does not have: label, level, missing values, value labels, column width, attributes.
//
// Exceptions of the host pass through; what was applied before stays applied.
void ApplyVarInfo(const VELA_Variable& source, VELA_Variable& target,
                  const ApplyDictionarySpec& record);
