#pragma once
#include <windows.h>

#include <cstdint>
#include <string>
#include <vector>

#include "examples/gallery/pictures/picture_file.h"
#include "platform/ostrel/dc_changer.h"
#include "platform/ostrel/mygeom.h"
#include "platform/ostrel/owned_handle.h"
#include "platform/vcl/graphics/canvas.h"

// One gallery picture: a white 32-bit DIB with a framework canvas over it, a
// title line at the top and labelled cells below, saved as PNG through WIC.
class PictureSheet {
 public:
  static constexpr int kTitleHeight = 28;
  static constexpr int kLabelHeight = 16;

  PictureSheet(int width, int height, const char* title);
  PictureSheet(const PictureSheet&) = delete;
  PictureSheet& operator=(const PictureSheet&) = delete;

  int GetWidth() const { return width_; }
  int GetHeight() const { return height_; }
  HDC GetDC() const { return dc_.get(); }
  Graphics::TCanvas* GetCanvas() { return &canvas_; }
  uint32_t* GetBits() const { return bits_; }

  // Cell (col, row) of a grid of cellW x cellH cells under the title; the
  // label goes in its top kLabelHeight pixels, Body() is the rest.
  MyRect Cell(int col, int row, int cellW, int cellH) const;
  static MyRect Body(const MyRect& cell) { return {cell.left, cell.top + kLabelHeight, cell.right, cell.bottom}; }
  // A label centred in the top strip of cell, through the library's text routine.
  void Label(const MyRect& cell, const char* text);
  // Small text anywhere.
  void Note(const MyRect& r, const char* text, unsigned flags);

  // Writes the picture; false with a reason on stderr when WIC fails.
  bool SavePng(const std::string& path) const;

 private:
  // Members go in reverse: the canvas lets the context go, the bitmap is taken
  // out of it, then bitmap and context are deleted.
  int width_, height_;
  OwnedMemoryDC dc_;
  OwnedBitmap bitmap_;
  DCChanger bitmapIn_;
  uint32_t* bits_ = nullptr;
  Graphics::TCanvas canvas_;
};

// A captured window with the label it is shown under.
struct Shot {
  std::string label;
  std::vector<uint32_t> bits;  // top-down 32-bit pixels
  int width = 0, height = 0;
};

// Puts lines of shots, each under its label, below a title and writes the
// picture to path; false when there is no shot or it cannot be written.
bool SaveShotSheet(const std::vector<std::vector<Shot>>& lines, const char* title, const std::string& path);
