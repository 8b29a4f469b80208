#pragma once

#include <string>

#include "host/Output.h"

// Issues a fixed text at the level; its placeholder "^1" shows a cell made of the arguments.
template <typename Cell, typename... Arguments>
void ReportCell(BpErrorLevel level, const std::string& text, const Arguments&... arguments) {
  BpComposite message(text, true);
  message.Add(Cell(arguments...));
  message.Finish();
  BpError(message, BpShowMessage, level);
}
