#pragma once
// Whether the texts of a form's controls fit the controls, read from what is
// on the screen: each text's extent in its control's font against the room
// the control gives it.
#include <windows.h>

#include <string>
#include <vector>

#include "platform/ostrel/owned_handle.h"
#include "platform/vcl/forms/forms.h"
#include "platform/vcl/stdctrls/std_label.h"

namespace text_fit {

// The extent of text in font, on one line or wrapped at width.
inline SIZE Extent(HFONT font, const std::string& text, int width = 0) {
  OwnedMemoryDC dc(CreateCompatibleDC(nullptr));
  HGDIOBJ old = SelectObject(dc.get(), font);
  RECT r{0, 0, width, 0};
  DrawTextA(dc.get(), text.empty() ? " " : text.c_str(), -1, &r, DT_CALCRECT | (width ? DT_WORDBREAK : DT_SINGLELINE));
  SelectObject(dc.get(), old);
  return {r.right, r.bottom};
}

// One line per control of form whose text (or one line of it) does not fit.
inline std::vector<std::string> Clipped(Forms::TCustomForm* form) {
  std::vector<std::string> clipped;
  const int frame = GetSystemMetrics(SM_CXEDGE) * 2;
  for (int i = 0; i < form->GetComponentCount(); ++i) {
    auto* control = dynamic_cast<Controls::TControl*>(form->GetComponent(i));
    if (!control || !control->GetVisible()) continue;
    const std::string name = control->GetName().c_str();
    HFONT font = control->GetFont()->GetHandle();
    const std::string text = control->GetText().c_str();
    int width = control->GetWidth(), height = control->GetHeight();
    if (auto* windowed = dynamic_cast<Controls::TWinControl*>(control)) {
      RECT client;
      GetClientRect(windowed->GetHandle(), &client);
      width = client.right, height = client.bottom;
    }
    const bool label = dynamic_cast<Stdctrls::TCustomLabel*>(control) != nullptr;
    const std::string cls = control->ClassName().c_str();
    const bool push = cls == "TButton" || cls == "TBitBtn";
    const bool box = cls == "TEdit" || cls == "TMemo";
    if (!label && !push && !box) continue;
    const SIZE e = Extent(font, box ? "Xy" : text);
    const int room = push ? width - 2 * frame : width;
    if ((label || push) && e.cx > room)
      clipped.push_back(name + ": text " + std::to_string(e.cx) + " wide in " + std::to_string(room));
    if (e.cy > height)
      clipped.push_back(name + ": text " + std::to_string(e.cy) + " high in " + std::to_string(height));
  }
  return clipped;
}

}  // namespace text_fit
