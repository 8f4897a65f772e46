// Brushes: what each fill style puts into the handle, the fill mode a
// selection sets, the notifications, and copies from framework and GDI brushes.
#include "velkin/gdi/gdi_brush.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "platform/ostrel/owned_handle.h"
#include "platform/vcl/core/sysutils.h"
#include "platform/vcl/graphics/graphics.h"
#include "tests/velkin/gdi/gdi_fixtures.h"
#include "velkin/gdi/gdi_pen.h"

using namespace Graphics;
using namespace gdi_fixtures;
using Classes::TPersistent;

namespace {

// The handle's style, and its colour and hatch where they mean something.
void ExpectHandle(HCustomGDIBrush& brush, UINT style, COLORREF color, ULONG_PTR hatch, const std::string& row) {
  LOGBRUSH lb{};
  ASSERT_GT(GetObjectA(brush.GetHandle(), sizeof lb, &lb), 0) << row;
  EXPECT_EQ(style, lb.lbStyle) << row << ", lbStyle";
  EXPECT_EQ(style == BS_NULL ? 0 : color, style == BS_NULL ? 0 : lb.lbColor) << row << ", lbColor";
  EXPECT_EQ(hatch, style == BS_HATCHED ? lb.lbHatch : 0) << row << ", lbHatch";
}

// Every fill style of the framework's brush maps to one of ours; each of ours
// reaches the handle. A copy is one change, ended by Dirtied, and leaves a
// brush that locks on change unlocked.
TEST(HCustomGDIBrush, CopyIsOneChange) {
  const struct {
    TBrushStyle from;  // in declaration order
    HFillStyle_Types style;
    UINT lbStyle;
    ULONG_PTR hatch;
  } rows[] = {{bsSolid, HFS_Solid, BS_SOLID, 0},
              {bsClear, HFS_None, BS_NULL, 0},
              {bsHorizontal, HFS_Horizontal, BS_HATCHED, HS_HORIZONTAL},
              {bsVertical, HFS_Vertical, BS_HATCHED, HS_VERTICAL},
              {bsFDiagonal, HFS_FDiagonal, BS_HATCHED, HS_FDIAGONAL},
              {bsBDiagonal, HFS_BDiagonal, BS_HATCHED, HS_BDIAGONAL},
              {bsCross, HFS_Cross, BS_HATCHED, HS_CROSS},
              {bsDiagCross, HFS_DiagCross, BS_HATCHED, HS_DIAGCROSS}};
  for (bool lockOnChange : {false, true})
    for (const auto& r : rows) {
      const std::string row = "TBrushStyle " + std::to_string(r.from) + (lockOnChange ? ", locking on change" : "");
      HGDIBrush brush;
      brush.SetLockOnChange(lockOnChange);
      brush.GetHandle();
      Notes notes(brush);
      TBrush vcl;
      vcl.SetColor(clLime);
      vcl.SetStyle(r.from);
      EXPECT_EQ("D", notes([&] { brush.Assign(static_cast<TPersistent*>(&vcl)); })) << row << ", ending";
      EXPECT_EQ(1, notes.changing) << row << ", OnChanging";
      EXPECT_EQ(0, brush.GetLockCount()) << row << ", lock count after the copy";
      EXPECT_EQ(r.style, brush.GetStyle()) << row << ", style";
      ExpectHandle(brush, r.lbStyle, 0x00FF00, r.hatch, row);
      EXPECT_EQ("C", notes([&] { brush.SetColor(clRed); })) << row << ", a later change is announced";
    }
  TBrush* none = nullptr;
  HGDIBrush brush, copy;
  Notes notes(copy);
  EXPECT_EQ("", notes([&] { copy.Assign(none); })) << "a null framework brush";
  EXPECT_EQ(0, notes.changing) << "a null framework brush";

  // A GDI brush gives its polygon style too; other objects are refused.
  brush.SetColor(clLime);
  brush.SetStyle(HFS_DiagCross);
  brush.SetPolygonStyle(HPF_Include);
  EXPECT_EQ("D", notes([&] { copy.Assign(static_cast<TPersistent*>(&brush)); })) << "a GDI brush";
  EXPECT_EQ(HFS_DiagCross, copy.GetStyle()) << "a GDI brush, style";
  EXPECT_EQ(clLime, copy.GetColor()) << "a GDI brush, colour";
  EXPECT_EQ(HPF_Include, copy.GetPolygonStyle()) << "a GDI brush, polygon style";
  HGDIPen notABrush;
  EXPECT_THROW(copy.Assign(static_cast<TPersistent*>(&notABrush)), Sysutils::EConvertError);
}

TEST(HCustomGDIBrush, SolidBitmapUnknownStylesFillModeAndNotifications) {
  HGDIBrush brush;
  ExpectHandle(brush, BS_SOLID, 0xFFFFFF, 0, "a fresh brush");
  brush.SetColor(TColor(0x00A0B0C0));
  brush.SetStyle(HFS_Bitmap);
  ExpectHandle(brush, BS_SOLID, 0x00A0B0C0, 0, "HFS_Bitmap");
  brush.SetStyle(HFillStyle_Types(42));
  ExpectHandle(brush, BS_HATCHED, 0x00A0B0C0, HS_CROSS, "style 42");

  const OwnedMemoryDC m(CreateCompatibleDC(nullptr));
  SetPolyFillMode(m.get(), WINDING);
  brush.Select(m.get());
  EXPECT_EQ(ALTERNATE, GetPolyFillMode(m.get())) << "HPF_Exclude, the default, set on select";
  brush.Restore();
  EXPECT_EQ(ALTERNATE, GetPolyFillMode(m.get())) << "kept on restore";
  brush.SetPolygonStyle(HPF_Include);
  brush.Select(m.get());
  EXPECT_EQ(WINDING, GetPolyFillMode(m.get())) << "HPF_Include";
  brush.Restore();

  Notes notes(brush);
  EXPECT_EQ("CCC", notes([&] { brush.SetStyle(HFS_Solid), brush.SetPolygonStyle(HPF_Exclude), brush.SetColor(clRed); }))
      << "every setter notifies, with the same value too";
}

}  // namespace
