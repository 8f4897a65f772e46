#include "platform/vcl/core/owned_components.h"

#include <bit>

#include "platform/vcl/core/component.h"

namespace Classes {

namespace {
// Up to this many names, a search in place beats hashing and costs no memory.
constexpr int kPlainNames = 16;

std::string_view NameOf(const TComponent* component) { return component->GetName().str(); }
}  // namespace

TComponent* TOwnedComponents::At(int index) const {
  if (holes_ == 0) return slots_[static_cast<size_t>(index)];
  if (counts_.empty()) BuildCounts();
  // Down the tree to the slot holding the (index + 1)-th live component.
  const size_t n = slots_.size();
  size_t pos = 0;
  int rest = index + 1;
  for (size_t step = std::bit_floor(n); step; step >>= 1)
    if (pos + step <= n && counts_[pos + step] < rest) {
      pos += step;
      rest -= counts_[pos];
    }
  return slots_[pos];
}

int TOwnedComponents::IndexOf(const TComponent* component) const { return LiveBefore(component->ownerSlot_); }

void TOwnedComponents::Add(TComponent* component) {
  component->ownerSlot_ = static_cast<int>(slots_.size());
  slots_.push_back(component);
  if (!counts_.empty()) {
    // The new node covers the live slots in (i - lowbit(i), i].
    const int i = static_cast<int>(slots_.size());
    counts_.push_back(1 + LiveBefore(i - 1) - LiveBefore(i - (i & -i)));
  }
  Index(component);
  if (component->siblingNotification_) listeners_.Add(component);
}

void TOwnedComponents::Remove(TComponent* component) {
  Unindex(component);
  listeners_.Remove(component);
  const auto slot = static_cast<size_t>(component->ownerSlot_);
  component->ownerSlot_ = -1;
  if (slot + 1 == slots_.size()) {
    // No node below the last covers it: the tree shrinks with the slots.
    slots_.pop_back();
    if (!counts_.empty()) counts_.pop_back();
    for (; !slots_.empty() && !slots_.back(); --holes_) {
      slots_.pop_back();
      if (!counts_.empty()) counts_.pop_back();
    }
    return;
  }
  slots_[slot] = nullptr;
  ++holes_;
  if (!counts_.empty())
    for (size_t i = slot + 1; i < counts_.size(); i += i & -i) --counts_[i];
  if (static_cast<size_t>(holes_) * 2 > slots_.size()) Compact();
}

TComponent* TOwnedComponents::Find(std::string_view name) const {
  if (name.empty()) return nullptr;
  TComponent* found = nullptr;
  if (names_) {
    // Names are unique unless a ValidateRename allowed otherwise: then the first.
    const auto [first, last] = names_->equal_range(name);
    for (auto it = first; it != last; ++it)
      if (!found || it->second->ownerSlot_ < found->ownerSlot_) found = it->second;
    return found;
  }
  for (TComponent* c : slots_)
    if (c && TNameEqual()(NameOf(c), name)) return c;
  return nullptr;
}

void TOwnedComponents::BeforeRename(TComponent* component) { Unindex(component); }

void TOwnedComponents::AfterRename(TComponent* component) { Index(component); }

void TOwnedComponents::Index(TComponent* component) {
  if (NameOf(component).empty()) return;
  ++named_;
  if (names_) {
    names_->emplace(NameOf(component), component);
  } else if (named_ > kPlainNames) {
    names_ = std::make_unique<NameIndex>();
    for (TComponent* c : slots_)
      if (c && !NameOf(c).empty()) names_->emplace(NameOf(c), c);
  }
}

void TOwnedComponents::Unindex(TComponent* component) {
  if (NameOf(component).empty()) return;
  --named_;
  if (!names_) return;
  const auto [first, last] = names_->equal_range(NameOf(component));
  for (auto it = first; it != last; ++it)
    if (it->second == component) {
      names_->erase(it);
      return;
    }
}

void TOwnedComponents::BuildCounts() const {
  const size_t n = slots_.size();
  counts_.assign(n + 1, 0);
  for (size_t i = 1; i <= n; ++i) {
    counts_[i] += slots_[i - 1] ? 1 : 0;
    if (const size_t up = i + (i & -i); up <= n) counts_[up] += counts_[i];
  }
}

int TOwnedComponents::LiveBefore(int slot) const {
  if (holes_ == 0) return slot;
  if (counts_.empty()) BuildCounts();
  int live = 0;
  for (int i = slot; i > 0; i -= i & -i) live += counts_[static_cast<size_t>(i)];
  return live;
}

void TOwnedComponents::Compact() {
  size_t out = 0;
  for (TComponent* c : slots_)
    if (c) {
      c->ownerSlot_ = static_cast<int>(out);
      slots_[out++] = c;
    }
  slots_.resize(out);
  holes_ = 0;
  counts_.clear();
}

}  // namespace Classes
