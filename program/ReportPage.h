#pragma once

#include <string_view>

namespace applydic {

// The page of the report as the build has put it together from report/ (see cmake/EmbedPage.cmake):
// what stands before and after the data of a run, which are JSON inside a script element.
extern const std::string_view kPageBeforeData;
extern const std::string_view kPageAfterData;

}  // namespace applydic
