// Pictures of the examples' windows, taken from the screen as a user sees
// them, written as PNG the way the gallery writes its pictures.
#include <objbase.h>

#include <cstdio>
#include <string>
#include <vector>

#include "examples/gallery/pictures/picture_file.h"
#include "tests/examples/example_process.h"

namespace example_driver {

void Picture(const std::vector<HWND>& windows, const char* name) {
  const std::string folder = ExamplePath("VELKIN_EXAMPLE_PICTURES");
  if (folder.empty()) return;
  // Let the windows finish painting first.
  for (HWND window : windows)
    RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_FRAME | RDW_ALLCHILDREN | RDW_UPDATENOW);
  Sleep(300);
  RECT around{};
  for (HWND window : windows) {
    RECT r;
    GetWindowRect(window, &r);
    UnionRect(&around, &around, &r);
  }
  CoInitializeEx(nullptr, COINIT_MULTITHREADED);
  std::vector<uint32_t> bits;
  int width = 0, height = 0;
  const std::string path = folder + "\\" + name + ".png";
  const bool written = CaptureScreen(around, bits, width, height) && WritePng(path, bits.data(), width, height);
  std::printf("picture %s: %dx%d %s\n", path.c_str(), width, height, written ? "written" : "NOT WRITTEN");
}

}  // namespace example_driver
