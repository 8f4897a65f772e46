// The framework's form of standard controls, as a real window captured to PNG.
#include <windows.h>

#include <cstdio>
#include <string>
#include <vector>

#include "examples/gallery/pictures/picture_sheet.h"
#include "examples/gallery/pictures/pictures.h"
#include "platform/vcl/application.h"
#include "platform/vcl/std_buttons.h"
#include "platform/vcl/std_edits.h"
#include "platform/vcl/std_label.h"

using namespace Forms;
using namespace Stdctrls;

namespace {

template <class T>
T* Add(TForm* form, int left, int top, int width, int height, const char* text) {
  auto* control = new T(form);
  control->SetParent(form);
  control->SetBounds(left, top, width, height);
  control->SetText(text);
  return control;
}

// The window as it is on the screen, into a top-down 32-bit buffer.
bool Capture(HWND window, std::vector<uint32_t>& bits, int& width, int& height) {
  RECT r;
  GetWindowRect(window, &r);
  width = r.right - r.left;
  height = r.bottom - r.top;
  BITMAPINFO info{};
  info.bmiHeader = {sizeof(BITMAPINFOHEADER), width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  void* pixels = nullptr;
  const OwnedBitmap dib(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &pixels, nullptr, 0));
  const OwnedMemoryDC dc(CreateCompatibleDC(nullptr));
  if (!dib || !dc) return false;
  DCChanger selected(dc.get());
  selected.Select(dib.get());
  // From the screen: the window system has drawn frame and controls there.
  const OwnedWindowDC screen(nullptr);
  if (!BitBlt(dc.get(), 0, 0, width, height, screen.get(), r.left, r.top, SRCCOPY)) return false;
  GdiFlush();
  bits.assign(static_cast<uint32_t*>(pixels), static_cast<uint32_t*>(pixels) + width * height);
  return true;
}

}  // namespace

int RenderFormPage(const char* folderName) {
  const std::string path = std::string(folderName ? folderName : "pictures") + "\\form.png";
  Application->Initialize();
  TForm form(nullptr);
  form.SetCaption("Velkin controls");
  form.SetBorderStyle(bsDialog);
  form.SetPosition(poScreenCenter);
  form.SetClientWidth(330);
  form.SetClientHeight(178);
  auto* name = Add<TLabel>(&form, 12, 16, 40, 15, "&Name:");
  name->SetFocusControl(Add<TEdit>(&form, 60, 12, 258, 23, "Edit box with text"));
  Add<TCheckBox>(&form, 12, 46, 150, 19, "&Check box")->SetChecked(true);
  auto* grayed = Add<TCheckBox>(&form, 12, 70, 150, 19, "&Grayed check box");
  grayed->SetAllowGrayed(true);
  grayed->SetState(cbGrayed);
  Add<TCheckBox>(&form, 12, 94, 150, 19, "Check box, &off");
  Add<TRadioButton>(&form, 172, 46, 146, 19, "&First choice")->SetChecked(true);
  Add<TRadioButton>(&form, 172, 70, 146, 19, "&Second choice");
  auto* disabled = Add<TRadioButton>(&form, 172, 94, 146, 19, "Disabled choice");
  disabled->SetEnabled(false);
  auto* ok = Add<TButton>(&form, 162, 141, 75, 25, "OK");
  ok->SetDefault(true);
  Add<TButton>(&form, 243, 141, 75, 25, "Cancel")->SetCancel(true);
  form.Show();
  RedrawWindow(form.GetHandle(), nullptr, nullptr, RDW_INVALIDATE | RDW_FRAME | RDW_ALLCHILDREN | RDW_UPDATENOW);
  for (int i = 0; i < 20; ++i) {
    Application->ProcessMessages();
    Sleep(10);
  }

  std::vector<uint32_t> bits;
  int width = 0, height = 0;
  const bool written = Capture(form.GetHandle(), bits, width, height) && WritePng(path, bits.data(), width, height);
  if (!written) std::fprintf(stderr, "gallery: cannot write %s\n", path.c_str());
  std::printf("   form.png %dx%d %s\n", width, height, written ? "written" : "FAILED");
  return written ? 1 : 0;
}
