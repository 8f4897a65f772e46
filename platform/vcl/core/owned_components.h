#pragma once
/// \file
/// The list of components an owner holds.
#include <memory>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/vcl/core/ansistring.h"
#include "platform/vcl/core/component_set.h"
#include "platform/vcl/core/name_hash.h"

namespace Classes {

class TComponent;

/// An owner's components in the order they came, with the index of their
/// names and the set of those that hear their siblings. Each component knows
/// its slot, so taking one out anywhere is O(1): it leaves a hole, holes at
/// the end go at once, and the slots are closed up when half of them are
/// holes. While holes remain, positions are counted in O(log n). Names are
/// searched in place in a small owner and through a case-insensitive index
/// once it holds more (nameless components are never indexed).
class TOwnedComponents {
 public:
  TOwnedComponents() = default;
  TOwnedComponents(const TOwnedComponents&) = delete;
  TOwnedComponents& operator=(const TOwnedComponents&) = delete;

  int Count() const { return static_cast<int>(slots_.size()) - holes_; }
  /// The component at index, 0 <= index < Count().
  TComponent* At(int index) const;
  /// The place of a component held here.
  int IndexOf(const TComponent* component) const;
  /// The one that came last; null when empty.
  TComponent* Last() const { return slots_.empty() ? nullptr : slots_.back(); }
  /// Calls f with each component in order; f must not change the list.
  template <class F>
  void ForEach(F f) const {
    for (TComponent* c : slots_)
      if (c) f(c);
  }

  /// Appends a component not held here.
  void Add(TComponent* component);
  /// Takes out a component held here.
  void Remove(TComponent* component);

  /// The first held component of that name (ASCII case ignored), or null.
  TComponent* Find(std::string_view name) const;
  ///@{
  /// Around a change of a held component's name: its old name leaves the
  /// index before, the new one enters after.
  void BeforeRename(TComponent* component);
  void AfterRename(TComponent* component);
  ///@}

  /// The held components that asked to hear their siblings come and go.
  TComponentSet& Listeners() { return listeners_; }

 private:
  // Keys view the components' own names: a name leaves before it changes.
  using NameIndex = std::unordered_multimap<std::string_view, TComponent*, TNameHash, TNameEqual>;

  void Index(TComponent* component);
  void Unindex(TComponent* component);
  void BuildCounts() const;
  int LiveBefore(int slot) const;
  void Compact();

  std::vector<TComponent*> slots_;  // null where one left
  int holes_ = 0;
  int named_ = 0;
  // Live slots as a Fenwick tree (1-based), made when a position is asked
  // for while there are holes; empty otherwise.
  mutable std::vector<int> counts_;
  std::unique_ptr<NameIndex> names_;
  TComponentSet listeners_;
};

}  // namespace Classes
