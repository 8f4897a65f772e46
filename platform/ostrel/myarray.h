#pragma once
/// \file
/// Growable arrays of pointers and of values.
#include <cstddef>
#include <functional>
#include <type_traits>
#include <vector>

#include "platform/ostrel/ostrel_api.h"

/// Growable array of fixed-size elements stored by value, one after another.
/// Capacity starts at a given count (20 by default) and, when full, grows by
/// the given step (20 by default) or by half of itself, whichever is more, so
/// that n appends cost O(n) in all. Indexes start at 0. A bad index is never
/// undefined behaviour: Item gives null, AddAt returns -1 and DeleteNum false,
/// and the array is left as it was. Not thread-safe.
///
/// Item hooks for subclasses:
///   FreeItem(item)        once for each element that leaves the array through
///                         DeleteNum or DeleteAll. The element has already been
///                         taken out (item points to a copy), so the hook may
///                         use the array. The base does nothing.
///   CompareItems(a, key)  the order Search uses when it is given no comparer.
///                         The base compares the element bytes (memcmp).
/// The typed arrays below turn these into ReleaseItem and Compare. A subclass
/// that overrides the release hook calls DeleteAll() in its own destructor:
/// once a destructor of a base runs, the override can no longer be reached.
class OSTREL_API BaseArray {
 public:
  static constexpr int DefaultCapacity = 20;
  static constexpr int DefaultStep = 20;

  /// Order of an element against a search key: <0, 0 or >0 as item comes
  /// before, with or after key. Both point to element-shaped values; context is
  /// what the caller passed to Search.
  using CompareFunc = int (*)(const void* item, const void* key, const void* context);

  /// elementSize, capacity and step must be positive (std::invalid_argument).
  explicit BaseArray(int elementSize, bool ownsItems = false, int capacity = DefaultCapacity, int step = DefaultStep);
  virtual ~BaseArray();
  BaseArray(const BaseArray&) = delete;
  BaseArray& operator=(const BaseArray&) = delete;

  int Count() const { return count_; }
  /// Elements that fit before the storage grows again; storage for all of
  /// them is reserved.
  int Capacity() const { return capacity_; }
  int ElementSize() const { return elementSize_; }
  /// Elements the next growth adds: the step given, or half the capacity
  /// once that is more.
  int Step() const { return capacity_ / 2 > step_ ? capacity_ / 2 : step_; }
  /// Whether elements leaving the array are destroyed (what that means is the
  /// typed array's business: MyArray<T*> deletes the pointed-to objects).
  bool GetOwnsItems() const { return ownsItems_; }
  void SetOwnsItems(bool value) { ownsItems_ = value; }

  /// Appends a copy of ElementSize() bytes from item, or a zero-filled element
  /// when item is null; returns its index.
  int Add(const void* item);
  /// Inserts before index (0..Count(), Count() appends); returns index, or -1
  /// with nothing added when index is out of range.
  int AddAt(int index, const void* item);
  /// The stored element, valid until the array next changes; null when index
  /// is out of range.
  void* Item(int index);
  const void* Item(int index) const;

  /// Binary search of an array sorted by the comparer (CompareItems when null).
  /// *index receives the insertion point: the first element not ordered before
  /// key, so with equal elements the first of them, and Count() when every
  /// element comes before key. Returns whether that element equals key.
  /// index may be null.
  bool Search(const void* key, int* index, CompareFunc compare = nullptr, const void* context = nullptr) const;

  /// Removes one element (FreeItem sees it); false when index is out of range.
  bool DeleteNum(int index);
  /// Removes every element, first to last, and goes back to the first capacity.
  void DeleteAll();

 protected:
  virtual void FreeItem(void* item);
  virtual int CompareItems(const void* item, const void* key) const;

 private:
  unsigned char* Slot(int index) { return data_.data() + static_cast<std::size_t>(index) * elementSize_; }
  const unsigned char* Slot(int index) const { return data_.data() + static_cast<std::size_t>(index) * elementSize_; }
  /// Makes room for one more element, growing by Step() when full.
  void GrowForOne();

  std::vector<unsigned char> data_;
  int elementSize_;
  int firstCapacity_;
  int capacity_ = 0;
  int step_;
  int count_ = 0;
  bool ownsItems_;
};

template <class T>
class MyArray;

/// Array of object pointers. When it owns its items, every pointer leaving the
/// array (DeleteNum, DeleteAll, destruction) is deleted with `delete`.
/// Ownership of a pointer passes to the array only when Add/AddAt stores it.
template <class T>
class MyArray<T*> : public BaseArray {
 public:
  /// Order of a stored pointer against a key pointer (<0, 0, >0).
  using Comparer = int (*)(const T* item, const T* key);

  explicit MyArray(bool ownsItems = false, int capacity = DefaultCapacity, int step = DefaultStep)
      : BaseArray(sizeof(T*), ownsItems, capacity, step) {}
  ~MyArray() override { DeleteAll(); }

  int Add(T* item) { return BaseArray::Add(&item); }
  int AddAt(int index, T* item) { return BaseArray::AddAt(index, &item); }
  /// The pointer at index; null when index is out of range.
  T* Item(int index) const {
    const void* slot = BaseArray::Item(index);
    return slot ? *static_cast<T* const*>(slot) : nullptr;
  }
  T* operator[](int index) const { return Item(index); }
  /// Index of the first slot holding item, or -1.
  int IndexOf(const T* item) const {
    for (int i = 0; i < Count(); ++i)
      if (Item(i) == item) return i;
    return -1;
  }
  /// As BaseArray::Search, ordered by compare or, when null, by Compare().
  bool Search(const T* key, int* index, Comparer compare = nullptr) const {
    if (!compare) return BaseArray::Search(&key, index);
    return BaseArray::Search(&key, index, &CallComparer, &compare);
  }

 protected:
  /// Called for each pointer leaving the array; deletes it when owned.
  virtual void ReleaseItem(T* item) {
    if (GetOwnsItems()) delete item;
  }
  /// Default order: by address.
  virtual int Compare(const T* item, const T* key) const {
    return std::less<const T*>()(item, key) ? -1 : std::less<const T*>()(key, item) ? 1 : 0;
  }

 private:
  void FreeItem(void* item) final { ReleaseItem(*static_cast<T**>(item)); }
  int CompareItems(const void* item, const void* key) const final {
    return Compare(*static_cast<T* const*>(item), *static_cast<const T* const*>(key));
  }
  static int CallComparer(const void* item, const void* key, const void* context) {
    return (*static_cast<const Comparer*>(context))(*static_cast<T* const*>(item), *static_cast<const T* const*>(key));
  }
};

/// Array of plain values (trivially copyable: they are moved as bytes). The
/// owns-items flag means nothing to the array itself; it is there for
/// subclasses whose ReleaseItem frees what a value refers to.
template <class T>
class MyValArray : public BaseArray {
  static_assert(std::is_trivially_copyable_v<T>, "MyValArray holds values that are copied as bytes");
  static_assert(alignof(T) <= alignof(std::max_align_t), "over-aligned element type");

 public:
  /// Order of a stored value against a key (<0, 0, >0).
  using Comparer = int (*)(const T* item, const T* key);

  explicit MyValArray(bool ownsItems = false, int capacity = DefaultCapacity, int step = DefaultStep)
      : BaseArray(sizeof(T), ownsItems, capacity, step) {}

  int Add(const T& item) { return BaseArray::Add(&item); }
  int AddAt(int index, const T& item) { return BaseArray::AddAt(index, &item); }
  /// The stored value, valid until the array next changes; null when index is
  /// out of range.
  T* Item(int index) { return static_cast<T*>(BaseArray::Item(index)); }
  const T* Item(int index) const { return static_cast<const T*>(BaseArray::Item(index)); }
  /// As BaseArray::Search, ordered by compare or, when null, by Compare().
  bool Search(const T& key, int* index, Comparer compare = nullptr) const {
    if (!compare) return BaseArray::Search(&key, index);
    return BaseArray::Search(&key, index, &CallComparer, &compare);
  }

 protected:
  /// Called for each value leaving the array (a copy of it); nothing by default.
  virtual void ReleaseItem(T* item) { (void)item; }
  /// Default order: BaseArray's byte order.
  virtual int Compare(const T* item, const T* key) const { return BaseArray::CompareItems(item, key); }

 private:
  void FreeItem(void* item) final { ReleaseItem(static_cast<T*>(item)); }
  int CompareItems(const void* item, const void* key) const final {
    return Compare(static_cast<const T*>(item), static_cast<const T*>(key));
  }
  static int CallComparer(const void* item, const void* key, const void* context) {
    return (*static_cast<const Comparer*>(context))(static_cast<const T*>(item), static_cast<const T*>(key));
  }
};
