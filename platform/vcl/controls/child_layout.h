#pragma once
/// \file
/// TChildLayout: where a windowed control puts its aligned and anchored children.
#include <vector>

#include "platform/ostrel/mygeom.h"
#include "platform/vcl/controls/control.h"

namespace Controls {

/// The layout of one windowed control's children: the aligned ones by kind,
/// each kind in the order the children came in, and the anchored ones, each
/// with where it was measured. Laying everything out costs a step per aligned
/// or anchored child; a child that comes in last of its kind is placed with
/// only the kinds laid out after it, so that children coming in one by one
/// cost in step with their number. TWinControl decides when to lay out.
class VCL_API TChildLayout {
 public:
  explicit TChildLayout(TWinControl* parent) : parent_(parent) {}
  TChildLayout(const TChildLayout&) = delete;
  TChildLayout& operator=(const TChildLayout&) = delete;

  /// Takes in a child (it came in, or its Align or Anchors are new), and lets
  /// go of one (it leaves, or they are about to change). A layout running
  /// meanwhile starts again.
  void Add(TControl* child);
  void Remove(TControl* child);
  /// Whether Append can place child alone: it is the last of its kind and
  /// nothing moved since the last layout.
  bool CanAppend(const TControl* child) const;
  /// Places child, the last of its kind, and then the kinds laid out after
  /// it; false when a child came or went meanwhile (lay out everything).
  bool Append(TControl* child);
  /// Lays every aligned child out, and the anchored ones when the client
  /// area's size changed; starts again (a few times at most) when a child
  /// comes, goes or moves meanwhile.
  void Apply();
  /// Measures every anchored child against the client area as it is now,
  /// without moving any (a design was read, or the control scaled).
  void Remeasure();
  /// Measures one anchored child against the client area, unless the layout
  /// is placing it itself.
  void Measure(TControl* child);
  /// Whether the layout is moving child now (so that the move is not a
  /// change to lay out again).
  bool IsPlacing(const TControl* child) const { return placing_ == child; }
  /// Whether the last layout was made for this client area and still holds.
  bool Fits(const MyRect& area) const { return valid_ && area == area_; }
  /// Something changed that the cached layout does not show.
  void Invalidate() { valid_ = false; }
  /// A child moved, came or went while a layout runs: it starts again.
  void Interrupt() { interrupted_ = true; }

 private:
  static constexpr int KindCount = 5;  // alTop, alBottom, alLeft, alRight, alClient
  static int KindOf(const TControl* child);
  static bool IsAnchored(const TControl* child);
  static bool EarlierIn(const TControl* a, const TControl* b);
  void Place(TControl* child, int kind, MyRect& area);
  void Anchor(TControl* child, MyPoint size);
  void LayOutKinds(int first, MyRect area);
  void SetChildBounds(TControl* child, int left, int top, int width, int height);

  TWinControl* parent_;
  std::vector<TControl*> kinds_[KindCount];
  std::vector<TControl*> anchored_;  // not aligned, and anchored otherwise than left and top
  MyRect area_{};                    // the client area of the last layout
  MyPoint placedSize_{};             // the client area's size the anchored children were placed in
  MyRect after_[KindCount]{};        // what each kind's pass left of it
  TControl* placing_ = nullptr;
  bool valid_ = false;
  bool interrupted_ = false;
};

}  // namespace Controls
