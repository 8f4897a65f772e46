#pragma once
/// \file
/// String lists.
#include <functional>
#include <string>
#include <vector>

#include "platform/vcl/core/classes.h"
#include "platform/vcl/core/string_items.h"
#include "platform/vcl/core/typinfo.h"

namespace Classes {

class TReader;
class TWriter;

/// What a sorted list does with a string it holds already.
enum TDuplicates { dupIgnore, dupAccept, dupError };
VCL_ENUM_INFO(TDuplicates, dupIgnore, dupAccept, dupError)

/// A list of strings, each with an object pointer beside it (not owned). The
/// storage is the derived class's: a string list, or the lines of a memo or the
/// items of a list box read from and written to the window. (Objects are
/// GetObjects/SetObjects: the system headers turn GetObject into a macro.)
/// Indexes outside
/// the list raise EStringListError "List index out of bounds (<index>)".
class VCL_API TStrings : public TPersistent {
  VCL_CLASS();

 public:
  /// The storage: what a derived class provides.
  virtual int GetCount() const = 0;
  virtual AnsiString Get(int index) const = 0;
  virtual void Put(int index, const AnsiString& value);
  /// The object beside a string (the default storage keeps none).
  virtual TObject* GetObjects(int index) const;
  virtual void SetObjects(int index, TObject* object);
  virtual void Insert(int index, const AnsiString& value) = 0;
  virtual void Delete(int index) = 0;
  virtual void Clear() = 0;

  /// Adds at the end (a sorted list: in its place); returns the index.
  virtual int Add(const AnsiString& value);
  int AddObject(const AnsiString& value, TObject* object);
  void InsertObject(int index, const AnsiString& value, TObject* object);
  void AddStrings(const TStrings* strings);
  virtual void Move(int from, int to);
  virtual void Exchange(int index1, int index2);

  AnsiString GetStrings(int index) const { return Get(index); }
  void SetStrings(int index, const AnsiString& value) { Put(index, value); }

  /// First index of the string (compared as CompareStrings does), or -1.
  virtual int IndexOf(const AnsiString& value) const;
  int IndexOfObject(const TObject* object) const;
  /// "name=value" lines: the first whose name matches, or -1; the value after '='.
  int IndexOfName(const AnsiString& name) const;
  AnsiString GetValue(const AnsiString& name) const;
  void SetValue(const AnsiString& name, const AnsiString& value);

  /// Every string followed by CR LF. Setting it replaces the list with the
  /// lines of the text, broken at CR LF, CR or LF; a break at the very end
  /// starts no further line.
  virtual AnsiString GetText() const;
  virtual void SetText(const AnsiString& value);

  /// Copies the strings and objects of another TStrings.
  void Assign(TPersistent* source) override;
  bool Equals(const TStrings* strings) const;

  /// Changes between BeginUpdate and the matching EndUpdate count as one: a
  /// string list announces them once, a window-backed list redraws once.
  void BeginUpdate();
  void EndUpdate();
  int GetUpdateCount() const { return updateCount_; }

 protected:
  /// Streams the strings as the defined property Strings: a list of strings.
  void DefineProperties(TFiler* filer) override;
  /// Called with true at the first BeginUpdate and false at the last EndUpdate.
  virtual void SetUpdateState(bool updating);
  /// Below 0, equal, above 0; the default ignores case, as the user's locale does.
  virtual int CompareStrings(const AnsiString& a, const AnsiString& b) const;
  [[noreturn]] void IndexError(int index) const;

 private:
  void ReadData(TReader* reader);
  void WriteData(TWriter* writer);
  int updateCount_ = 0;
};

/// A string list kept in memory, optionally sorted. A sorted list keeps each
/// string's sort key (made by the locale once, ordering as CompareStrings
/// does), so that finding a string costs one locale call and O(log n) byte
/// comparisons; inserting and deleting move a block of lines, not the list.
class VCL_API TStringList : public TStrings {
  VCL_CLASS();

 public:
  TStringList() = default;
  ~TStringList() override;

  int GetCount() const override { return items_.Count(); }
  AnsiString Get(int index) const override;
  /// A sorted list refuses Put, Insert and Move with EStringListError
  /// "Operation not allowed on sorted string list".
  void Put(int index, const AnsiString& value) override;
  TObject* GetObjects(int index) const override;
  void SetObjects(int index, TObject* object) override;
  void Insert(int index, const AnsiString& value) override;
  void Delete(int index) override;
  void Clear() override;
  int Add(const AnsiString& value) override;
  void Exchange(int index1, int index2) override;
  int IndexOf(const AnsiString& value) const override;

  /// Sorted: where value is or would go; true when it is there.
  bool Find(const AnsiString& value, int& index) const;
  void Sort();
  void CustomSort(const std::function<int(const TStringList&, int, int)>& compare);

  bool GetSorted() const { return sorted_; }
  void SetSorted(bool value);
  /// What Add does with a string a sorted list holds already.
  TDuplicates GetDuplicates() const { return duplicates_; }
  void SetDuplicates(TDuplicates value) { duplicates_ = value; }
  bool GetCaseSensitive() const { return caseSensitive_; }
  void SetCaseSensitive(bool value);

  /// Before and after every change, or once around an update bracket.
  System::TNotifyEvent GetOnChange() const { return onChange_; }
  void SetOnChange(System::TNotifyEvent value) { onChange_ = value; }
  System::TNotifyEvent GetOnChanging() const { return onChanging_; }
  void SetOnChanging(System::TNotifyEvent value) { onChanging_ = value; }

 protected:
  void SetUpdateState(bool updating) override;
  int CompareStrings(const AnsiString& a, const AnsiString& b) const override;
  virtual void Changing();
  virtual void Changed();

 private:
  void CheckIndex(int index) const;
  void CheckUnsorted() const;
  void InsertItem(int index, const AnsiString& value, TObject* object, std::string key = {});
  std::string SortKey(const AnsiString& value) const;
  /// As Find, by a sort key.
  bool FindKey(const std::string& key, int& index) const;

  TStringItems items_;
  bool sorted_ = false;
  bool caseSensitive_ = false;
  TDuplicates duplicates_ = dupIgnore;
  System::TNotifyEvent onChange_;
  System::TNotifyEvent onChanging_;
};

}  // namespace Classes
