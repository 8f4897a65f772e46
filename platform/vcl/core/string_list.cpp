#include "platform/vcl/core/string_list.h"

#include <windows.h>

#include <algorithm>

#include "platform/vcl/core/filer.h"

namespace Classes {

VCL_CLASS_IMPL(TStrings, TPersistent)
VCL_CLASS_IMPL(TStringList, TStrings)

void TStrings::DefineProperties(TFiler* filer) {
  filer->DefineProperty("Strings", {this, &TStrings::ReadData}, {this, &TStrings::WriteData}, GetCount() > 0);
}

void TStrings::ReadData(TReader* reader) {
  reader->ReadListBegin();
  BeginUpdate();
  try {
    Clear();
    while (!reader->EndOfList()) Add(reader->ReadString());
  } catch (...) {
    EndUpdate();
    throw;
  }
  EndUpdate();
  reader->ReadListEnd();
}

void TStrings::WriteData(TWriter* writer) {
  writer->WriteListBegin();
  for (int i = 0; i < GetCount(); ++i) writer->WriteString(Get(i));
  writer->WriteListEnd();
}

namespace {
DWORD CompareFlags(bool caseSensitive) { return caseSensitive ? 0 : NORM_IGNORECASE; }

int Compare(const AnsiString& a, const AnsiString& b, bool caseSensitive) {
  return CompareStringA(LOCALE_USER_DEFAULT, CompareFlags(caseSensitive), a.c_str(), a.Length(), b.c_str(),
                        b.Length()) -
         CSTR_EQUAL;
}
}  // namespace

// ---- TStrings ----

void TStrings::IndexError(int index) const { ListIndexError<EStringListError>(index); }

void TStrings::Put(int index, const AnsiString& value) {
  TObject* object = GetObjects(index);
  BeginUpdate();
  Delete(index);
  InsertObject(index, value, object);
  EndUpdate();
}

TObject* TStrings::GetObjects(int) const { return nullptr; }
void TStrings::SetObjects(int, TObject*) {}

int TStrings::Add(const AnsiString& value) {
  const int index = GetCount();
  Insert(index, value);
  return index;
}

int TStrings::AddObject(const AnsiString& value, TObject* object) {
  const int index = Add(value);
  SetObjects(index, object);
  return index;
}

void TStrings::InsertObject(int index, const AnsiString& value, TObject* object) {
  Insert(index, value);
  SetObjects(index, object);
}

void TStrings::AddStrings(const TStrings* strings) {
  if (!strings) return;
  BeginUpdate();
  for (int i = 0, n = strings->GetCount(); i < n; ++i) AddObject(strings->Get(i), strings->GetObjects(i));
  EndUpdate();
}

void TStrings::Move(int from, int to) {
  if (from == to) return;
  BeginUpdate();
  const AnsiString text = Get(from);
  TObject* object = GetObjects(from);
  Delete(from);
  InsertObject(to, text, object);
  EndUpdate();
}

void TStrings::Exchange(int index1, int index2) {
  BeginUpdate();
  const AnsiString text = Get(index1);
  TObject* object = GetObjects(index1);
  Put(index1, Get(index2));
  SetObjects(index1, GetObjects(index2));
  Put(index2, text);
  SetObjects(index2, object);
  EndUpdate();
}

int TStrings::IndexOf(const AnsiString& value) const {
  for (int i = 0, n = GetCount(); i < n; ++i)
    if (CompareStrings(Get(i), value) == 0) return i;
  return -1;
}

int TStrings::IndexOfObject(const TObject* object) const {
  for (int i = 0, n = GetCount(); i < n; ++i)
    if (GetObjects(i) == object) return i;
  return -1;
}

int TStrings::IndexOfName(const AnsiString& name) const {
  for (int i = 0, n = GetCount(); i < n; ++i) {
    const AnsiString line = Get(i);
    const int eq = line.Pos("=");
    if (eq > 0 && CompareStrings(line.SubString(1, eq - 1), name) == 0) return i;
  }
  return -1;
}

AnsiString TStrings::GetValue(const AnsiString& name) const {
  const int i = IndexOfName(name);
  if (i < 0) return AnsiString();
  const AnsiString line = Get(i);
  return line.SubString(line.Pos("=") + 1, line.Length());
}

void TStrings::SetValue(const AnsiString& name, const AnsiString& value) {
  const int i = IndexOfName(name);
  if (value.IsEmpty()) {
    if (i >= 0) Delete(i);
  } else if (i >= 0) {
    Put(i, name + "=" + value);
  } else {
    Add(name + "=" + value);
  }
}

AnsiString TStrings::GetText() const {
  std::string text;
  for (int i = 0, n = GetCount(); i < n; ++i) (text += Get(i).str()) += "\r\n";
  return AnsiString(text);
}

void TStrings::SetText(const AnsiString& value) {
  BeginUpdate();
  Clear();
  const std::string& s = value.str();
  size_t start = 0;
  while (start < s.size()) {
    size_t end = s.find_first_of("\r\n", start);
    if (end == std::string::npos) end = s.size();
    Add(AnsiString(s.substr(start, end - start)));
    if (end < s.size() && s[end] == '\r' && end + 1 < s.size() && s[end + 1] == '\n') ++end;
    start = end + 1;
  }
  EndUpdate();
}

void TStrings::Assign(TPersistent* source) {
  if (auto* strings = dynamic_cast<TStrings*>(source)) {
    if (strings == this) return;
    BeginUpdate();
    Clear();
    AddStrings(strings);
    EndUpdate();
    return;
  }
  TPersistent::Assign(source);
}

bool TStrings::Equals(const TStrings* strings) const {
  if (!strings || strings->GetCount() != GetCount()) return false;
  for (int i = 0, n = GetCount(); i < n; ++i)
    if (!(Get(i) == strings->Get(i))) return false;
  return true;
}

void TStrings::BeginUpdate() {
  if (updateCount_ == 0) SetUpdateState(true);
  ++updateCount_;
}

void TStrings::EndUpdate() {
  if (updateCount_ == 0) return;
  if (--updateCount_ == 0) SetUpdateState(false);
}

void TStrings::SetUpdateState(bool) {}

int TStrings::CompareStrings(const AnsiString& a, const AnsiString& b) const { return Compare(a, b, false); }

// ---- TStringList ----

TStringList::~TStringList() {
  // No events from a list that is going.
  onChange_ = nullptr;
  onChanging_ = nullptr;
}

void TStringList::CheckIndex(int index) const {
  if (index < 0 || index >= GetCount()) IndexError(index);
}

void TStringList::CheckUnsorted() const {
  if (sorted_) throw EStringListError("Operation not allowed on sorted string list");
}

AnsiString TStringList::Get(int index) const {
  CheckIndex(index);
  return items_[index].text;
}

void TStringList::Put(int index, const AnsiString& value) {
  CheckUnsorted();
  CheckIndex(index);
  Changing();
  items_[index].text = value;
  Changed();
}

TObject* TStringList::GetObjects(int index) const {
  CheckIndex(index);
  return items_[index].object;
}

void TStringList::SetObjects(int index, TObject* object) {
  CheckIndex(index);
  Changing();
  items_[index].object = object;
  Changed();
}

void TStringList::Insert(int index, const AnsiString& value) {
  CheckUnsorted();
  if (index < 0 || index > GetCount()) IndexError(index);
  InsertItem(index, value, nullptr);
}

void TStringList::InsertItem(int index, const AnsiString& value, TObject* object, std::string key) {
  Changing();
  items_.Insert(index, TStringItem{value, object, std::move(key)});
  Changed();
}

int TStringList::Add(const AnsiString& value) {
  if (!sorted_) {
    const int index = GetCount();
    InsertItem(index, value, nullptr);
    return index;
  }
  std::string key = SortKey(value);
  int index = 0;
  if (FindKey(key, index)) {
    if (duplicates_ == dupIgnore) return index;
    if (duplicates_ == dupError) throw EStringListError("String list does not allow duplicates");
  }
  InsertItem(index, value, nullptr, std::move(key));
  return index;
}

// One locale call a string; the keys then compare as bytes in the order
// CompareStringA gives, equal exactly when it finds the strings equal.
std::string TStringList::SortKey(const AnsiString& value) const {
  const DWORD flags = LCMAP_SORTKEY | CompareFlags(caseSensitive_);
  std::string key(static_cast<size_t>(value.Length()) * 4 + 32, '\0');
  int n =
      LCMapStringA(LOCALE_USER_DEFAULT, flags, value.c_str(), value.Length(), key.data(), static_cast<int>(key.size()));
  if (n == 0 && GetLastError() == ERROR_INSUFFICIENT_BUFFER) {
    key.resize(
        static_cast<size_t>(LCMapStringA(LOCALE_USER_DEFAULT, flags, value.c_str(), value.Length(), nullptr, 0)));
    n = LCMapStringA(LOCALE_USER_DEFAULT, flags, value.c_str(), value.Length(), key.data(),
                     static_cast<int>(key.size()));
  }
  key.resize(static_cast<size_t>(std::max(n, 0)));
  return key;
}

void TStringList::Delete(int index) {
  CheckIndex(index);
  Changing();
  items_.Erase(index);
  Changed();
}

void TStringList::Clear() {
  if (items_.Count() == 0) return;
  Changing();
  items_.Clear();
  Changed();
}

void TStringList::Exchange(int index1, int index2) {
  CheckIndex(index1);
  CheckIndex(index2);
  Changing();
  std::swap(items_[index1], items_[index2]);
  Changed();
}

int TStringList::IndexOf(const AnsiString& value) const {
  if (!sorted_) return TStrings::IndexOf(value);
  int index = 0;
  return Find(value, index) ? index : -1;
}

// Binary search; among equal strings the first.
bool TStringList::Find(const AnsiString& value, int& index) const {
  if (sorted_) return FindKey(SortKey(value), index);
  int low = 0, high = GetCount();
  while (low < high) {
    const int mid = low + (high - low) / 2;
    if (CompareStrings(items_[mid].text, value) < 0)
      low = mid + 1;
    else
      high = mid;
  }
  index = low;
  return low < GetCount() && CompareStrings(items_[low].text, value) == 0;
}

bool TStringList::FindKey(const std::string& key, int& index) const {
  index = items_.LowerBound(key);
  return index < items_.Count() && items_[index].key == key;
}

// By the sort keys, which the list keeps only while it is sorted.
void TStringList::Sort() {
  const bool order = GetCount() > 1;
  if (order) Changing();
  std::vector<TStringItem> items = items_.Take();
  for (TStringItem& item : items) item.key = SortKey(item.text);
  std::stable_sort(items.begin(), items.end(),
                   [](const TStringItem& a, const TStringItem& b) { return a.key < b.key; });
  if (!sorted_)
    for (TStringItem& item : items) std::string().swap(item.key);
  items_.Assign(std::move(items));
  if (order) Changed();
}

void TStringList::CustomSort(const std::function<int(const TStringList&, int, int)>& compare) {
  if (GetCount() < 2) return;
  Changing();
  // Sorted through indexes so that compare sees the list as it stands.
  std::vector<int> order(static_cast<size_t>(GetCount()));
  for (size_t i = 0; i < order.size(); ++i) order[i] = static_cast<int>(i);
  std::stable_sort(order.begin(), order.end(), [&](int a, int b) { return compare(*this, a, b) < 0; });
  std::vector<TStringItem> items = items_.Take();
  std::vector<TStringItem> sorted;
  sorted.reserve(items.size());
  for (int i : order) sorted.push_back(std::move(items[static_cast<size_t>(i)]));
  items_.Assign(std::move(sorted));
  Changed();
}

void TStringList::SetSorted(bool value) {
  if (value == sorted_) return;
  sorted_ = value;
  if (value) {
    Sort();
  } else {
    items_.ForEach([](TStringItem& item) { std::string().swap(item.key); });
  }
}

void TStringList::SetCaseSensitive(bool value) {
  if (value == caseSensitive_) return;
  caseSensitive_ = value;
  if (sorted_) Sort();
}

int TStringList::CompareStrings(const AnsiString& a, const AnsiString& b) const {
  return Compare(a, b, caseSensitive_);
}

void TStringList::SetUpdateState(bool updating) {
  if (updating)
    Changing();
  else
    Changed();
}

void TStringList::Changing() {
  if (GetUpdateCount() == 0) onChanging_(this);
}

void TStringList::Changed() {
  if (GetUpdateCount() == 0) onChange_(this);
}

}  // namespace Classes
