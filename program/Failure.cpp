#include "program/Failure.h"

#include <exception>
#include <new>

#include "program/Output.h"

namespace applydic {

ExitStatus ReportFailures(const std::function<ExitStatus()>& work) {
  try {
    return work();
  } catch (const std::bad_alloc&) {
    WriteError(kNoMemory);
  } catch (const velahost::FileError& error) {
    WriteFileError(error);
  } catch (const std::exception& exception) {
    WriteError(exception.what());
  }
  return kCannotRun;
}

}  // namespace applydic
