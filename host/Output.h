#pragma once

#include <memory>
#include <string>

class VELA_Variable;

// Cells, the frame of a procedure, and diagnostics: the host's output.
//
// A message is built as a cell and issued with BpError. The library builds each cell as a local
// object, issues it and destroys it, so a host that keeps a diagnostic copies what it needs.

// How a diagnostic is shown. What the values select is the host's.
enum BpErrorShow : int {
  BpShowMessage = 2,      // every diagnostic except the next four
  BpShowFileMessage = 3,  // "Filename omitted." and the three messages about the password
};

// How grave a diagnostic is. From BpLevelError on, a host sets its fatal-error state
// (ProcedureDataSource::FatalError).
enum BpErrorLevel : int {
  BpLevelTransferWarning = 1,  // a property was not applied to one variable
  BpLevelWarning = 2,          // the command had nothing to do
  BpLevelError = 3,            // the command is wrong
  BpLevelFailure = 4,          // a host operation failed (ErrorText)
};

// The base of all cells, which BpError takes. Never created on its own, and never destroyed through
// this type.
class BpCellText {
 public:
  BpCellText(const BpCellText&) = delete;
  BpCellText& operator=(const BpCellText&) = delete;

 protected:
  struct Impl;
  explicit BpCellText(std::unique_ptr<Impl> impl);
  ~BpCellText();

  friend class BpComposite;
  friend void BpError(const BpCellText& cell, BpErrorShow show, BpErrorLevel level);
  std::unique_ptr<Impl> impl_;
};

// A text. With isMessage true it is a message text: a backslash is not shown, and takes any special
// meaning off the next character. With false it is shown as it is. The library passes true for its
// own fixed texts, for the message of an ErrorText and for what fills a placeholder of a keyword's
// message. It passes false for other text that comes from the host or the user. A cell that fills a
// placeholder is shown as it is in either case.
class BpString : public BpCellText {
 public:
  BpString(std::string text, bool isMessage);
  ~BpString();
};

// A variable, shown by its name in full. The cell is issued before the variable can change.
class BpVariable : public BpCellText {
 public:
  enum Show : int { ShowDefault = 0 };

  BpVariable(const VELA_Variable& variable, Show show);
  ~BpVariable();
};

// A message text with numbered placeholders "^1", "^2". The cells that are added fill them in
// order. Add copies a cell, which may be destroyed after it. The library always passes true for
// isMessage. It calls Finish once, after the last Add and before BpError.
class BpComposite : public BpCellText {
 public:
  BpComposite(const std::string& text, bool isMessage);
  ~BpComposite();

  void Add(const BpCellText& cell);
  void Finish();
};

// Issues the cell as a diagnostic. The library goes on after it, and asks
// ProcedureDataSource::FatalError whether the command is carried out.
void BpError(const BpCellText& cell, BpErrorShow show, BpErrorLevel level);

// The procedure's frame in the output: opened by construction, closed by destruction. The library
// opens one for each run, with the title "Apply Dictionary" and the kind 2. Only the record, with
// its UserCaseFileSpec, is made before the frame and released after it.
class BpProcedure {
 public:
  BpProcedure(std::string title, int kind);
  BpProcedure(const BpProcedure&) = delete;
  BpProcedure& operator=(const BpProcedure&) = delete;
  ~BpProcedure();

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};
