#include "platform/ostrel/myarray.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <functional>
#include <ranges>
#include <stdexcept>

BaseArray::BaseArray(int elementSize, bool ownsItems, int capacity, int step)
    : elementSize_(elementSize), firstCapacity_(capacity), capacity_(capacity), step_(step), ownsItems_(ownsItems) {
  if (elementSize <= 0 || capacity <= 0 || step <= 0)
    throw std::invalid_argument("BaseArray: element size, capacity and step must be positive");
}

BaseArray::~BaseArray() = default;

void BaseArray::GrowForOne() {
  if (count_ == capacity_) {
    if (capacity_ == INT_MAX) throw std::length_error("BaseArray: too many elements");
    capacity_ += std::min(Step(), INT_MAX - capacity_);
  }
  // Storage is taken lazily, a whole capacity at a time, so that the figure
  // Capacity() reports is the memory actually reserved.
  const std::size_t bytes = static_cast<std::size_t>(capacity_) * elementSize_;
  if (data_.capacity() < bytes) data_.reserve(bytes);
}

int BaseArray::Add(const void* item) { return AddAt(count_, item); }

int BaseArray::AddAt(int index, const void* item) {
  if (index < 0 || index > count_) return -1;
  // An element of this array as the source would move when the storage grows.
  std::vector<unsigned char> own;
  const auto* bytes = static_cast<const unsigned char*>(item);
  if (bytes && !data_.empty() && !std::less<const unsigned char*>()(bytes, data_.data()) &&
      std::less<const unsigned char*>()(bytes, data_.data() + data_.size())) {
    own.assign(bytes, bytes + elementSize_);
    bytes = own.data();
  }
  GrowForOne();
  const auto at = data_.begin() + static_cast<std::ptrdiff_t>(index) * elementSize_;
  if (bytes) {
    data_.insert(at, bytes, bytes + elementSize_);
  } else {
    data_.insert(at, static_cast<std::size_t>(elementSize_), 0);
  }
  ++count_;
  return index;
}

void* BaseArray::Item(int index) { return index >= 0 && index < count_ ? Slot(index) : nullptr; }

const void* BaseArray::Item(int index) const { return index >= 0 && index < count_ ? Slot(index) : nullptr; }

bool BaseArray::Search(const void* key, int* index, CompareFunc compare, const void* context) const {
  auto order = [&](int i) { return compare ? compare(Slot(i), key, context) : CompareItems(Slot(i), key); };
  const auto all = std::views::iota(0, count_);
  const auto first = std::ranges::partition_point(all, [&](int i) { return order(i) < 0; });
  const int at = static_cast<int>(first - all.begin());
  if (index) *index = at;
  return at < count_ && order(at) == 0;
}

bool BaseArray::DeleteNum(int index) {
  if (index < 0 || index >= count_) return false;
  // The hook gets a copy: the array is already consistent when it runs.
  std::vector<unsigned char> gone(Slot(index), Slot(index) + elementSize_);
  const auto at = data_.begin() + static_cast<std::ptrdiff_t>(index) * elementSize_;
  data_.erase(at, at + elementSize_);
  --count_;
  FreeItem(gone.data());
  return true;
}

void BaseArray::DeleteAll() {
  std::vector<unsigned char> gone;
  gone.swap(data_);
  const int n = count_;
  count_ = 0;
  capacity_ = firstCapacity_;
  for (int i = 0; i < n; ++i) FreeItem(gone.data() + static_cast<std::size_t>(i) * elementSize_);
}

void BaseArray::FreeItem(void*) {}

int BaseArray::CompareItems(const void* item, const void* key) const {
  return std::memcmp(item, key, static_cast<std::size_t>(elementSize_));
}
