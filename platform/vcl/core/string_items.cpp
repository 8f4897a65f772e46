#include "platform/vcl/core/string_items.h"

#include <algorithm>

namespace Classes {

namespace {
// A block is split in two when it passes twice this; made in blocks this size.
constexpr size_t kBlock = 128;

// A block of a long list, with room for its most lines at once: it never
// moves its lines to grow. (A short list's one block grows as it needs.)
std::vector<TStringItem> NewBlock() {
  std::vector<TStringItem> block;
  block.reserve(2 * kBlock + 1);
  return block;
}
}  // namespace

std::pair<size_t, size_t> TStringItems::Locate(int index) const {
  if (blocks_.size() == 1) return {0, static_cast<size_t>(index)};
  const auto b = static_cast<size_t>(std::upper_bound(firsts_.begin(), firsts_.end(), index) - firsts_.begin() - 1);
  return {b, static_cast<size_t>(index - firsts_[b])};
}

TStringItem& TStringItems::operator[](int index) {
  const auto [b, at] = Locate(index);
  return blocks_[b][at];
}

const TStringItem& TStringItems::operator[](int index) const {
  const auto [b, at] = Locate(index);
  return blocks_[b][at];
}

void TStringItems::Insert(int index, TStringItem item) {
  if (blocks_.empty()) {
    blocks_.emplace_back();
    firsts_.push_back(0);
  }
  if (index == count_ && blocks_.back().size() == 2 * kBlock) {
    // Appending to a full list: a new block, nothing moves.
    firsts_.push_back(count_);
    blocks_.push_back(NewBlock());
  }
  // The end goes to the last block: appends fill it up.
  const auto [b, at] = index == count_ ? std::pair{blocks_.size() - 1, blocks_.back().size()} : Locate(index);
  std::vector<TStringItem>& block = blocks_[b];
  block.insert(block.begin() + static_cast<std::ptrdiff_t>(at), std::move(item));
  ++count_;
  for (size_t i = b + 1; i < firsts_.size(); ++i) ++firsts_[i];
  if (block.size() <= 2 * kBlock) return;
  std::vector<TStringItem> back = NewBlock();
  back.insert(back.end(), std::make_move_iterator(block.begin() + kBlock), std::make_move_iterator(block.end()));
  block.erase(block.begin() + kBlock, block.end());
  blocks_.insert(blocks_.begin() + static_cast<std::ptrdiff_t>(b + 1), std::move(back));
  firsts_.insert(firsts_.begin() + static_cast<std::ptrdiff_t>(b + 1), firsts_[b] + static_cast<int>(kBlock));
}

void TStringItems::Erase(int index) {
  const auto [b, at] = Locate(index);
  std::vector<TStringItem>& block = blocks_[b];
  block.erase(block.begin() + static_cast<std::ptrdiff_t>(at));
  --count_;
  for (size_t i = b + 1; i < firsts_.size(); ++i) --firsts_[i];
  if (block.empty() && blocks_.size() > 1) {
    blocks_.erase(blocks_.begin() + static_cast<std::ptrdiff_t>(b));
    firsts_.erase(firsts_.begin() + static_cast<std::ptrdiff_t>(b));
  }
}

// The first block stays, with its room, for the lines to come.
void TStringItems::Clear() {
  if (blocks_.size() > 1) {
    blocks_.resize(1);
    firsts_.resize(1);
  }
  if (!blocks_.empty()) blocks_[0].clear();
  count_ = 0;
}

int TStringItems::LowerBound(const std::string& key) const {
  // The first block whose last key is not below key holds the answer.
  const auto block = std::partition_point(blocks_.begin(), blocks_.end(), [&](const std::vector<TStringItem>& b) {
    return b.empty() || b.back().key < key;
  });
  if (block == blocks_.end()) return count_;
  const auto at = std::partition_point(block->begin(), block->end(), [&](const TStringItem& i) { return i.key < key; });
  const auto b = static_cast<size_t>(block - blocks_.begin());
  return firsts_[b] + static_cast<int>(at - block->begin());
}

std::vector<TStringItem> TStringItems::Take() {
  std::vector<TStringItem> items;
  items.reserve(static_cast<size_t>(count_));
  for (auto& block : blocks_)
    for (TStringItem& item : block) items.push_back(std::move(item));
  blocks_.clear();
  firsts_.clear();
  count_ = 0;
  return items;
}

void TStringItems::Assign(std::vector<TStringItem> items) {
  blocks_.clear();
  firsts_.clear();
  if (items.size() <= 2 * kBlock) {
    count_ = static_cast<int>(items.size());
    blocks_.push_back(std::move(items));
    firsts_.push_back(0);
    return;
  }
  for (size_t from = 0; from < items.size(); from += kBlock) {
    const size_t to = std::min(items.size(), from + kBlock);
    firsts_.push_back(static_cast<int>(from));
    blocks_.push_back(NewBlock());
    blocks_.back().insert(blocks_.back().end(),
                          std::make_move_iterator(items.begin() + static_cast<std::ptrdiff_t>(from)),
                          std::make_move_iterator(items.begin() + static_cast<std::ptrdiff_t>(to)));
  }
  count_ = static_cast<int>(items.size());
}

}  // namespace Classes
