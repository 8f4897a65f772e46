#pragma once
/// \file
/// Unit Menus: menu bars and pop-up menus over real Win32 menus.
#include <windows.h>

#include <vector>

#include "platform/ostrel/owned_handle.h"
#include "platform/vcl/controls/controls.h"
#include "platform/vcl/core/component.h"

namespace Menus {

using System::AnsiString;

/// A key with its modifiers in one word: the virtual key in the low byte,
/// scShift, scCtrl and scAlt above it; 0 is no shortcut.
using TShortCut = WORD;
constexpr TShortCut scNone = 0;
constexpr TShortCut scShift = 0x2000;
constexpr TShortCut scCtrl = 0x4000;
constexpr TShortCut scAlt = 0x8000;

/// The shortcut of key with shift's Shift, Ctrl and Alt.
VCL_API TShortCut ShortCut(WORD key, Controls::TShiftState shift);
/// "Ctrl+S", "Shift+F5", "Del": the text a menu shows beside its item.
VCL_API AnsiString ShortCutToText(TShortCut shortCut);

class TMenu;

/// One entry of a menu, and the menu of the entries it holds. A caption of
/// "-" makes a separator line; '&' marks the mnemonic letter. The native menu
/// is made on first request and kept in step with every change. An item frees
/// the items it holds; an item freed by someone else (its owner) leaves its
/// parent item.
class VCL_API TMenuItem : public Classes::TComponent {
  VCL_CLASS();

 public:
  explicit TMenuItem(Classes::TComponent* owner);
  ~TMenuItem() override;

  AnsiString GetCaption() const { return caption_; }
  void SetCaption(const AnsiString& value);
  bool GetChecked() const { return checked_; }
  void SetChecked(bool value);
  bool GetEnabled() const { return enabled_; }
  void SetEnabled(bool value);
  /// A hidden item keeps its place among the items but is left out of the menu.
  bool GetVisible() const { return visible_; }
  void SetVisible(bool value);
  AnsiString GetHint() const { return hint_; }
  void SetHint(const AnsiString& value) { hint_ = value; }
  /// Shown after the caption; the form runs the item when the key is pressed.
  TShortCut GetShortCut() const { return shortCut_; }
  void SetShortCut(TShortCut value);
  System::TNotifyEvent GetOnClick() const { return onClick_; }
  void SetOnClick(System::TNotifyEvent value) { onClick_ = value; }

  ///@{
  /// The items this one holds. Items[i] outside 0..Count-1 raises EListError.
  int GetCount() const { return static_cast<int>(items_.size()); }
  TMenuItem* GetItem(int index) const;
  int IndexOf(const TMenuItem* item) const;
  ///@}
  /// Appends item, taking it from its current parent item.
  void Add(TMenuItem* item);
  /// Puts item at index (0..Count; else EListError).
  void Insert(int index, TMenuItem* item);
  /// Frees the item at index.
  void Delete(int index);
  /// Takes item out without freeing it.
  void Remove(TMenuItem* item);
  /// Frees every item held.
  void Clear();
  TMenuItem* GetParent() const { return parent_; }
  /// The menu whose item tree this item is in, or null.
  TMenu* GetMenu() const;

  /// Streaming: the items held that root owns; an item sits in its parent
  /// item, or in the menu when it is a menu's entry.
  void GetChildren(Classes::TGetChildProc proc, Classes::TComponent* root) override;
  Classes::TComponent* GetParentComponent() const override;
  bool HasParent() const override { return true; }
  void SetParentComponent(Classes::TComponent* value) override;

  /// The native menu of the items held (null while there are none, except
  /// for a menu's root item). Made on first request.
  HMENU GetHandle();
  /// The WM_COMMAND identifier of the item, unique in the process.
  UINT GetCommand() const { return command_; }
  bool IsLine() const { return caption_ == "-"; }
  /// Runs OnClick when the item is enabled.
  virtual void Click();

  /// The item with that command here or below, or null.
  TMenuItem* FindCommand(UINT command);
  /// The enabled, visible item with that shortcut here or below, or null.
  TMenuItem* FindShortCut(TShortCut shortCut);

 private:
  friend class TMenu;
  void Changed();
  void RebuildHandle();
  void Detach(TMenuItem* item);

  std::vector<TMenuItem*> items_;
  TMenuItem* parent_ = nullptr;
  TMenu* menu_ = nullptr;  // set on a menu's root item only
  OwnedMenu handle_;
  UINT command_ = 0;
  AnsiString caption_;
  AnsiString text_;  // what the native item shows: caption and shortcut
  AnsiString hint_;
  bool checked_ = false;
  bool enabled_ = true;
  bool visible_ = true;
  TShortCut shortCut_ = scNone;
  System::TNotifyEvent onClick_;
};

/// A menu: a tree of items under Items.
class VCL_API TMenu : public Classes::TComponent {
  VCL_CLASS();

 public:
  explicit TMenu(Classes::TComponent* owner);
  ~TMenu() override;

  /// The root item; its items are the menu's entries.
  TMenuItem* GetItems() const { return items_; }
  /// The native menu, made on first request.
  HMENU GetHandle() { return items_->GetHandle(); }
  /// The window the menu belongs to: a main menu's form, a pop-up's owner.
  HWND GetWindowHandle() const { return windowHandle_; }
  void SetWindowHandle(HWND value) { windowHandle_ = value; }

  /// Streaming: the entries that root owns.
  void GetChildren(Classes::TGetChildProc proc, Classes::TComponent* root) override;

  /// Runs the item of a WM_COMMAND's identifier; false when it is not here.
  bool DispatchCommand(UINT command);
  /// Runs the item whose shortcut the key is; false when there is none.
  bool IsShortCut(WORD key, Controls::TShiftState shift);

 protected:
  /// A new, empty native menu of the kind (bar or pop-up).
  virtual HMENU CreateMenuHandle() = 0;
  /// The native menu's entries changed.
  virtual void MenuChanged() {}
  /// The native menu if it has been made, else null.
  HMENU HandleIfMade() const { return items_->handle_.get(); }

 private:
  friend class TMenuItem;
  TMenuItem* items_;
  HWND windowHandle_ = nullptr;
};

/// The menu bar of a form (see TCustomForm::SetMenu).
class VCL_API TMainMenu : public TMenu {
  VCL_CLASS();

 public:
  explicit TMainMenu(Classes::TComponent* owner) : TMenu(owner) {}
  ~TMainMenu() override;

 protected:
  HMENU CreateMenuHandle() override;
  void MenuChanged() override;
};

/// A menu shown at a point on demand, such as a context menu.
class VCL_API TPopupMenu : public TMenu {
  VCL_CLASS();

 public:
  explicit TPopupMenu(Classes::TComponent* owner) : TMenu(owner) {}

  /// Shows the menu with its top-left corner at (x, y) on the screen and
  /// runs the item chosen, if any, once the menu is gone.
  virtual void Popup(int x, int y);
  /// Runs before the menu shows: the place to adjust its items.
  System::TNotifyEvent GetOnPopup() const { return onPopup_; }
  void SetOnPopup(System::TNotifyEvent value) { onPopup_ = value; }
  /// The component the menu was last shown for (set by whoever shows it).
  Classes::TComponent* GetPopupComponent() const { return popupComponent_; }
  void SetPopupComponent(Classes::TComponent* value);

 protected:
  HMENU CreateMenuHandle() override;
  void Notification(Classes::TComponent* component, Classes::TOperation operation) override;

 private:
  System::TNotifyEvent onPopup_;
  Classes::TComponent* popupComponent_ = nullptr;
};

}  // namespace Menus
