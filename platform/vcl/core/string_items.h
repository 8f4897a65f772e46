#pragma once
/// \file
/// The lines a string list keeps.
#include <string>
#include <utility>
#include <vector>

#include "platform/vcl/core/system.h"

namespace Classes {

/// A line of a string list: the string, the object beside it and, while the
/// list is sorted, the string's sort key.
struct TStringItem {
  System::AnsiString text;
  System::TObject* object = nullptr;
  std::string key;
};

/// Lines by index, held in blocks of a few dozen: inserting or deleting
/// anywhere moves the lines of one block and shifts one start a block,
/// instead of moving every line behind it. Reaching a line by its index costs
/// O(log blocks); a list of one block is a plain array.
class TStringItems {
 public:
  int Count() const { return count_; }
  /// 0 <= index < Count().
  TStringItem& operator[](int index);
  const TStringItem& operator[](int index) const;
  /// 0 <= index <= Count().
  void Insert(int index, TStringItem item);
  void Erase(int index);
  void Clear();
  /// Lines ordered by key: the first whose key is not below key.
  int LowerBound(const std::string& key) const;
  /// Every line in order, leaving none; and lines to hold instead of these.
  std::vector<TStringItem> Take();
  void Assign(std::vector<TStringItem> items);
  /// Calls f with each line in order.
  template <class F>
  void ForEach(F f) {
    for (auto& block : blocks_)
      for (TStringItem& item : block) f(item);
  }

 private:
  /// The block holding index and the place in it.
  std::pair<size_t, size_t> Locate(int index) const;

  std::vector<std::vector<TStringItem>> blocks_;
  std::vector<int> firsts_;  // the index of each block's first line
  int count_ = 0;
};

}  // namespace Classes
