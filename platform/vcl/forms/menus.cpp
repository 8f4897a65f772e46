#include "platform/vcl/forms/menus.h"

#include <algorithm>
#include <cstdio>

#include "platform/vcl/core/typinfo.h"
#include "platform/vcl/forms/application.h"
#include "platform/vcl/graphics/measuring_dc.h"

namespace Menus {

VCL_COMPONENT_IMPL(TMenuItem, Classes::TComponent, VCL_PROPERTY(Caption), VCL_PROPERTY(Checked, false),
                   VCL_PROPERTY(Enabled, true), VCL_PROPERTY(Visible, true), VCL_PROPERTY(Hint),
                   VCL_PROPERTY(ShortCut, 0), VCL_PROPERTY(OnClick))
VCL_CLASS_IMPL(TMenu, Classes::TComponent)
VCL_COMPONENT_IMPL(TMainMenu, TMenu)
VCL_COMPONENT_IMPL(TPopupMenu, TMenu, VCL_PROPERTY(OnPopup))

namespace {

// Menu commands come back in the low word of WM_COMMAND's wParam, so they
// are 16-bit; freed ones are given out again. Menus live on the GUI thread.
std::vector<UINT> freeCommands;
UINT nextCommand = 1;

UINT AllocateCommand() {
  if (freeCommands.empty()) return nextCommand < 0xFFFF ? nextCommand++ : 0;
  const UINT command = freeCommands.back();
  freeCommands.pop_back();
  return command;
}

void FreeCommand(UINT command) {
  if (command) freeCommands.push_back(command);
}

}  // namespace

TShortCut ShortCut(WORD key, Controls::TShiftState shift) {
  TShortCut result = key & 0xFF;
  if (shift.Contains(Controls::ssShift)) result |= scShift;
  if (shift.Contains(Controls::ssCtrl)) result |= scCtrl;
  if (shift.Contains(Controls::ssAlt)) result |= scAlt;
  return result;
}

AnsiString ShortCutToText(TShortCut shortCut) {
  const UINT key = shortCut & 0xFF;
  if (!key) return "";
  std::string text;
  if (shortCut & scShift) text += "Shift+";
  if (shortCut & scCtrl) text += "Ctrl+";
  if (shortCut & scAlt) text += "Alt+";
  if ((key >= '0' && key <= '9') || (key >= 'A' && key <= 'Z')) {
    text += static_cast<char>(key);
  } else if (key >= VK_F1 && key <= VK_F24) {
    text += "F" + std::to_string(key - VK_F1 + 1);
  } else {
    // The keyboard's own name of the key; extended keys (Del, Ins, arrows)
    // need the extended bit to be named as such.
    const bool extended = (key >= VK_PRIOR && key <= VK_DOWN) || key == VK_INSERT || key == VK_DELETE;
    LONG scan = static_cast<LONG>(MapVirtualKeyA(key, MAPVK_VK_TO_VSC)) << 16;
    if (extended) scan |= 1 << 24;
    // Wide: a name in the keyboard's language may take more bytes than letters.
    wchar_t name[64] = {};
    const int n = GetKeyNameTextW(scan, name, 64);
    text += n > 0 ? Graphics::AnsiText(name, n) : "#" + std::to_string(key);
  }
  return AnsiString(text);
}

// ---- TMenuItem ----

TMenuItem::TMenuItem(Classes::TComponent* owner) : TComponent(owner), command_(AllocateCommand()) {}

TMenuItem::~TMenuItem() {
  if (parent_) parent_->Remove(this);
  // The entries go first: destroying a native menu destroys the submenus in
  // it, and those belong to the items below.
  if (handle_)
    while (GetMenuItemCount(handle_.get()) > 0) RemoveMenu(handle_.get(), 0, MF_BYPOSITION);
  while (!items_.empty()) {
    TMenuItem* item = items_.back();
    items_.pop_back();
    item->parent_ = nullptr;
    delete item;
  }
  FreeCommand(command_);
}

void TMenuItem::SetCaption(const AnsiString& value) {
  if (value == caption_) return;
  caption_ = value;
  Changed();
}

void TMenuItem::SetChecked(bool value) {
  if (value == checked_) return;
  checked_ = value;
  Changed();
}

void TMenuItem::SetEnabled(bool value) {
  if (value == enabled_) return;
  enabled_ = value;
  Changed();
}

void TMenuItem::SetVisible(bool value) {
  if (value == visible_) return;
  visible_ = value;
  Changed();
}

void TMenuItem::SetShortCut(TShortCut value) {
  if (value == shortCut_) return;
  shortCut_ = value;
  Changed();
}

TMenuItem* TMenuItem::GetItem(int index) const {
  if (index < 0 || index >= GetCount()) Classes::ListIndexError(index);
  return items_[static_cast<size_t>(index)];
}

int TMenuItem::IndexOf(const TMenuItem* item) const {
  auto it = std::find(items_.begin(), items_.end(), item);
  return it == items_.end() ? -1 : static_cast<int>(it - items_.begin());
}

void TMenuItem::Add(TMenuItem* item) { Insert(GetCount(), item); }

void TMenuItem::Insert(int index, TMenuItem* item) {
  if (!item) return;
  if (index < 0 || index > GetCount() - (item->parent_ == this ? 1 : 0)) Classes::ListIndexError(index);
  // An item cannot hold itself or one of the items above it.
  for (TMenuItem* p = this; p; p = p->parent_)
    if (p == item) throw Classes::EListError("A menu item cannot be inserted into itself");
  if (item->parent_) item->parent_->Remove(item);
  items_.insert(items_.begin() + index, item);
  item->parent_ = this;
  RebuildHandle();
  // The first item turns this one into a submenu in its parent's menu.
  if (items_.size() == 1) Changed();
}

void TMenuItem::Delete(int index) { delete GetItem(index); }

void TMenuItem::Remove(TMenuItem* item) {
  const int index = IndexOf(item);
  if (index < 0) return;
  items_.erase(items_.begin() + index);
  item->parent_ = nullptr;
  RebuildHandle();
  if (items_.empty()) Changed();
}

void TMenuItem::Clear() {
  while (!items_.empty()) delete items_.back();
}

TMenu* TMenuItem::GetMenu() const {
  const TMenuItem* root = this;
  while (root->parent_) root = root->parent_;
  return root->menu_;
}

HMENU TMenuItem::GetHandle() {
  if (!handle_ && (menu_ || !items_.empty())) {
    handle_.reset(menu_ ? menu_->CreateMenuHandle() : CreatePopupMenu());
    RebuildHandle();
  }
  return handle_.get();
}

// The native menu takes its entries afresh from the items: a menu holds a
// few dozen at most, and this keeps it in step whatever changed.
void TMenuItem::RebuildHandle() {
  if (!handle_) return;
  HMENU menu = handle_.get();
  while (GetMenuItemCount(menu) > 0) RemoveMenu(menu, 0, MF_BYPOSITION);
  UINT position = 0;
  for (TMenuItem* item : items_) {
    if (!item->visible_) continue;
    item->text_ = item->caption_;
    if (item->shortCut_) item->text_ = item->caption_ + "\t" + ShortCutToText(item->shortCut_);
    MENUITEMINFOA info{};
    info.cbSize = sizeof info;
    info.fMask = MIIM_FTYPE | MIIM_STATE | MIIM_ID | MIIM_SUBMENU | MIIM_STRING;
    info.fType = item->IsLine() ? MFT_SEPARATOR : MFT_STRING;
    info.fState = (item->checked_ ? MFS_CHECKED : 0) | (item->enabled_ ? 0 : MFS_GRAYED);
    info.wID = item->command_;
    info.hSubMenu = item->items_.empty() ? nullptr : item->GetHandle();
    info.dwTypeData = const_cast<char*>(item->text_.c_str());
    InsertMenuItemA(menu, position++, TRUE, &info);
  }
  if (menu_) menu_->MenuChanged();
}

// This item's entry in its parent's menu is out of date.
void TMenuItem::Changed() {
  if (parent_) parent_->RebuildHandle();
  // An item left without items shows no submenu; its parent no longer
  // refers to the native one, which can go.
  if (!menu_ && items_.empty()) handle_.reset();
}

void TMenuItem::Click() {
  if (enabled_) onClick_(this);
}

TMenuItem* TMenuItem::FindCommand(UINT command) {
  if (command_ == command) return this;
  for (TMenuItem* item : items_)
    if (TMenuItem* found = item->FindCommand(command)) return found;
  return nullptr;
}

TMenuItem* TMenuItem::FindShortCut(TShortCut shortCut) {
  if (!enabled_ || !visible_) return nullptr;
  if (shortCut_ == shortCut && !menu_) return this;
  for (TMenuItem* item : items_)
    if (TMenuItem* found = item->FindShortCut(shortCut)) return found;
  return nullptr;
}

// ---- TMenu ----

TMenu::TMenu(Classes::TComponent* owner) : TComponent(owner), items_(new TMenuItem(nullptr)) { items_->menu_ = this; }

TMenu::~TMenu() { delete items_; }

void TMenu::GetChildren(Classes::TGetChildProc proc, Classes::TComponent* root) { items_->GetChildren(proc, root); }

void TMenuItem::GetChildren(Classes::TGetChildProc proc, Classes::TComponent* root) {
  const std::vector<TMenuItem*> items = items_;
  for (TMenuItem* item : items)
    if (item->GetOwner() == root) proc(item);
}

Classes::TComponent* TMenuItem::GetParentComponent() const {
  if (parent_ && parent_->menu_) return parent_->menu_;
  return parent_;
}

void TMenuItem::SetParentComponent(Classes::TComponent* value) {
  if (auto* menu = dynamic_cast<TMenu*>(value))
    menu->GetItems()->Add(this);
  else if (auto* item = dynamic_cast<TMenuItem*>(value))
    item->Add(this);
}

bool TMenu::DispatchCommand(UINT command) {
  TMenuItem* item = command ? items_->FindCommand(command) : nullptr;
  if (!item || item == items_) return false;
  item->Click();
  return true;
}

bool TMenu::IsShortCut(WORD key, Controls::TShiftState shift) {
  const TShortCut shortCut = ShortCut(key, shift);
  if (!(shortCut & 0xFF)) return false;
  TMenuItem* item = items_->FindShortCut(shortCut);
  if (!item) return false;
  item->Click();
  return true;
}

// ---- TMainMenu ----

TMainMenu::~TMainMenu() {
  // A window destroys the menu bar it has: the bar leaves the window first.
  HWND window = GetWindowHandle();
  if (window && IsWindow(window) && ::GetMenu(window) == HandleIfMade()) SetMenu(window, nullptr);
}

HMENU TMainMenu::CreateMenuHandle() { return CreateMenu(); }

void TMainMenu::MenuChanged() {
  HWND window = GetWindowHandle();
  if (window && IsWindow(window) && ::GetMenu(window) == HandleIfMade()) DrawMenuBar(window);
}

// ---- TPopupMenu ----

HMENU TPopupMenu::CreateMenuHandle() { return CreatePopupMenu(); }

void TPopupMenu::Popup(int x, int y) {
  onPopup_(this);
  HWND owner = GetWindowHandle();
  if (!owner || !IsWindow(owner)) owner = Forms::Application->GetHandle();
  // A menu whose owner is not in front closes at the first click or key
  // elsewhere, or at once.
  SetForegroundWindow(owner);
  // The choice comes back here rather than as WM_COMMAND to the owner, so
  // the item runs whichever window owns the menu.
  const UINT command = static_cast<UINT>(TrackPopupMenu(
      GetHandle(), TPM_LEFTALIGN | TPM_TOPALIGN | TPM_RETURNCMD | TPM_NONOTIFY, x, y, 0, owner, nullptr));
  if (command) DispatchCommand(command);
}

void TPopupMenu::SetPopupComponent(Classes::TComponent* value) {
  if (value == popupComponent_) return;
  if (popupComponent_) RemoveFreeNotification(popupComponent_);
  popupComponent_ = value;
  if (value) FreeNotification(value);
}

void TPopupMenu::Notification(Classes::TComponent* component, Classes::TOperation operation) {
  TMenu::Notification(component, operation);
  if (operation == Classes::opRemove && component == popupComponent_) popupComponent_ = nullptr;
}

}  // namespace Menus
