#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

// Data sources and their variables: the dictionaries that the library reads and changes.
//
// A data source is a dictionary of variables, addressed by column from 0, with file-level
// information. The working file is one and the source file is one. They may be the same object, so
// every setting operation must accept what the reading operation of the same object returned. The
// library runs on one thread. Nothing else may change its data sources during a run.
//
// A column of -1 means that there is no such variable. Texts are zero-terminated. A pointer or
// reference that a reading operation returns lives until that property of that object is set, or
// the object is destroyed. The host defines what each class is made of (`Impl`), and may reach it
// through HostAccess.

// A value cell. Only a string value shows what it holds: the address of a value of width w is that
// of the first of its w bytes, filled with blanks on the right.
struct OBS;

class HostAccess;
class VELA_VLImpl;

// The handle of a set of value labels. Copies share the set; null means that there is none.
class VELA_VLImplPointer {
 public:
  VELA_VLImplPointer();
  VELA_VLImplPointer(const VELA_VLImplPointer& other);
  VELA_VLImplPointer& operator=(const VELA_VLImplPointer& other);
  ~VELA_VLImplPointer();

  // Whether there is a set.
  explicit operator bool() const;

 private:
  friend class HostAccess;
  std::shared_ptr<VELA_VLImpl> set_;
};

// A view of a set of value labels with a cursor. It keeps the set alive. It never changes the set
// for others: the first AddPair through a view gives the view a set of its own.
class VELA_ValueLabelMap {
 public:
  // Views the handle's set, with the cursor before the first pair. A null handle gives an empty
  // view.
  explicit VELA_ValueLabelMap(const VELA_VLImplPointer& set);
  VELA_ValueLabelMap(const VELA_ValueLabelMap&) = delete;
  VELA_ValueLabelMap& operator=(const VELA_ValueLabelMap&) = delete;
  ~VELA_ValueLabelMap();

  // The number of pairs.
  int Size() const;
  // The type of the set's values: 0 for numbers, otherwise the width of the strings in bytes.
  int Type() const;
  // Puts the cursor before the first pair.
  void Reset();
  // Gives the next pair and returns not zero, or returns 0 when none is left. The pointers live
  // until the next call of GetNextPair.
  int GetNextPair(const OBS*& value, const char*& label) const;
  // Does the same and gives the value as its Type() bytes. REQUIRES: a set of strings.
  int GetNextPair(std::string& value, const char*& label) const;
  // The label of a value of the set's type; null when it has none. Does not move the cursor.
  const char* GetLabel(const OBS* value) const;
  // Adds a pair at the end. Copies the value, which has the set's type.
  // REQUIRES: the set has no label for the value, and has a pair already.
  void AddPair(const OBS* value, std::string label);
  // The handle of the set as it is now. It lives as long as this object.
  operator VELA_VLImplPointer&();

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

// A value converted to another type of the same kind: a number as it is, a string filled with
// blanks or cut to the width. It owns the converted value.
class ObsValue {
 public:
  // Copies the value, which has the type valueType, and converts the copy to the type.
  ObsValue(int type, const OBS* value, int valueType);
  ObsValue(const ObsValue&) = delete;
  ObsValue& operator=(const ObsValue&) = delete;
  ~ObsValue();

  // The converted value. It lives as long as this object.
  operator const OBS*() const;

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

// A set of custom attributes of a variable or of a file; a value.
class DatasourceAttributes {
 public:
  DatasourceAttributes();
  DatasourceAttributes(const DatasourceAttributes& other);
  DatasourceAttributes& operator=(const DatasourceAttributes& other);
  ~DatasourceAttributes();

  // The number of attributes.
  int Size() const;
  // Merges the other set into this one and returns whether this one changed. The host decides which
  // set wins where both have an attribute. The library always passes true for the flag.
  bool Merge(const DatasourceAttributes& other, bool flag);

  struct Impl;  // the host's own, like the constructor from it
  explicit DatasourceAttributes(std::unique_ptr<Impl> impl);

 private:
  friend class HostAccess;
  std::unique_ptr<Impl> impl_;
};

// Enumerations of a variable's properties. The library copies their values. It knows only one of
// them: the level that means none.
struct VELA_Variable_Enumerations {
  enum MeasurementLevel : int { NoLevel = 0 };  // further values are the host's
  enum Role : int;
  enum Alignment : int;
};

// A variable of a dictionary.
class VELA_Variable {
 public:
  enum FormatType : int {
    FormatString = 1,
    FormatHexString =
        2,  // two characters for each byte of the string; further types are the host's
  };

  // Makes an independent copy: a new name or identity of the copy does not change the other.
  VELA_Variable(const VELA_Variable& other);
  VELA_Variable& operator=(const VELA_Variable&) = delete;
  ~VELA_Variable();

  // The name, spelled as in the file.
  const char* GetName() const;
  // The name in upper case, by the same rule as VELAMBstrupr_A.
  const char* GetUpperCaseName() const;
  // Renames the variable. Cuts the name to the length that names in a file have.
  void SetName(const char* name);
  // Gives the variable an identity of its own, which no other variable has.
  void NewID();

  // 0 for a numeric variable, otherwise the width of the string in bytes. It never changes.
  int GetType() const;

  // The label; null when there is none.
  const char* GetLabel() const;
  // Sets the label to a copy of the text, which may be empty.
  void SetLabel(const char* label);

  VELA_Variable_Enumerations::Alignment GetAlignment() const;
  void SetAlignment(VELA_Variable_Enumerations::Alignment alignment);

  // The print format: its type, its width in characters and its decimals.
  void GetFormat(FormatType& type, int& width, int& decimals) const;
  // Sets it. REQUIRES: for a string variable the width is its own, or twice that with
  // FormatHexString.
  void SetFormat(FormatType type, int width, int decimals);
  // The write format, in the same way.
  void GetWriteFormatEx(FormatType& type, int& width, int& decimals) const;
  void SetWriteFormat(FormatType type, int width, int decimals);

  VELA_Variable_Enumerations::MeasurementLevel GetMeasurementLevel() const;
  void SetMeasurementLevel(VELA_Variable_Enumerations::MeasurementLevel level);

  // The missing values: returns the count n, |n| at most 3, and sets the first |n| pointers. The
  // host decides what a negative count means.
  int GetMissingValues(const OBS*& first, const OBS*& second, const OBS*& third) const;
  // Sets them to what GetMissingValues of a variable of the same kind gave. Takes the count as it
  // is and copies the values. The host finds their width in its value cells, for the library does
  // not tell it. The library has tested that a wider string loses at most trailing blanks.
  void SetMissingValues(int count, const OBS* first, const OBS* second, const OBS* third);

  VELA_Variable_Enumerations::Role GetRole() const;
  void SetRole(VELA_Variable_Enumerations::Role role);

  // The handle of the value labels; null when there are none.
  const VELA_VLImplPointer& GetValueLabels() const;
  // Makes the set the variable's. A set of the variable's type is shared by its handle. A set of
  // strings of another width is kept at the variable's own; the library has tested that its values
  // lose at most trailing blanks.
  void SetValueLabels(const VELA_VLImplPointer& set);

  // The column width for display, in characters; 0 when there is none.
  short GetDisplayWidth() const;
  void SetDisplayWidth(short width);

  const DatasourceAttributes& GetAttributes() const;
  // Replaces the attributes by a copy of the set.
  void SetAttributes(const DatasourceAttributes& attributes);

  struct Impl;  // the host's own, like the constructor from it
  explicit VELA_Variable(std::unique_ptr<Impl> impl);

 private:
  friend class HostAccess;
  std::unique_ptr<Impl> impl_;
};

// A data source: the dictionary of a file.
class VELA_DataSource {
 public:
  // A numbered block of information that a data source has beside its variables; a value. Block 0
  // holds the documents.
  class Extension {
   public:
    // Copies the data source's block. REQUIRES: dataSource.HasExtension(number).
    Extension(const VELA_DataSource& dataSource, int number);
    Extension(const Extension& other);
    Extension& operator=(const Extension&) = delete;
    ~Extension();

   private:
    struct Impl;
    friend class VELA_DataSource;
    std::unique_ptr<Impl> impl_;
  };

  VELA_DataSource(const VELA_DataSource&) = delete;
  VELA_DataSource& operator=(const VELA_DataSource&) = delete;
  virtual ~VELA_DataSource();

  // The number of variables.
  int ColumnCount() const;
  // The variable at a column. The reference lives as long as the data source, also when variables
  // are inserted. REQUIRES: 0 <= column < ColumnCount().
  const VELA_Variable& GetVariable(int column) const;
  VELA_Variable& GetVariable(int column);
  // The column of the variable of that name, or -1. The library always passes 0 for the mode. The
  // host decides whether letter case counts: see DEDataStore::InsertVariable.
  int FindVarIndex(const char* name, int mode) const;
  // The position of the column's value in the case record, from 0.
  int ObsIndex(int column) const;

  // The column of the weight variable, or -1.
  int GetWeightVarIndex() const;
  void SetWeightVar(int column);

  // The file label; null when there is none.
  const char* GetLabel() const;
  // Sets the file label to a copy of the text.
  void SetLabel(const char* label);

  // The file's custom attributes.
  const DatasourceAttributes& GetAttributes() const;
  // Replaces them by a copy of the set.
  void SetAttributes(const DatasourceAttributes& attributes);

  bool HasExtension(int number) const;
  // Replaces the numbered block.
  void SetExtension(int number, Extension extension);

  struct Impl;  // the host's own, like the constructor from it
  explicit VELA_DataSource(std::unique_ptr<Impl> impl);

 private:
  friend class HostAccess;
  std::unique_ptr<Impl> impl_;
};

// A data source that takes new variables. The library makes the working file one before it inserts
// anything. It tells a store from other data sources at run time.
class DEDataStore : public VELA_DataSource {
 public:
  // Makes a store over the data source, with its variables and file-level information as they are
  // now. The data source stays as it is, and the store does not own it. The library creates the
  // store on the heap. The host owns it from its construction on, and destroys it when it is no
  // longer the working data source of any run.
  explicit DEDataStore(const VELA_DataSource* base);
  ~DEDataStore() override;

  // Inserts a copy of the variable as a new column. Every other variable, the text of every name
  // and every pointer into them stays valid. The library inserts only at the end, a position equal
  // to ColumnCount(), and inserts no name twice in a run, in whatever case. With NEWVARS, SOURCE
  // and TARGET it inserts each name that FindVarIndex does not find. So where FindVarIndex minds
  // letter case, the store may have the name in another case. A store that cannot keep both throws
  // an ErrorText.
  void InsertVariable(unsigned int position, const VELA_Variable& variable);
};

// A document: a handle to a shared text; a value.
class DSDocument {
 public:
  DSDocument(const DSDocument& other);
  DSDocument& operator=(const DSDocument& other);
  ~DSDocument();

  explicit DSDocument(std::string text);  // the host's own

 private:
  friend class HostAccess;
  std::shared_ptr<const std::string> text_;
};

// The data source's documents, in stored order.
std::vector<DSDocument> GetDocuments(const VELA_DataSource& dataSource);
// Removes repeated documents from the list. The host keeps one of those that are equal. The library
// puts the working file's documents before the source's.
void DeDup(std::vector<DSDocument>& documents);
// Replaces the data source's documents by the list.
void SaveDocuments(const std::vector<DSDocument>& documents, VELA_DataSource& dataSource);

// The kinds of sets of variables.
enum VarSetsType : int {
  VarSetsVariableSets = 0,
  VarSetsMrSets = 1,  // multiple-response sets
};

// One named set of variables; copied, assigned and destroyed member by member. The library reads no
// field of it.
struct VariableSet {
  enum ChangeCase : int { AsStored = 0 };
  enum Flag : int { HasLabel = 0 };

  // The set's name. Sets are merged by it: two names are equal when they have the same bytes.
  std::string GetName(ChangeCase changeCase) const;

  std::int32_t reference = 0;         // by which the host finds what else it knows of the set
  std::vector<bool> flags = {false};  // by Flag
  std::string name;
  std::string label;
  std::string type;                  // the purpose of the set, in the host's words
  std::vector<std::string> members;  // the names of its variables, in order
};

// The data source's sets of one kind, in stored order.
std::vector<VariableSet> VariableSets(const VELA_DataSource& dataSource, VarSetsType type);
// Replaces all sets of that kind that the data source has by the list, in that order. The host
// decides what becomes of members that the data source does not have.
void SaveVariableSets(const std::vector<VariableSet>& sets, VELA_DataSource& dataSource,
                      VarSetsType type);

// Copies the text into the buffer of bound bytes, zero-terminated. Cuts off between characters what
// does not fit. Returns the buffer.
char* VELAMBzstncpy_A(char* buffer, const char* text, std::size_t bound);
// Turns the text into upper case in place and returns it. The text never grows: a letter whose
// capital takes more bytes than it does stays as it is, here and in GetUpperCaseName.
char* VELAMBstrupr_A(char* text);
