#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "program/Listing.h"
#include "standalone/Comparison/Difference.h"

namespace applydic {

// A difference for people to read. All of diff, apply --diff and apply --dry-run have this form.

// The columns in which a difference has the names of its items.
inline constexpr std::size_t kDifferenceNames = 16;

// Lists the items of the file that differ, under a title; nothing where none does. In a brief
// listing a few lines of each.
void ListFileDifference(velahost::FileItemSet items, const velahost::Dictionary& before,
                        const velahost::Dictionary& now, Listing& listing);

// Lists the variables that differ: with what differs in each, or by the names of the properties. In
// a brief listing the first few, and how many more there are. Nothing where none does.
void ListVariableDifferences(const std::vector<velahost::Difference::OfVariable>& changed,
                             const velahost::Side& before, const velahost::Side& now,
                             Listing& listing);
void ListVariableNames(const std::vector<velahost::Difference::OfVariable>& changed,
                       const velahost::Dictionary& now, Listing& listing);

// List, unless there are none, how many variables differ, in all and in each property: "TITLE: 22
// (label 22, value labels 4)"; and how many names there are, and what they are: "TITLE: 3 (A, B,
// C)", in a brief listing the first few of many.
void ListCounts(const char* title, const std::vector<velahost::Difference::OfVariable>& changed,
                Listing& listing);
void ListNames(const char* title, const std::vector<std::string>& names, Listing& listing);

}  // namespace applydic
