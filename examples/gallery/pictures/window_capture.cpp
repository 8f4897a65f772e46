#include "examples/gallery/pictures/window_capture.h"

#include <cstdint>
#include <cstdio>
#include <vector>

#include "examples/gallery/pictures/picture_sheet.h"
#include "platform/vcl/forms/application.h"

namespace {

// The window, frame included, as it is on the screen.
bool Capture(HWND window, std::vector<uint32_t>& bits, int& width, int& height) {
  RECT r;
  GetWindowRect(window, &r);
  return CaptureScreen(r, bits, width, height);
}

}  // namespace

bool CaptureShot(HWND window, const char* label, Shot& shot) {
  shot.label = label;
  return Capture(window, shot.bits, shot.width, shot.height);
}

bool WriteWindow(HWND window, const std::string& path) {
  std::vector<uint32_t> bits;
  int width = 0, height = 0;
  const bool written = Capture(window, bits, width, height) && WritePng(path, bits.data(), width, height);
  if (!written) std::fprintf(stderr, "gallery: cannot write %s\n", path.c_str());
  std::printf("   %s %dx%d %s\n", path.substr(path.rfind('\\') + 1).c_str(), width, height,
              written ? "written" : "FAILED");
  return written;
}

void LetPaint(HWND window) {
  RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_FRAME | RDW_ALLCHILDREN | RDW_UPDATENOW);
  for (int i = 0; i < 20; ++i) {
    Forms::Application->ProcessMessages();
    Sleep(10);
  }
}
