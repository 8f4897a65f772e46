// Pictures of the examples' windows, taken from the screen as a user sees
// them, written as PNG through the system's imaging component.
#include <wincodec.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "platform/ostrel/dc_changer.h"
#include "platform/ostrel/owned_handle.h"
#include "tests/examples/example_process.h"

namespace example_driver {

namespace {

template <class T>
struct ComPtr {
  T* p = nullptr;
  ~ComPtr() {
    if (p) p->Release();
  }
};

// The rectangle round the windows on the screen, top-down 32-bit rows.
bool Capture(const std::vector<HWND>& windows, std::vector<BYTE>& bits, int& width, int& height) {
  RECT r{};
  for (HWND window : windows) {
    RECT w;
    GetWindowRect(window, &w);
    UnionRect(&r, &r, &w);
  }
  width = r.right - r.left;
  height = r.bottom - r.top;
  BITMAPINFO info{};
  info.bmiHeader = {sizeof(BITMAPINFOHEADER), width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  void* pixels = nullptr;
  const OwnedBitmap dib(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &pixels, nullptr, 0));
  const OwnedMemoryDC memory(CreateCompatibleDC(nullptr));
  if (!dib || !memory) return false;
  DCChanger selected(memory.get());
  selected.Select(dib.get());
  const OwnedWindowDC screen(nullptr);
  if (!BitBlt(memory.get(), 0, 0, width, height, screen.get(), r.left, r.top, SRCCOPY)) return false;
  GdiFlush();
  bits.assign(static_cast<BYTE*>(pixels), static_cast<BYTE*>(pixels) + width * height * 4);
  return true;
}

bool WritePng(const std::string& path, std::vector<BYTE>& bits, int width, int height) {
  CoInitializeEx(nullptr, COINIT_MULTITHREADED);
  ComPtr<IWICImagingFactory> factory;
  ComPtr<IWICStream> stream;
  ComPtr<IWICBitmapEncoder> encoder;
  ComPtr<IWICBitmapFrameEncode> frame;
  const std::wstring wide(path.begin(), path.end());
  WICPixelFormatGUID format = GUID_WICPixelFormat32bppBGR;
  return SUCCEEDED(CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER, IID_IWICImagingFactory,
                                    reinterpret_cast<void**>(&factory.p))) &&
         SUCCEEDED(factory.p->CreateStream(&stream.p)) &&
         SUCCEEDED(stream.p->InitializeFromFilename(wide.c_str(), GENERIC_WRITE)) &&
         SUCCEEDED(factory.p->CreateEncoder(GUID_ContainerFormatPng, nullptr, &encoder.p)) &&
         SUCCEEDED(encoder.p->Initialize(stream.p, WICBitmapEncoderNoCache)) &&
         SUCCEEDED(encoder.p->CreateNewFrame(&frame.p, nullptr)) && SUCCEEDED(frame.p->Initialize(nullptr)) &&
         SUCCEEDED(frame.p->SetSize(width, height)) && SUCCEEDED(frame.p->SetPixelFormat(&format)) &&
         IsEqualGUID(format, GUID_WICPixelFormat32bppBGR) &&
         SUCCEEDED(frame.p->WritePixels(height, width * 4, static_cast<UINT>(bits.size()), bits.data())) &&
         SUCCEEDED(frame.p->Commit()) && SUCCEEDED(encoder.p->Commit());
}

}  // namespace

void Picture(const std::vector<HWND>& windows, const char* name) {
  const std::string folder = ExamplePath("VELKIN_EXAMPLE_PICTURES");
  if (folder.empty()) return;
  // Let the windows finish painting first.
  for (HWND window : windows)
    RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_FRAME | RDW_ALLCHILDREN | RDW_UPDATENOW);
  Sleep(300);
  std::vector<BYTE> bits;
  int width = 0, height = 0;
  const std::string path = folder + "\\" + name + ".png";
  const bool written = Capture(windows, bits, width, height) && WritePng(path, bits, width, height);
  std::printf("picture %s: %dx%d %s\n", path.c_str(), width, height, written ? "written" : "NOT WRITTEN");
}

}  // namespace example_driver
