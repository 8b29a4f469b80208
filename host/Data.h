#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

// Data sources and their variables: the dictionaries that the library reads and changes.
//
// A data source is a dictionary of variables, addressed by column from 0, with file-level
// information. The working file is one and the source file is one; they may be the same object, so
// every operation that sets something must be safe when it is given what the same object's reading
// operation returned. The library runs on one thread and nothing else may change its data sources
// meanwhile.
//
// A column of -1 means that there is no such variable. Texts are zero-terminated. A pointer or
// reference that a reading operation returns lives until that property of that object is set, or
// the object is destroyed. What each class is made of is the host's business: `Impl` is the host's
// to define, and HostAccess the host's to reach it by.

// A value cell. The host never shows what it holds save for a string value of width w: there the
// address is that of the first of its w bytes, filled with blanks on the right.
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

// A view of a set of value labels with a cursor. It keeps the set alive. A set is never changed for
// anyone else: the first AddPair through a view gives the view a set of its own.
class VELA_ValueLabelMap {
 public:
  // A view of the handle's set, with the cursor before the first pair; of a null handle an empty
  // one.
  explicit VELA_ValueLabelMap(const VELA_VLImplPointer& set);
  VELA_ValueLabelMap(const VELA_ValueLabelMap&) = delete;
  VELA_ValueLabelMap& operator=(const VELA_ValueLabelMap&) = delete;
  ~VELA_ValueLabelMap();

  // The number of pairs.
  int Size() const;
  // The type of the set's values: 0 numeric, else their width in bytes.
  int Type() const;
  // Puts the cursor before the first pair.
  void Reset();
  // The next pair; 0 when there is none left. The pointers live as long as the set is unchanged.
  int GetNextPair(const OBS*& value, const char*& label) const;
  // The same with the value of a string set as its Type() bytes. REQUIRES: a set of strings.
  int GetNextPair(std::string& value, const char*& label) const;
  // The label of a value of the set's type; null when it has none. The cursor stays.
  const char* GetLabel(const OBS* value) const;
  // Adds a pair at the end; the value, of the set's type, is copied.
  // REQUIRES: the set has no label for the value, and has a pair already.
  void AddPair(const OBS* value, std::string label);
  // The handle of the set as it is now; it lives as long as this object.
  operator VELA_VLImplPointer&();

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

// A value re-expressed at another type of the same kind: a number as it is, a string filled with
// blanks or cut to the width. It owns the converted value.
class ObsValue {
 public:
  // The value, of type valueType, at type. The value is copied.
  ObsValue(int type, const OBS* value, int valueType);
  ObsValue(const ObsValue&) = delete;
  ObsValue& operator=(const ObsValue&) = delete;
  ~ObsValue();

  // The converted value; it lives as long as this object.
  operator const OBS*() const;

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

// A set of custom attributes, of a variable or of a file; a value.
class DatasourceAttributes {
 public:
  DatasourceAttributes();
  DatasourceAttributes(const DatasourceAttributes& other);
  DatasourceAttributes& operator=(const DatasourceAttributes& other);
  ~DatasourceAttributes();

  // The number of attributes.
  int Size() const;
  // Merges the other set into this one and returns whether this one changed. Which set wins where
  // both have an attribute is the host's; the library always passes true for the flag.
  bool Merge(const DatasourceAttributes& other, bool flag);

  struct Impl;  // the host's own, as is the constructor from it
  explicit DatasourceAttributes(std::unique_ptr<Impl> impl);

 private:
  friend class HostAccess;
  std::unique_ptr<Impl> impl_;
};

// Enumerations of a variable's properties. The library copies their values and knows only one of
// them: the level that stands for none.
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

  // An independent copy: naming it or giving it an identity leaves the other as it is.
  VELA_Variable(const VELA_Variable& other);
  VELA_Variable& operator=(const VELA_Variable&) = delete;
  ~VELA_Variable();

  // The name as the file spells it.
  const char* GetName() const;
  // The name in upper case, by the same rule as VELAMBstrupr_A.
  const char* GetUpperCaseName() const;
  // Renames the variable; the name is cut as names in a file are.
  void SetName(const char* name);
  // Gives the variable an identity of its own, which no other variable has.
  void NewID();

  // 0 for a numeric variable, else the width of the string in bytes. It never changes.
  int GetType() const;

  // The label; null when there is none.
  const char* GetLabel() const;
  // Sets the label to a copy of the text, which may be empty.
  void SetLabel(const char* label);

  VELA_Variable_Enumerations::Alignment GetAlignment() const;
  void SetAlignment(VELA_Variable_Enumerations::Alignment alignment);

  // The print format: its type, its width in characters and its decimals.
  void GetFormat(FormatType& type, int& width, int& decimals) const;
  // REQUIRES of a string variable: the width is its own, or twice that for FormatHexString.
  void SetFormat(FormatType type, int width, int decimals);
  // The write format, likewise.
  void GetWriteFormatEx(FormatType& type, int& width, int& decimals) const;
  void SetWriteFormat(FormatType type, int width, int decimals);

  VELA_Variable_Enumerations::MeasurementLevel GetMeasurementLevel() const;
  void SetMeasurementLevel(VELA_Variable_Enumerations::MeasurementLevel level);

  // The missing values: returns the count n, |n| at most 3, and sets the first |n| pointers. What a
  // negative count says is the host's.
  int GetMissingValues(const OBS*& first, const OBS*& second, const OBS*& third) const;
  // Sets them to what GetMissingValues of a variable of the same kind gave: the count as it was,
  // the values copied. Their width is not told: the host finds it in its value cells. Of a wider
  // string at most trailing blanks are lost; the library has tested that.
  void SetMissingValues(int count, const OBS* first, const OBS* second, const OBS* third);

  VELA_Variable_Enumerations::Role GetRole() const;
  void SetRole(VELA_Variable_Enumerations::Role role);

  // The handle of the value labels; null when there are none.
  const VELA_VLImplPointer& GetValueLabels() const;
  // Makes the set the variable's. Sets of the variable's type are shared by their handle; a set of
  // strings of another width is held at the variable's own, where at most trailing blanks are lost.
  void SetValueLabels(const VELA_VLImplPointer& set);

  // The column width for display, in characters; 0 when there is none.
  short GetDisplayWidth() const;
  void SetDisplayWidth(short width);

  const DatasourceAttributes& GetAttributes() const;
  // Replaces the attributes by a copy of the set.
  void SetAttributes(const DatasourceAttributes& attributes);

  struct Impl;  // the host's own, as is the constructor from it
  explicit VELA_Variable(std::unique_ptr<Impl> impl);

 private:
  friend class HostAccess;
  std::unique_ptr<Impl> impl_;
};

// A data source: the dictionary of a file.
class VELA_DataSource {
 public:
  // A numbered block of information that a data source carries besides its variables; a value.
  // Block 0 holds the documents.
  class Extension {
   public:
    // A copy of the data source's block. REQUIRES: dataSource.HasExtension(number).
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
  // The variable at a column. REQUIRES: 0 <= column < ColumnCount(). The reference lives as long as
  // the data source, insertions included.
  const VELA_Variable& GetVariable(int column) const;
  VELA_Variable& GetVariable(int column);
  // The column of the variable of that name, or -1. The library passes 0 for the mode. Whether
  // letter case counts is the host's choice: see DEDataStore::InsertVariable.
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

  struct Impl;  // the host's own, as is the constructor from it
  explicit VELA_DataSource(std::unique_ptr<Impl> impl);

 private:
  friend class HostAccess;
  std::unique_ptr<Impl> impl_;
};

// A data source that takes new variables. The working file is made one before the library inserts
// anything; it is told apart from other data sources at run time.
class DEDataStore : public VELA_DataSource {
 public:
  // A store over the data source, with its variables and file-level information as they are now;
  // the data source stays as it is and is not owned. The library creates the store on the heap and
  // hands it over: the host owns it from its construction on and destroys it when it is no longer
  // the working data source of any run.
  explicit DEDataStore(const VELA_DataSource* base);
  ~DEDataStore() override;

  // Inserts a copy of the variable as a new column. Every other variable, the text of every name
  // and every pointer into them stays valid. The library inserts only at the end, a position equal
  // to ColumnCount(), and inserts no name twice in a run, in whatever case. With NEWVARS, SOURCE
  // and TARGET it inserts each name that FindVarIndex does not find. So where FindVarIndex minds
  // letter case, the store may have the name in another case. A store that does not keep both
  // throws an ErrorText.
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
// Removes repeated documents from the list. Of equal ones the host keeps one; the library puts the
// working file's before the source's.
void DeDup(std::vector<DSDocument>& documents);
// Makes the list the data source's documents, in place of those that it had.
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

  std::int32_t kind = VarSetsVariableSets;
  std::vector<bool> flags = {false};  // by Flag
  std::string name;
  std::string label;
  std::string type;                  // what the set is for, in the host's words
  std::vector<std::string> members;  // the names of its variables, in order
};

// The data source's sets of one kind, in stored order.
std::vector<VariableSet> VariableSets(const VELA_DataSource& dataSource, VarSetsType type);
// Makes the list the data source's whole collection of sets of that kind, in that order. What
// becomes of members that the data source does not have is the host's.
void SaveVariableSets(const std::vector<VariableSet>& sets, VELA_DataSource& dataSource,
                      VarSetsType type);

// Copies the text into the buffer of bound bytes, zero-terminated; what does not fit is cut off
// between characters. Returns the buffer.
char* VELAMBzstncpy_A(char* buffer, const char* text, std::size_t bound);
// Turns the text into upper case in place and returns it. The text never grows: a letter whose
// capital takes more bytes than it does stays as it is, here and in GetUpperCaseName.
char* VELAMBstrupr_A(char* text);
