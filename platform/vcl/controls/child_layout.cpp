#include "platform/vcl/controls/child_layout.h"

#include <algorithm>

#include "platform/vcl/controls/win_control.h"

namespace Controls {

bool TChildLayout::EarlierIn(const TControl* a, const TControl* b) { return a->alignOrder_ < b->alignOrder_; }

int TChildLayout::KindOf(const TControl* child) {
  return child->align_ >= alTop && child->align_ <= alClient ? child->align_ - alTop : -1;
}

bool TChildLayout::IsAnchored(const TControl* child) {
  return child->align_ == alNone && !(child->anchors_ == TAnchors{akLeft, akTop});
}

void TChildLayout::Add(TControl* child) {
  if (const int kind = KindOf(child); kind >= 0) {
    interrupted_ = true;
    auto& list = kinds_[kind];
    // Children mostly come in last: their place is at the end.
    if (list.empty() || list.back()->alignOrder_ < child->alignOrder_)
      list.push_back(child);
    else
      list.insert(std::upper_bound(list.begin(), list.end(), child, &EarlierIn), child);
  } else if (IsAnchored(child)) {
    anchored_.push_back(child);
    Measure(child);
  }
}

void TChildLayout::Remove(TControl* child) {
  if (const int kind = KindOf(child); kind >= 0) {
    auto& list = kinds_[kind];
    auto it = std::lower_bound(list.begin(), list.end(), child, &EarlierIn);
    if (it != list.end() && *it == child) {
      list.erase(it);
      interrupted_ = true;
      valid_ = false;
    }
  } else if (auto it = std::find(anchored_.rbegin(), anchored_.rend(), child); it != anchored_.rend()) {
    anchored_.erase(std::next(it).base());
  }
}

bool TChildLayout::CanAppend(const TControl* child) const {
  const int kind = KindOf(child);
  return valid_ && kind >= 0 && !kinds_[kind].empty() && kinds_[kind].back() == child &&
         parent_->GetClientRect() == area_;
}

bool TChildLayout::Append(TControl* child) {
  interrupted_ = false;
  const int kind = KindOf(child);
  MyRect area = after_[kind];
  if (child->visible_) Place(child, kind, area);
  if (!interrupted_) {
    after_[kind] = area;
    LayOutKinds(kind + 1, area);
  }
  if (interrupted_) valid_ = false;
  return !interrupted_;
}

void TChildLayout::Apply() {
  for (int attempt = 0; attempt < 4; ++attempt) {
    interrupted_ = false;
    const MyRect area = parent_->GetClientRect();
    const MyPoint size{area.Width(), area.Height()};
    if (!(size == placedSize_))
      for (size_t i = 0; i < anchored_.size() && !interrupted_; ++i) Anchor(anchored_[i], size);
    if (interrupted_) continue;
    placedSize_ = size;
    area_ = area;
    LayOutKinds(0, area);
    if (!interrupted_) {
      valid_ = true;
      return;
    }
  }
  valid_ = false;  // children that keep coming and going: laid out as far as they let
}

void TChildLayout::Remeasure() {
  for (TControl* child : anchored_) Measure(child);
  const MyRect area = parent_->GetClientRect();
  placedSize_ = {area.Width(), area.Height()};
}

void TChildLayout::Measure(TControl* child) {
  if (placing_ == child || !IsAnchored(child)) return;
  const MyRect area = parent_->GetClientRect();
  child->anchorBounds_ = child->GetBoundsRect();
  child->anchorParentSize_ = {area.Width(), area.Height()};
}

void TChildLayout::LayOutKinds(int first, MyRect area) {
  for (int kind = first; kind < KindCount; ++kind) {
    // By index over the live list: a child that goes meanwhile interrupts.
    for (size_t i = 0; i < kinds_[kind].size(); ++i) {
      TControl* child = kinds_[kind][i];
      if (!child->visible_) continue;
      Place(child, kind, area);
      if (interrupted_) return;
    }
    after_[kind] = area;
  }
}

// The size a child takes is read back after it moved: its constraints may
// have had the last word.
void TChildLayout::Place(TControl* child, int kind, MyRect& area) {
  const int width = child->constraints_.ConstrainWidth(child->width_);
  const int height = child->constraints_.ConstrainHeight(child->height_);
  switch (kind + alTop) {
    case alTop:
      SetChildBounds(child, area.left, area.top, area.Width(), height);
      if (!interrupted_) area.top += child->height_;
      break;
    case alBottom:
      SetChildBounds(child, area.left, area.bottom - height, area.Width(), height);
      if (!interrupted_) area.bottom -= child->height_;
      break;
    case alLeft:
      SetChildBounds(child, area.left, area.top, width, area.Height());
      if (!interrupted_) area.left += child->width_;
      break;
    case alRight:
      SetChildBounds(child, area.right - width, area.top, width, area.Height());
      if (!interrupted_) area.right -= child->width_;
      break;
    default:
      SetChildBounds(child, area.left, area.top, area.Width(), area.Height());
      break;
  }
}

// Placed from where it was measured, so that shrinking and growing back
// brings it back exactly.
void TChildLayout::Anchor(TControl* child, MyPoint size) {
  const auto axis = [](int start, int extent, int was, int now, bool low, bool high, int& newStart, int& newExtent) {
    newStart = start;
    newExtent = extent;
    if (low && high)
      newExtent = extent + now - was;
    else if (high)
      newStart = start + now - was;
    else if (!low && was > 0)
      newStart = MulDiv(2 * start + extent, now, 2 * was) - extent / 2;  // the centre in proportion
  };
  const MyRect& b = child->anchorBounds_;
  const MyPoint was = child->anchorParentSize_;
  int left, width, top, height;
  axis(b.left, b.Width(), was.x, size.x, child->anchors_.Contains(akLeft), child->anchors_.Contains(akRight), left,
       width);
  axis(b.top, b.Height(), was.y, size.y, child->anchors_.Contains(akTop), child->anchors_.Contains(akBottom), top,
       height);
  SetChildBounds(child, left, top, width, height);
}

void TChildLayout::SetChildBounds(TControl* child, int left, int top, int width, int height) {
  TControl* const outer = placing_;
  placing_ = child;
  struct Restore {
    TControl*& placing;
    TControl* outer;
    ~Restore() { placing = outer; }
  } restore{placing_, outer};
  child->SetBounds(left, top, width, height);
}

}  // namespace Controls
