#include "platform/vcl/stdctrls/std_lists.h"
#include "platform/vcl/core/typinfo.h"

#include <algorithm>
#include <string>

#include "platform/ostrel/dc_changer.h"
#include "platform/vcl/graphics/measuring_dc.h"

namespace Stdctrls {

using Controls::TCreateParams;
using Controls::TMessage;

VCL_CLASS_IMPL(TWindowItems, Classes::TStrings)
VCL_CLASS_IMPL(TCustomListControl, Controls::TWinControl, VCL_PROPERTY(TabStop, true),
               VCL_PROPERTY_STORED(Color, IsColorStored, Graphics::clWindow), VCL_PROPERTY(ParentColor, false),
               VCL_PROPERTY(Items))
VCL_COMPONENT_IMPL(TCustomListBox, TCustomListControl, VCL_PROPERTY(MultiSelect, false), VCL_PROPERTY(Sorted, false),
                   VCL_PROPERTY(HorzScroll, false))
VCL_COMPONENT_IMPL(TListBox, TCustomListBox)
VCL_COMPONENT_IMPL(TCustomComboBox, TCustomListControl, VCL_PROPERTY(Style, csDropDown), VCL_PROPERTY(ItemIndex, -1),
                   VCL_PROPERTY(Text), VCL_PROPERTY(OnChange))
VCL_COMPONENT_IMPL(TComboBox, TCustomComboBox)

namespace {
constexpr TItemMessages kListBox{LB_GETCOUNT,     LB_GETTEXT,      LB_GETTEXTLEN,  LB_INSERTSTRING, LB_ADDSTRING,
                                 LB_DELETESTRING, LB_RESETCONTENT, LB_GETITEMDATA, LB_SETITEMDATA};
constexpr TItemMessages kComboBox{CB_GETCOUNT,     CB_GETLBTEXT,    CB_GETLBTEXTLEN, CB_INSERTSTRING, CB_ADDSTRING,
                                  CB_DELETESTRING, CB_RESETCONTENT, CB_GETITEMDATA,  CB_SETITEMDATA};
}  // namespace

// ---- TWindowItems ----

TWindowItems::TWindowItems(Controls::TWinControl* control, const TItemMessages& messages)
    : control_(control), messages_(messages) {}

HWND TWindowItems::Window() const { return control_->HandleAllocated() ? control_->GetHandle() : nullptr; }

void TWindowItems::CheckIndex(int index, int count) const {
  if (index < 0 || index >= count) IndexError(index);
}

int TWindowItems::GetCount() const {
  HWND w = Window();
  return w ? static_cast<int>(SendMessageA(w, messages_.Count, 0, 0)) : kept_.GetCount();
}

AnsiString TWindowItems::Get(int index) const {
  HWND w = Window();
  if (!w) return kept_.Get(index);
  CheckIndex(index, GetCount());
  const auto length = SendMessageA(w, messages_.GetTextLen, index, 0);
  std::string text(static_cast<size_t>(length) + 1, '\0');
  text.resize(static_cast<size_t>(SendMessageA(w, messages_.GetText, index, reinterpret_cast<LPARAM>(text.data()))));
  return AnsiString(text);
}

Classes::TObject* TWindowItems::GetObjects(int index) const {
  HWND w = Window();
  if (!w) return kept_.GetObjects(index);
  CheckIndex(index, GetCount());
  return reinterpret_cast<Classes::TObject*>(SendMessageA(w, messages_.GetData, index, 0));
}

void TWindowItems::SetObjects(int index, Classes::TObject* object) {
  HWND w = Window();
  if (!w) return kept_.SetObjects(index, object);
  CheckIndex(index, GetCount());
  SendMessageA(w, messages_.SetData, index, reinterpret_cast<LPARAM>(object));
}

void TWindowItems::Insert(int index, const AnsiString& value) {
  HWND w = Window();
  if (!w) return kept_.Insert(index, value);
  if (index < 0 || index > GetCount()) IndexError(index);
  SendMessageA(w, messages_.Insert, index, reinterpret_cast<LPARAM>(value.c_str()));
}

int TWindowItems::Add(const AnsiString& value) {
  HWND w = Window();
  if (!w) return kept_.Add(value);
  return static_cast<int>(SendMessageA(w, messages_.Add, 0, reinterpret_cast<LPARAM>(value.c_str())));
}

void TWindowItems::Delete(int index) {
  HWND w = Window();
  if (!w) return kept_.Delete(index);
  CheckIndex(index, GetCount());
  SendMessageA(w, messages_.Delete, index, 0);
}

void TWindowItems::Clear() {
  if (HWND w = Window())
    SendMessageA(w, messages_.Reset, 0, 0);
  else
    kept_.Clear();
}

void TWindowItems::ToWindow() {
  HWND w = Window();
  if (!w) return;
  for (int i = 0; i < kept_.GetCount(); ++i) {
    const auto at = SendMessageA(w, messages_.Add, 0, reinterpret_cast<LPARAM>(kept_.Get(i).c_str()));
    SendMessageA(w, messages_.SetData, at, reinterpret_cast<LPARAM>(kept_.GetObjects(i)));
  }
  kept_.Clear();
}

void TWindowItems::FromWindow() {
  HWND w = Window();
  if (!w) return;
  kept_.Clear();
  for (int i = 0, n = GetCount(); i < n; ++i) kept_.AddObject(Get(i), GetObjects(i));
}

// No redrawing while a bracket of changes runs.
void TWindowItems::SetUpdateState(bool updating) {
  HWND w = Window();
  if (!w) return;
  SendMessageA(w, WM_SETREDRAW, !updating, 0);
  if (!updating) InvalidateRect(w, nullptr, TRUE);
}

// ---- TCustomListControl ----

TCustomListControl::TCustomListControl(Classes::TComponent* owner, const TItemMessages& messages)
    : TWinControl(owner), items_(std::make_unique<TWindowItems>(this, messages)) {
  SetTabStop(true);
  SetColor(Graphics::clWindow);
  SetControlStyle({});  // the window reports its clicks and holds the mouse itself
}

TCustomListControl::~TCustomListControl() = default;

void TCustomListControl::CreateWnd() {
  TWinControl::CreateWnd();
  items_->ToWindow();
  SetItemIndex(itemIndex_);
}

void TCustomListControl::DestroyWnd() {
  if (HandleAllocated()) {
    itemIndex_ = GetItemIndex();
    items_->FromWindow();
  }
  TWinControl::DestroyWnd();
}

// ---- TCustomListBox ----

TCustomListBox::TCustomListBox(Classes::TComponent* owner) : TCustomListControl(owner, kListBox) {
  SetBounds(0, 0, 121, 97);
}

void TCustomListBox::CreateParams(TCreateParams& params) {
  TWinControl::CreateParams(params);
  params.SystemClass = "LISTBOX";
  params.Style |= LBS_NOTIFY | LBS_NOINTEGRALHEIGHT | WS_VSCROLL | (sorted_ ? LBS_SORT : 0) |
                  (multiSelect_ ? LBS_EXTENDEDSEL : 0) | (horzScroll_ ? WS_HSCROLL : 0);
  params.ExStyle |= WS_EX_CLIENTEDGE;
}

int TCustomListBox::GetItemIndex() {
  if (!HandleAllocated()) return itemIndex_;
  return static_cast<int>(SendMessageA(GetHandle(), multiSelect_ ? LB_GETCARETINDEX : LB_GETCURSEL, 0, 0));
}

void TCustomListBox::SetItemIndex(int value) {
  itemIndex_ = value;
  if (!HandleAllocated()) return;
  if (multiSelect_)
    SendMessageA(GetHandle(), LB_SETCARETINDEX, value, FALSE);
  else
    SendMessageA(GetHandle(), LB_SETCURSEL, value, 0);
}

void TCustomListBox::SetMultiSelect(bool value) {
  if (value == multiSelect_) return;
  multiSelect_ = value;
  if (HandleAllocated()) DestroyHandle();  // the style is fixed at creation
}

void TCustomListBox::SetSorted(bool value) {
  if (value == sorted_) return;
  sorted_ = value;
  if (HandleAllocated()) DestroyHandle();
}

void TCustomListBox::SetHorzScroll(bool value) {
  if (value == horzScroll_) return;
  horzScroll_ = value;
  widest_ = 0;
  if (HandleAllocated()) DestroyHandle();  // the window shows a horizontal bar only if made with one
}

// The extent follows the items the window holds, whoever put them there.
void TCustomListBox::WndProc(TMessage& message) {
  if (!horzScroll_) {
    TCustomListControl::WndProc(message);
    return;
  }
  const int index = static_cast<int>(message.WParam);
  const bool widestGoes = message.Msg == LB_DELETESTRING && index >= 0 && index < GetItems()->GetCount() &&
                          ItemsWidth(index, index + 1) >= widest_;
  TCustomListControl::WndProc(message);
  switch (message.Msg) {
    case LB_ADDSTRING:
    case LB_INSERTSTRING:
      if (const auto at = static_cast<int>(message.Result); at >= 0)
        SetWidest(std::max(widest_, ItemsWidth(at, at + 1)));
      break;
    case LB_DELETESTRING:
      if (!widestGoes) break;
      [[fallthrough]];
    case LB_RESETCONTENT:
    case WM_SETFONT:
      SetWidest(ItemsWidth(0, GetItems()->GetCount()));
      break;
    default:
      break;
  }
}

// The widest text of the items from..to-1, drawn with the window's font.
int TCustomListBox::ItemsWidth(int from, int to) {
  const OwnedWindowDC dc(GetHandle());
  DCChanger use(dc.get());
  if (auto font = reinterpret_cast<HFONT>(SendMessageA(GetHandle(), WM_GETFONT, 0, 0))) use.Select(font);
  int widest = 0;
  for (int i = from; i < to; ++i) {
    // As the list holds it: converted from the code page when it was added.
    const AnsiString text = GetItems()->Get(i);
    const std::wstring wide = Graphics::WideText(text.c_str(), text.Length());
    SIZE size{};
    GetTextExtentPoint32W(dc.get(), wide.c_str(), static_cast<int>(wide.size()), &size);
    widest = std::max(widest, static_cast<int>(size.cx));
  }
  return widest;
}

void TCustomListBox::SetWidest(int width) {
  // The window draws its text a little in from its left edge.
  constexpr int kMargin = 4;
  widest_ = width;
  SendMessageA(GetHandle(), LB_SETHORIZONTALEXTENT, width ? width + kMargin : 0, 0);
}

bool TCustomListBox::GetSelected(int index) {
  const int result = static_cast<int>(SendMessageA(GetHandle(), LB_GETSEL, index, 0));
  if (result < 0) Classes::ListIndexError(index);
  return result > 0;
}

void TCustomListBox::SetSelected(int index, bool value) {
  const LRESULT result = multiSelect_ ? SendMessageA(GetHandle(), LB_SETSEL, value, index)
                                      : SendMessageA(GetHandle(), LB_SETCURSEL, value ? index : -1, 0);
  if (result == LB_ERR && (value || multiSelect_)) Classes::ListIndexError(index);
}

void TCustomListBox::Notified(TMessage& message) {
  if (message.Msg != Controls::CN_COMMAND) return;
  if (HIWORD(message.WParam) == LBN_SELCHANGE) Click();
  if (HIWORD(message.WParam) == LBN_DBLCLK) DblClick();
}

// ---- TCustomComboBox ----

TCustomComboBox::TCustomComboBox(Classes::TComponent* owner) : TCustomListControl(owner, kComboBox) {
  SetBounds(0, 0, 145, 21);
}

void TCustomComboBox::CreateParams(TCreateParams& params) {
  TWinControl::CreateParams(params);
  params.SystemClass = "COMBOBOX";
  static constexpr DWORD kStyles[] = {CBS_DROPDOWN, CBS_SIMPLE, CBS_DROPDOWNLIST};
  params.Style |= kStyles[style_] | CBS_AUTOHSCROLL | WS_VSCROLL;
  // The height is that of the dropped-down list; the window system makes the
  // closed box as high as its font needs.
  params.Height = style_ == csSimple ? params.Height : params.Height + 200;
}

void TCustomComboBox::CreateWnd() {
  TCustomListControl::CreateWnd();
  COMBOBOXINFO info{};
  info.cbSize = sizeof info;
  if (style_ != csDropDownList && GetComboBoxInfo(GetHandle(), &info)) RouteInnerWindow(info.hwndItem);
}

int TCustomComboBox::GetItemIndex() {
  return HandleAllocated() ? static_cast<int>(SendMessageA(GetHandle(), CB_GETCURSEL, 0, 0)) : itemIndex_;
}

void TCustomComboBox::SetItemIndex(int value) {
  itemIndex_ = value;
  if (HandleAllocated()) SendMessageA(GetHandle(), CB_SETCURSEL, value, 0);
}

void TCustomComboBox::SetStyle(TComboBoxStyle value) {
  if (value == style_) return;
  style_ = value;
  if (HandleAllocated()) DestroyHandle();
}

void TCustomComboBox::Notified(TMessage& message) {
  if (message.Msg != Controls::CN_COMMAND) return;
  const WORD code = HIWORD(message.WParam);
  if (code == CBN_SELCHANGE || code == CBN_EDITCHANGE) onChange_(this);
}

}  // namespace Stdctrls
