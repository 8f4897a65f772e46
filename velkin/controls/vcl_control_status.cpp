#include "velkin/controls/vcl_control_status.h"

// A record of a control that is freed stops pointing to it.
HControlStatus::HControlStatus()
    : MyArray(true), watch_(std::make_unique<HFreeWatch>([this](Classes::TComponent* c) { Forget(c); })) {}

HControlStatus::~HControlStatus() { Clear(); }

void HControlStatus::Clear() {
  DeleteAll();
  root_ = nullptr;
}

void HControlStatus::ReleaseItem(HControlStatusStore* record) {
  if (record) watch_->Unwatch(record->Control);
  MyArray::ReleaseItem(record);
}

void HControlStatus::Forget(Classes::TComponent* control) {
  for (int i = 0; i < Count(); ++i)
    if (Item(i)->Control == control) Item(i)->Control = nullptr;
}

void HControlStatus::Store(Controls::TWinControl* root, bool recursive, int depth) {
  if (depth == 0) return;
  if (root_) Clear();
  if (!root) return;
  root_ = root;
  recursive_ = recursive;
  depth_ = depth;
  DoStore(root, recursive, depth);
}

void HControlStatus::DoStore(Controls::TWinControl* parent, bool recursive, int depth) {
  if (depth == 0) return;
  const auto record = [this](Controls::TControl* control) {
    HControlStatusStore* store = CreateStorage();
    Add(store);
    FillStorage(store, control);
    watch_->Watch(control);
  };
  for (int i = 0; i < parent->GetControlCount(); ++i)
    if (!dynamic_cast<Controls::TWinControl*>(parent->GetControl(i))) record(parent->GetControl(i));
  for (int i = 0; i < parent->GetControlCount(); ++i) {
    auto* child = dynamic_cast<Controls::TWinControl*>(parent->GetControl(i));
    if (!child) continue;
    // -1 goes two levels: the next level is entered with -2.
    if (recursive && (depth > 1 || depth == -1)) DoStore(child, recursive, depth - 1);
    record(child);
  }
}

HControlStatusStore* HControlStatus::CreateStorage() { return new HControlStatusStore; }

void HControlStatus::FillStorage(HControlStatusStore* record, Controls::TControl* control) {
  record->Control = control;
  record->Visible = control->GetVisible();
  record->Enabled = control->GetEnabled();
}

void HControlStatus::ForEach(TForEachEvent fn, unsigned long param) {
  if (!root_ || !fn) return;
  for (int i = 0; i < Count(); ++i)
    if (!fn(this, Item(i), param)) return;
}

bool HControlStatus::DoProcess(HControlStatus*, HControlStatusStore* record, unsigned long param) {
  Controls::TControl* control = record->Control;
  if (!control) return true;
  const unsigned mask = param & 0xFFFF;
  const bool restore = mask & HCS_Restore;
  const bool value = (param >> 16) != 0;
  if (mask & HCS_Visible) control->SetVisible(restore ? record->Visible : value);
  if (mask & HCS_Enabled) control->SetEnabled(restore ? record->Enabled : value);
  return true;
}

void HControlStatus::Restore(unsigned short mask) {
  ForEach(TForEachEvent(this, &HControlStatus::DoProcess), mask | HCS_Restore);
}

void HControlStatus::Set(unsigned short mask, bool value) {
  ForEach(TForEachEvent(this, &HControlStatus::DoProcess), (static_cast<unsigned long>(value) << 16) | mask);
}
