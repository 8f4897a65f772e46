#pragma once
/// \file
/// A set of components, as free-notification links and an owner's listeners
/// are kept.
#include <memory>
#include <unordered_map>
#include <vector>

namespace Classes {

class TComponent;

/// Components without order or repeats. Adding, finding and removing one cost
/// O(1): a few are searched in place, more through an index of their places.
/// Removing swaps the last one into the gap, so the order changes.
class TComponentSet {
 public:
  TComponentSet() = default;
  TComponentSet(const TComponentSet&) = delete;
  TComponentSet& operator=(const TComponentSet&) = delete;

  bool IsEmpty() const { return items_.empty(); }
  /// The members, valid until the set next changes.
  const std::vector<TComponent*>& Items() const { return items_; }
  bool Contains(const TComponent* component) const { return Find(component) >= 0; }
  /// False when it was there already.
  bool Add(TComponent* component);
  /// False when it was not there.
  bool Remove(const TComponent* component);

 private:
  int Find(const TComponent* component) const;

  std::vector<TComponent*> items_;
  // Place of each member in items_, kept once the set outgrows a plain search.
  std::unique_ptr<std::unordered_map<const TComponent*, int>> places_;
};

}  // namespace Classes
