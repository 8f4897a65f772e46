#include "examples/gallery/pictures/picture_sheet.h"

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

