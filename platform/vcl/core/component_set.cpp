#include "platform/vcl/core/component_set.h"

#include <algorithm>

namespace Classes {

namespace {
// Up to this many, a search in place beats hashing and costs no memory.
constexpr size_t kPlainSearch = 8;
}  // namespace

int TComponentSet::Find(const TComponent* component) const {
  if (places_) {
    const auto it = places_->find(component);
    return it == places_->end() ? -1 : it->second;
  }
  const auto it = std::find(items_.begin(), items_.end(), component);
  return it == items_.end() ? -1 : static_cast<int>(it - items_.begin());
}

bool TComponentSet::Add(TComponent* component) {
  if (Find(component) >= 0) return false;
  items_.push_back(component);
  if (places_) {
    places_->emplace(component, static_cast<int>(items_.size()) - 1);
  } else if (items_.size() > kPlainSearch) {
    places_ = std::make_unique<std::unordered_map<const TComponent*, int>>();
    for (size_t i = 0; i < items_.size(); ++i) places_->emplace(items_[i], static_cast<int>(i));
  }
  return true;
}

bool TComponentSet::Remove(const TComponent* component) {
  const int at = Find(component);
  if (at < 0) return false;
  TComponent* last = items_.back();
  items_[at] = last;
  items_.pop_back();
  if (places_) {
    places_->erase(component);
    if (last != component) (*places_)[last] = at;
    if (items_.empty()) places_.reset();
  }
  return true;
}

}  // namespace Classes
