#pragma once
/// \file
/// Unit StdCtrls, lists: list boxes and combo boxes over the system's LISTBOX
/// and COMBOBOX windows, with their items as string lists.
#include <memory>

#include "platform/vcl/controls/controls.h"
#include "platform/vcl/core/string_list.h"
#include "platform/vcl/core/typinfo.h"

namespace Stdctrls {

using System::AnsiString;

/// The item messages of one kind of list window.
struct TItemMessages {
  UINT Count, GetText, GetTextLen, Insert, Add, Delete, Reset, GetData, SetData;
};

/// A string list over the items of a list window: reads and writes the window
/// when it exists, and keeps the items itself until the window is made (or
/// while it is made again).
class VCL_API TWindowItems : public Classes::TStrings {
  VCL_CLASS();

 public:
  TWindowItems(Controls::TWinControl* control, const TItemMessages& messages);

  int GetCount() const override;
  AnsiString Get(int index) const override;
  Classes::TObject* GetObjects(int index) const override;
  void SetObjects(int index, Classes::TObject* object) override;
  void Insert(int index, const AnsiString& value) override;
  /// Adds at the end, or in its place in a sorted window.
  int Add(const AnsiString& value) override;
  void Delete(int index) override;
  void Clear() override;

  /// Moves the kept items into the new window / the window's items out.
  void ToWindow();
  void FromWindow();

 protected:
  void SetUpdateState(bool updating) override;

 private:
  HWND Window() const;
  void CheckIndex(int index, int count) const;

  Controls::TWinControl* control_;
  TItemMessages messages_;
  Classes::TStringList kept_;
};

/// A control with a list of items, one of them selected (ItemIndex, -1:
/// none): the items and the selection go through the window and are kept
/// while the window is made again.
class VCL_API TCustomListControl : public Controls::TWinControl {
  VCL_CLASS();

 public:
  TCustomListControl(Classes::TComponent* owner, const TItemMessages& messages);
  ~TCustomListControl() override;

  Classes::TStrings* GetItems() const { return items_.get(); }
  void SetItems(Classes::TStrings* value) { items_->Assign(value); }
  virtual int GetItemIndex() = 0;
  virtual void SetItemIndex(int value) = 0;

 protected:
  void CreateWnd() override;
  void DestroyWnd() override;
  int itemIndex_ = -1;  // while there is no window

 private:
  std::unique_ptr<TWindowItems> items_;
};

/// A list box. ItemIndex is the selected item (-1: none); with MultiSelect
/// any number are selected (Selected). OnClick runs when the selection
/// changes, OnDblClick on a double click on an item. With HorzScroll the
/// items can be scrolled sideways: the window's horizontal extent follows
/// the widest item, measured with the box's font as items come and go
/// (through Items or the window's own messages) and when the font changes,
/// and its horizontal scroll bar shows while that item is wider than the box.
/// Without (the default) long items are cut at the edge.
class VCL_API TCustomListBox : public TCustomListControl {
  VCL_CLASS();

 public:
  explicit TCustomListBox(Classes::TComponent* owner);

  int GetItemIndex() override;
  void SetItemIndex(int value) override;
  bool GetMultiSelect() const { return multiSelect_; }
  void SetMultiSelect(bool value);
  bool GetSelected(int index);
  void SetSelected(int index, bool value);
  bool GetSorted() const { return sorted_; }
  void SetSorted(bool value);
  /// Whether wide items can be scrolled to; changing it makes the window again.
  bool GetHorzScroll() const { return horzScroll_; }
  void SetHorzScroll(bool value);

  /// Keeps the horizontal extent with the window's items and font.
  void WndProc(Controls::TMessage& message) override;

 protected:
  void CreateParams(Controls::TCreateParams& params) override;
  void Notified(Controls::TMessage& message) override;

 private:
  int ItemsWidth(int from, int to);
  void SetWidest(int width);

  bool multiSelect_ = false;
  bool sorted_ = false;
  bool horzScroll_ = false;
  int widest_ = 0;  // the widest item's text, in pixels
};

/// The list box to make instances of.
class VCL_API TListBox : public TCustomListBox {
  VCL_CLASS();

 public:
  using TCustomListBox::TCustomListBox;
};

/// How a combo box looks: an edit with a drop-down list, a drop-down list
/// only, or an edit over a list always shown.
enum TComboBoxStyle { csDropDown, csSimple, csDropDownList };
VCL_ENUM_INFO(TComboBoxStyle, csDropDown, csSimple, csDropDownList)

/// A combo box. ItemIndex is the selected item (-1: none).
class VCL_API TCustomComboBox : public TCustomListControl {
  VCL_CLASS();

 public:
  explicit TCustomComboBox(Classes::TComponent* owner);

  int GetItemIndex() override;
  void SetItemIndex(int value) override;
  TComboBoxStyle GetStyle() const { return style_; }
  void SetStyle(TComboBoxStyle value);
  /// After the user picked another item or edited the text.
  System::TNotifyEvent GetOnChange() const { return onChange_; }
  void SetOnChange(System::TNotifyEvent value) { onChange_ = value; }

 protected:
  void CreateParams(Controls::TCreateParams& params) override;
  /// Routes the edit of an editable box through the box's key and focus events.
  void CreateWnd() override;
  void Notified(Controls::TMessage& message) override;

 private:
  TComboBoxStyle style_ = csDropDown;
  System::TNotifyEvent onChange_;
};

/// The combo box to make instances of.
class VCL_API TComboBox : public TCustomComboBox {
  VCL_CLASS();

 public:
  using TCustomComboBox::TCustomComboBox;
};

}  // namespace Stdctrls
