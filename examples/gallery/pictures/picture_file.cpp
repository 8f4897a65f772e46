#include "examples/gallery/pictures/picture_file.h"

#include <wincodec.h>

#include <cstdio>

#include "platform/ostrel/dc_changer.h"
#include "platform/ostrel/owned_handle.h"

namespace {

// A path in the process's code page, for the imaging component's wide calls.
std::wstring WidePath(const std::string& path) {
  std::wstring wide(path.size(), L'\0');
  wide.resize(static_cast<size_t>(
      MultiByteToWideChar(CP_ACP, 0, path.data(), static_cast<int>(path.size()), wide.data(), static_cast<int>(wide.size()))));
  return wide;
}

}  // namespace

bool CaptureScreen(const RECT& r, std::vector<uint32_t>& bits, int& width, int& height) {
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
  const OwnedWindowDC screen(nullptr);
  if (!BitBlt(dc.get(), 0, 0, width, height, screen.get(), r.left, r.top, SRCCOPY)) return false;
  GdiFlush();
  bits.assign(static_cast<uint32_t*>(pixels), static_cast<uint32_t*>(pixels) + width * height);
  return true;
}

namespace {

// Releases a COM interface at scope end.
template <class T>
struct ComPtr {
  T* p = nullptr;
  ~ComPtr() {
    if (p) p->Release();
  }
  T** operator&() { return &p; }
  T* operator->() const { return p; }
};

bool Failed(HRESULT hr, const char* what) {
  if (SUCCEEDED(hr)) return false;
  std::fprintf(stderr, "WIC: %s failed (0x%08lX)\n", what, static_cast<unsigned long>(hr));
  return true;
}

}  // namespace

bool WritePng(const std::string& path, const uint32_t* bits, int width, int height) {
  ComPtr<IWICImagingFactory> factory;
  if (Failed(CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER, IID_IWICImagingFactory,
                              reinterpret_cast<void**>(&factory)),
             "creating the imaging factory"))
    return false;
  ComPtr<IWICStream> stream;
  if (Failed(factory->CreateStream(&stream), "CreateStream")) return false;
  const std::wstring wide = WidePath(path);
  if (Failed(stream->InitializeFromFilename(wide.c_str(), GENERIC_WRITE), "opening the file")) return false;
  ComPtr<IWICBitmapEncoder> encoder;
  if (Failed(factory->CreateEncoder(GUID_ContainerFormatPng, nullptr, &encoder), "CreateEncoder")) return false;
  if (Failed(encoder->Initialize(stream.p, WICBitmapEncoderNoCache), "encoder Initialize")) return false;
  ComPtr<IWICBitmapFrameEncode> frame;
  if (Failed(encoder->CreateNewFrame(&frame, nullptr), "CreateNewFrame")) return false;
  if (Failed(frame->Initialize(nullptr), "frame Initialize")) return false;
  if (Failed(frame->SetSize(width, height), "SetSize")) return false;
  WICPixelFormatGUID format = GUID_WICPixelFormat32bppBGR;
  if (Failed(frame->SetPixelFormat(&format), "SetPixelFormat")) return false;
  if (!IsEqualGUID(format, GUID_WICPixelFormat32bppBGR)) {
    std::fprintf(stderr, "WIC: the PNG encoder wants another pixel format\n");
    return false;
  }
  const UINT stride = static_cast<UINT>(width) * 4;
  if (Failed(frame->WritePixels(height, stride, stride * height, reinterpret_cast<BYTE*>(const_cast<uint32_t*>(bits))),
             "WritePixels"))
    return false;
  if (Failed(frame->Commit(), "frame Commit")) return false;
  return !Failed(encoder->Commit(), "encoder Commit");
}

bool ReadPng(const std::string& path, std::vector<uint32_t>& bits, int& width, int& height) {
  if (GetFileAttributesA(path.c_str()) == INVALID_FILE_ATTRIBUTES) return false;
  ComPtr<IWICImagingFactory> factory;
  if (Failed(CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER, IID_IWICImagingFactory,
                              reinterpret_cast<void**>(&factory)),
             "creating the imaging factory"))
    return false;
  const std::wstring wide = WidePath(path);
  ComPtr<IWICBitmapDecoder> decoder;
  if (Failed(factory->CreateDecoderFromFilename(wide.c_str(), nullptr, GENERIC_READ, WICDecodeMetadataCacheOnDemand,
                                                &decoder),
             "opening the picture"))
    return false;
  ComPtr<IWICBitmapFrameDecode> frame;
  if (Failed(decoder->GetFrame(0, &frame), "GetFrame")) return false;
  ComPtr<IWICFormatConverter> converter;
  if (Failed(factory->CreateFormatConverter(&converter), "CreateFormatConverter")) return false;
  if (Failed(converter->Initialize(frame.p, GUID_WICPixelFormat32bppBGR, WICBitmapDitherTypeNone, nullptr, 0,
                                   WICBitmapPaletteTypeCustom),
             "converting the picture"))
    return false;
  UINT w = 0, h = 0;
  if (Failed(converter->GetSize(&w, &h), "GetSize")) return false;
  width = static_cast<int>(w), height = static_cast<int>(h);
  bits.assign(static_cast<size_t>(w) * h, 0);
  return !Failed(converter->CopyPixels(nullptr, w * 4, w * h * 4, reinterpret_cast<BYTE*>(bits.data())), "CopyPixels");
}
