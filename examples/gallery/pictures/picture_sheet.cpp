#include "examples/gallery/pictures/picture_sheet.h"

#include <wincodec.h>

#include <algorithm>
#include <cstdio>

#include "platform/vcl/graphics/measuring_dc.h"
#include "velkin/draw/tc_draw.h"
#include "velkin/draw/tc_text.h"

namespace {
// A top-down 32-bit DIB section; bits receives its pixels.
HBITMAP MakeSection(HDC dc, int width, int height, void** bits) {
  BITMAPINFO bi{};
  bi.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
  bi.bmiHeader.biWidth = width;
  bi.bmiHeader.biHeight = -height;
  bi.bmiHeader.biPlanes = 1;
  bi.bmiHeader.biBitCount = 32;
  return CreateDIBSection(dc, &bi, DIB_RGB_COLORS, bits, nullptr, 0);
}
}  // namespace

PictureSheet::PictureSheet(int width, int height, const char* title)
    : width_(width), height_(height), dc_(CreateCompatibleDC(nullptr)), bitmapIn_(dc_.get()) {
  void* bits = nullptr;
  bitmap_.reset(MakeSection(dc_.get(), width, height, &bits));
  bits_ = static_cast<uint32_t*>(bits);
  bitmapIn_.Select(bitmap_.get());
  canvas_.SetHandle(dc_.get());
  TC_Fill(&canvas_, MyRect{0, 0, width, height}, Graphics::clWhite);
  TC_Fill(&canvas_, MyRect{0, 0, width, kTitleHeight}, Graphics::TColor(0x603000));
  canvas_.GetFont()->SetStyle(Graphics::TFontStyles{Graphics::fsBold});
  TC_TextOut(&canvas_, MyRect{8, 0, width - 8, kTitleHeight}, title, Graphics::clWhite, DT_VCENTER | DT_SINGLELINE);
  canvas_.GetFont()->SetStyle(Graphics::TFontStyles{});
}

MyRect PictureSheet::Cell(int col, int row, int cellW, int cellH) const {
  const int x = 8 + col * cellW, y = kTitleHeight + 6 + row * cellH;
  return {x, y, x + cellW, y + cellH};
}

void PictureSheet::Label(const MyRect& cell, const char* text) {
  TC_TextOut(&canvas_, MyRect{cell.left, cell.top, cell.right, cell.top + kLabelHeight}, text, Graphics::clBlack,
             DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_END_ELLIPSIS);
}

void PictureSheet::Note(const MyRect& r, const char* text, unsigned flags) {
  TC_TextOut(&canvas_, r, text, Graphics::TColor(0x404040), flags);
}

bool PictureSheet::SavePng(const std::string& path) const {
  GdiFlush();
  return WritePng(path, bits_, width_, height_);
}

bool SaveShotSheet(const std::vector<std::vector<Shot>>& lines, const char* title, const std::string& path) {
  int sheetWidth = 0, sheetHeight = PictureSheet::kTitleHeight + 8;
  for (const auto& line : lines) {
    int width = 8, height = 0;
    for (const Shot& shot : line) {
      width += shot.width + 12;
      height = std::max(height, shot.height);
    }
    if (line.empty()) continue;
    sheetWidth = std::max(sheetWidth, width);
    sheetHeight += PictureSheet::kLabelHeight + height + 12;
  }
  if (sheetWidth == 0) return false;
  PictureSheet sheet(sheetWidth, sheetHeight, title);
  int y = PictureSheet::kTitleHeight + 8;
  for (const auto& line : lines) {
    if (line.empty()) continue;
    int x = 8, height = 0;
    for (const Shot& shot : line) {
      sheet.Note(MyRect{x, y, x + shot.width, y + PictureSheet::kLabelHeight}, shot.label.c_str(),
                 DT_LEFT | DT_SINGLELINE);
      for (int row = 0; row < shot.height; ++row)
        std::copy_n(&shot.bits[static_cast<size_t>(row) * shot.width], shot.width,
                    sheet.GetBits() + static_cast<size_t>(y + PictureSheet::kLabelHeight + row) * sheet.GetWidth() + x);
      x += shot.width + 12;
      height = std::max(height, shot.height);
    }
    y += PictureSheet::kLabelHeight + height + 12;
  }
  const bool saved = sheet.SavePng(path);
  std::printf("   %s %s\n", path.substr(path.rfind('\\') + 1).c_str(), saved ? "written" : "FAILED");
  return saved;
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
  const std::wstring wide = Graphics::WideText(path.c_str(), static_cast<int>(path.size()));
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
  const std::wstring wide = Graphics::WideText(path.c_str(), static_cast<int>(path.size()));
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
