#pragma once
// Whether the texts of a form's controls fit the controls, read from what is
// on the screen: each text's extent in its control's font against the room
// the control gives it, and for labels the ink as drawn, in pixels.
#include <windows.h>

#include <functional>
#include <string>
#include <vector>

#include "platform/ostrel/owned_handle.h"
#include "platform/vcl/forms/forms.h"
#include "platform/vcl/graphics/measuring_dc.h"
#include "platform/vcl/stdctrls/std_label.h"

namespace text_fit {

// The extent of text in font, on one line or wrapped at width.
inline SIZE Extent(HFONT font, const std::string& text, int width = 0) {
  OwnedMemoryDC dc(CreateCompatibleDC(nullptr));
  HGDIOBJ old = SelectObject(dc.get(), font);
  RECT r{0, 0, width, 0};
  // Wide: under Wine the 8-bit GDI functions misread a UTF-8 program's text.
  const std::wstring wide = Graphics::WideText(text.empty() ? " " : text.c_str(), -1);
  DrawTextW(dc.get(), wide.c_str(), -1, &r, DT_CALCRECT | (width ? DT_WORDBREAK : DT_SINGLELINE));
  SelectObject(dc.get(), old);
  return {r.right, r.bottom};
}

// The rightmost column in which draw changed a pixel of a width x height
// bitmap filled with background; -1 when it changed none.
inline int InkRight(int width, int height, COLORREF background, const std::function<void(HDC)>& draw) {
  OwnedMemoryDC dc(CreateCompatibleDC(nullptr));
  BITMAPINFO info{};
  info.bmiHeader = {sizeof(BITMAPINFOHEADER), width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  void* bits = nullptr;
  OwnedBitmap bitmap(CreateDIBSection(dc.get(), &info, DIB_RGB_COLORS, &bits, nullptr, 0));
  HGDIOBJ old = SelectObject(dc.get(), bitmap.get());
  const OwnedBrush fill(CreateSolidBrush(background));
  const RECT all{0, 0, width, height};
  FillRect(dc.get(), &all, fill.get());
  draw(dc.get());
  GdiFlush();
  const auto* pixels = static_cast<const DWORD*>(bits);
  const DWORD ground = pixels[width - 1];  // the background as the bitmap holds it: nothing draws there
  int right = -1;
  for (int y = 0; y < height; ++y)
    for (int x = right + 1; x < width; ++x)
      if (pixels[y * width + x] != ground) right = x;
  SelectObject(dc.get(), old);
  return right;
}

// The ink of text drawn whole (not clipped) from the left of a width x height
// box in font: its rightmost column, -1 for none.
inline int TextInkRight(HFONT font, const std::wstring& text, int width, int height, UINT flags) {
  return InkRight(width + 64, height, RGB(255, 255, 255), [&](HDC dc) {
    SelectObject(dc, font);
    SetBkMode(dc, TRANSPARENT);
    RECT r{0, 0, width, height};
    DrawTextW(dc, text.c_str(), -1, &r, flags | DT_NOCLIP);
  });
}

// When a one-line label's caption, painted by the label, is cut, or its ink
// touches the label's last column: what is wrong; else empty.
inline std::string InkOutside(Stdctrls::TCustomLabel* label) {
  const int width = label->GetWidth(), height = label->GetHeight();
  const COLORREF ground = static_cast<COLORREF>(Graphics::ColorToRGB(label->GetColor()));
  // The label paints into a bitmap wider than itself: what it cuts is missing.
  const int painted = InkRight(width + 64, height, ground, [label](HDC dc) { label->Paint(dc); });
  const int whole = InkRight(width + 64, height, ground, [&](HDC dc) {
    SelectObject(dc, label->GetFont()->GetHandle());
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, static_cast<COLORREF>(Graphics::ColorToRGB(label->GetFont()->GetColor())));
    RECT r{0, 0, width, height};
    DrawTextW(dc, Graphics::WideText(label->GetText().c_str(), -1).c_str(), -1, &r,
              DT_LEFT | DT_SINGLELINE | DT_NOCLIP);
  });
  const std::string sizes = " (" + std::to_string(width) + " wide, \"" + label->GetText().c_str() + "\")";
  if (painted < whole)
    return "painted to column " + std::to_string(painted) + ", its text reaches " + std::to_string(whole) + sizes;
  if (whole >= width - 1) return "ink in column " + std::to_string(whole) + sizes;
  return "";
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
    auto* asLabel = dynamic_cast<Stdctrls::TCustomLabel*>(control);
    if (asLabel && !asLabel->GetWordWrap() && !text.empty())
      if (const std::string ink = InkOutside(asLabel); !ink.empty()) clipped.push_back(name + ": " + ink);
  }
  return clipped;
}

}  // namespace text_fit
