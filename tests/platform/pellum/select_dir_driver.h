#pragma once
// Drives the directory dialog as a user would, from a script of steps run
// by the loop driver inside the dialog's modal loop.
#include <windows.h>

#include <functional>
#include <string>
#include <vector>

#include "platform/vcl/forms/application.h"
#include "platform/vcl/forms/forms.h"
#include "platform/vcl/stdctrls/std_edits.h"
#include "platform/vcl/stdctrls/std_lists.h"
#include "tests/platform/vcl/loop_driver.h"

namespace select_dir_driver {

using System::AnsiString;

using loop_driver::MessageBoxWindow;
using loop_driver::next;
using loop_driver::Step;
using loop_driver::timedOut;

inline Forms::TCustomForm* Dialog() {
  for (int i = 0; i < Forms::Screen->GetFormCount(); ++i) {
    Forms::TCustomForm* f = Forms::Screen->GetForm(i);
    if (f->ClassName() == AnsiString("TSelectDirForm") && f->HandleAllocated() && IsWindowVisible(f->GetHandle()))
      return f;
  }
  return nullptr;
}

template <class C>
inline C* Part(const char* name) {
  Forms::TCustomForm* d = Dialog();
  return d ? dynamic_cast<C*>(d->FindComponent(name)) : nullptr;
}

inline std::string EditText() {
  auto* edit = Part<Stdctrls::TEdit>("DirEdit");
  return edit ? edit->GetText().c_str() : "";
}

// Steps.
inline Step Opened() {
  return [] { return Dialog() != nullptr && !MessageBoxWindow(); };
}
inline Step Type(std::string text) {
  return [text] {
    auto* edit = Part<Stdctrls::TEdit>("DirEdit");
    if (!edit) return false;
    SetWindowTextA(edit->GetHandle(), text.c_str());
    return true;
  };
}
inline Step Press(const char* button) {
  return [button] {
    auto* b = Part<Controls::TWinControl>(button);
    if (!b || MessageBoxWindow()) return false;
    PostMessageA(b->GetHandle(), BM_CLICK, 0, 0);
    return true;
  };
}
inline Step OpenFolder(std::string name) {
  return [name] {
    auto* list = Part<Stdctrls::TListBox>("DirList");
    if (!list) return false;
    const int index = list->GetItems()->IndexOf(name.c_str());
    if (index < 0) return false;
    list->SetItemIndex(index);
    RECT r;
    SendMessageA(list->GetHandle(), LB_GETITEMRECT, index, reinterpret_cast<LPARAM>(&r));
    SendMessageA(list->GetHandle(), WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(r.left + 2, r.top + 2));
    return true;
  };
}
inline Step Answer(int button) {
  return [button] {
    HWND box = MessageBoxWindow();
    if (!box) return false;
    PostMessageA(box, WM_COMMAND, button, 0);
    return true;
  };
}

// Runs call (which opens the dialog) with a script; call's result. A script
// that goes wrong closes what is open.
inline bool RunScript(std::vector<Step> steps, const std::function<bool()>& call) {
  return loop_driver::Drive(
      std::move(steps),
      [] {
        if (HWND box = MessageBoxWindow()) PostMessageA(box, WM_COMMAND, IDCANCEL, 0);
        if (auto* cancel = Part<Controls::TWinControl>("CancelButton"))
          PostMessageA(cancel->GetHandle(), BM_CLICK, 0, 0);
      },
      call);
}

}  // namespace select_dir_driver
