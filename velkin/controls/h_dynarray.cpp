#include "velkin/controls/h_dynarray.h"

#include <algorithm>
#include <cstdint>

#include "platform/ostrel/strcompare.h"

HDynamicArray::HDynamicArray(Comparer compare, int tag) : compare_(compare), tag_(tag) {}

namespace {

// Where a control aligned to one side goes so that the alignment stacks it
// after Parent's children of that side: one pixel past the last of them. The
// bottom and right sides take one pixel more than the top and left ones.
void StackAfterSiblings(Controls::TControl* control, Controls::TWinControl* parent, Controls::TAlign align) {
  int left = 0, top = 0;
  switch (align) {
    case Controls::alTop:
    case Controls::alLeft: {
      int edge = 0;
      for (int i = 0; i < parent->GetControlCount(); ++i) {
        const Controls::TControl* c = parent->GetControl(i);
        if (c->GetAlign() != align) continue;
        edge = std::max(edge,
                        align == Controls::alTop ? c->GetTop() + c->GetHeight() + 1 : c->GetLeft() + c->GetWidth() + 1);
      }
      (align == Controls::alTop ? top : left) = edge;
      break;
    }
    case Controls::alBottom:
    case Controls::alRight: {
      int edge = align == Controls::alBottom ? parent->GetHeight() : parent->GetWidth();
      for (int i = 0; i < parent->GetControlCount(); ++i) {
        const Controls::TControl* c = parent->GetControl(i);
        if (c->GetAlign() != align) continue;
        edge = std::min(edge, align == Controls::alBottom ? c->GetTop() - 1 : c->GetLeft() - 1);
      }
      (align == Controls::alBottom ? top : left) = edge - 1;
      break;
    }
    default:
      left = control->GetLeft();
      top = control->GetTop();
  }
  control->SetLeft(left);
  control->SetTop(top);
}

// Holds a parent's layout back while it lives (none for no parent).
class AlignBatch {
 public:
  explicit AlignBatch(Controls::TWinControl* parent) : parent_(parent) {
    if (parent_) parent_->DisableAlign();
  }
  ~AlignBatch() {
    if (parent_) parent_->EnableAlign();
  }
  AlignBatch(const AlignBatch&) = delete;
  AlignBatch& operator=(const AlignBatch&) = delete;

 private:
  Controls::TWinControl* parent_;
};

}  // namespace

HDynamicControl* HDynamicArray::NewControl(void* data, Forms::TForm* form, Controls::TWinControl* parent,
                                           Controls::TAlign align, int left, int top) {
  if (!form || form->GetControlCount() == 0) return nullptr;
  Controls::TControl* control = form->GetControl(0);
  const HDynamicControl record{false,
                               form,
                               control,
                               parent,
                               data,
                               control->GetAlign(),
                               control->GetLeft(),
                               control->GetTop(),
                               control->GetWidth(),
                               control->GetHeight()};
  if (align != Controls::alNone) {
    // Laid out once, aligned: the parent neither places nor makes room (a
    // scroll bar) for the control as it stands in between.
    const AlignBatch batch(parent);
    control->SetAlign(Controls::alNone);  // so that the new position sticks
    if (parent) {
      StackAfterSiblings(control, parent, align);
      control->SetParent(parent);
    }
    control->SetAlign(align);
  } else {
    if (left != -1) control->SetLeft(left);
    if (top != -1) control->SetTop(top);
    if (parent) control->SetParent(parent);
  }
  if (parent && form->GetOnShow()) form->GetOnShow()(nullptr);

  int index = Count();
  if (compare_) Search(record, &index, compare_);  // before an equal record, if any
  return Item(AddAt(index, record));
}

// A record that owns its form is cleared before the form goes, so that a
// second removal of the same record finds nothing to free.
void HDynamicArray::RemoveControl(HDynamicControl* record) {
  if (!record || !record->Control) return;
  const HDynamicControl r = *record;
  if (r.OwnsForm) {
    record->OwnsForm = false;
    record->Form = nullptr;
    record->Control = nullptr;
  }
  if (r.Form->GetOnHide()) r.Form->GetOnHide()(nullptr);
  r.Control->SetParent(r.Form);
  r.Control->SetAlign(r.Align);
  r.Control->SetBounds(r.Left, r.Top, r.Width, r.Height);
  if (r.OwnsForm) delete r.Form;
}

bool HDynamicArray::DeleteNum(int index) {
  HDynamicControl* record = Item(index);
  if (!record) return false;
  RemoveControl(record);
  return MyValArray::DeleteNum(index);
}

void HDynamicArray::DeleteAll() {
  for (int i = 0; i < Count(); ++i) RemoveControl(Item(i));
  MyValArray::DeleteAll();
}

int HDynamicArray::Locate(void* data) const {
  HDynamicControl key{};
  key.Data = data;
  int index = -1;
  return Search(key, &index, compare_ ? compare_ : &idNumberCmp) ? index : -1;
}

int HDynamicArray::LocateByControl(const Controls::TControl* control) const {
  if (!control) return -1;
  for (int i = 0; i < Count(); ++i)
    if (Item(i)->Control == control) return i;
  return -1;
}

int HDynamicArray::LocateByParent(const Controls::TWinControl* parent) const {
  if (!parent) return -1;
  for (int i = 0; i < Count(); ++i)
    if (Item(i)->Parent == parent) return i;
  return -1;
}

int HDynamicArray::idNumberCmp(const HDynamicControl* a, const HDynamicControl* b) {
  const auto number = [](const void* data) {
    return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(data));
  };
  return static_cast<int>(number(a->Data) - number(b->Data));
}

int HDynamicArray::idStringCmp(const HDynamicControl* a, const HDynamicControl* b) {
  return StrCmp(static_cast<const char*>(a->Data), static_cast<const char*>(b->Data), -1, StrCmpIgnoreCase);
}
