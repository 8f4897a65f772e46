// Pens, brushes and fonts: what the handle holds (read back with GetObject),
// what selection does to the context, property conversions, notifications and
// Assign dispatch.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>
#include <functional>
#include <string>

#include "platform/vcl/graphics.h"
#include "velkin/gdi/gdi_brush.h"
#include "velkin/gdi/gdi_font.h"
#include "velkin/gdi/gdi_pen.h"
#include "velkin/gdi/gdi_temp.h"

using namespace Graphics;

namespace {

struct MemoryDC {
  HDC dc = CreateCompatibleDC(nullptr);
  ~MemoryDC() { DeleteDC(dc); }
};

// Counts OnChanged and OnDirtied of one object.
struct Listener {
  int changed = 0, dirtied = 0;
  void OnChanged(System::TObject*) { ++changed; }
  void OnDirtied(System::TObject*) { ++dirtied; }
  void Attach(HSizableObject& o) {
    o.OnChanged = System::TNotifyEvent(this, &Listener::OnChanged);
    o.OnDirtied = System::TNotifyEvent(this, &Listener::OnDirtied);
  }
};

std::string Bits(const HCustomGDIPen& pen) {
  std::string s;
  for (int i = 0; i < pen.GetPatternLength(); ++i) s += pen.GetPatternBits()[i] ? 'T' : 'F';
  return s;
}

TEST(GdiPen, HandleAndPattern) {
  HGDIPen pen;
  EXPECT_EQ("1", std::string(pen.GetPattern().c_str()));
  EXPECT_EQ("T", Bits(pen));

  pen.SetColor(TColor(0x123456));
  pen.SetWidth(3);
  pen.SetRoundEnd(false);
  EXTLOGPEN lp{};
  ASSERT_GT(GetObjectA(pen.GetHandle(), sizeof lp, &lp), 0);
  EXPECT_EQ(0x123456u, lp.elpColor);
  EXPECT_EQ(3u, lp.elpWidth);
  EXPECT_EQ(DWORD(PS_GEOMETRIC | PS_SOLID | PS_ENDCAP_SQUARE | PS_JOIN_BEVEL), lp.elpPenStyle);
  pen.SetRoundEnd(true);
  pen.SetColor(clBtnFace);  // system colours are resolved
  ASSERT_GT(GetObjectA(pen.GetHandle(), sizeof lp, &lp), 0);
  EXPECT_EQ(DWORD(PS_GEOMETRIC | PS_SOLID | PS_ENDCAP_ROUND | PS_JOIN_ROUND), lp.elpPenStyle);
  EXPECT_EQ(GetSysColor(COLOR_BTNFACE), lp.elpColor);
  // A null pen may come back as the stock null pen: only its style is certain.
  pen.SetStyle(HPS_None);
  ASSERT_GT(GetObjectA(pen.GetHandle(), sizeof lp, &lp), 0);
  EXPECT_EQ(DWORD(PS_NULL), lp.elpPenStyle & PS_STYLE_MASK);

  pen.SetWidth(-3);
  EXPECT_EQ(0, pen.GetWidth());

  struct Case {
    const char* text;
    const char* stored;
    const char* bits;
  } cases[] = {
      {"5, 3", "5,3", "TTTTTFFF"}, {" 2,1,1", "2,1,1", "TTFT"}, {"5,0,2", "2,1,1", "TTFT"},  // zero run: ignored
      {"", "2,1,1", "TTFT"},       {"3,-1", "2,1,1", "TTFT"},   {"1,2,3", "1,2,3", "TFFTTT"},
  };
  for (const auto& c : cases) {
    pen.SetPattern(c.text);
    EXPECT_EQ(std::string(c.stored), pen.GetPattern().c_str()) << "pattern '" << c.text << "'";
    EXPECT_EQ(std::string(c.bits), Bits(pen)) << "pattern '" << c.text << "'";
  }
}

TEST(GdiPen, NotificationsAndAssign) {
  HGDIPen pen;
  Listener l;
  l.Attach(pen);
  struct Step {
    const char* name;
    std::function<void()> run;
    int changed, dirtied;
  } steps[] = {
      {"SetColor", [&] { pen.SetColor(clRed); }, 1, 0},
      {"SetColor same", [&] { pen.SetColor(clRed); }, 1, 0},  // pens always notify
      {"SetWidth", [&] { pen.SetWidth(2); }, 0, 1},
      {"SetStyle", [&] { pen.SetStyle(HPS_None); }, 0, 1},
      {"SetRoundEnd", [&] { pen.SetRoundEnd(false); }, 0, 1},
      {"SetPattern", [&] { pen.SetPattern("4,4"); }, 1, 0},
      {"SetPattern bad", [&] { pen.SetPattern("4,0"); }, 0, 0},
  };
  for (const auto& s : steps) {
    l.changed = l.dirtied = 0;
    s.run();
    EXPECT_EQ(s.changed, l.changed) << s.name;
    EXPECT_EQ(s.dirtied, l.dirtied) << s.name;
  }

  HGDIPen copy;
  copy.Assign(static_cast<Classes::TPersistent*>(&pen));
  EXPECT_EQ(clRed, copy.GetColor());
  EXPECT_EQ(2, copy.GetWidth());
  EXPECT_EQ(HPS_None, copy.GetStyle());
  EXPECT_FALSE(copy.GetRoundEnd());
  EXPECT_EQ("TTTTFFFF", Bits(copy));

  struct Map {
    TPenStyle style;
    const char* pattern;
  } maps[] = {
      {psSolid, "1"}, {psDash, "5,5"},     {psDot, "2,2"}, {psDashDot, "5,3,2,3"}, {psDashDotDot, "5,3,2,3,2,3"},
      {psClear, "1"}, {psInsideFrame, "1"}};
  TPen vcl;
  vcl.SetColor(clBlue);
  vcl.SetWidth(4);
  for (const auto& m : maps) {
    vcl.SetStyle(m.style);
    copy.Assign(static_cast<Classes::TPersistent*>(&vcl));
    EXPECT_EQ(std::string(m.pattern), copy.GetPattern().c_str()) << "TPenStyle " << m.style;
    EXPECT_EQ(HPS_Solid, copy.GetStyle()) << "TPenStyle " << m.style;
    EXPECT_EQ(clBlue, copy.GetColor());
    EXPECT_EQ(4, copy.GetWidth());
    EXPECT_FALSE(copy.GetRoundEnd()) << "round end must be kept";
  }

  TBrush notAPen;
  EXPECT_THROW(copy.Assign(static_cast<Classes::TPersistent*>(&notAPen)), Sysutils::EConvertError);
}

TEST(GdiBrush, HandleStylesAndFillMode) {
  struct Case {
    HFillStyle_Types style;
    UINT lbStyle;
    ULONG_PTR hatch;
  } cases[] = {
      {HFS_Solid, BS_SOLID, 0},
      {HFS_Bitmap, BS_SOLID, 0},
      {HFS_None, BS_NULL, 0},
      {HFS_BDiagonal, BS_HATCHED, HS_BDIAGONAL},
      {HFS_Cross, BS_HATCHED, HS_CROSS},
      {HFS_DiagCross, BS_HATCHED, HS_DIAGCROSS},
      {HFS_FDiagonal, BS_HATCHED, HS_FDIAGONAL},
      {HFS_Horizontal, BS_HATCHED, HS_HORIZONTAL},
      {HFS_Vertical, BS_HATCHED, HS_VERTICAL},
      {HFillStyle_Types(42), BS_HATCHED, HS_CROSS},
  };
  HGDIBrush brush;
  brush.SetColor(TColor(0x00A0B0C0));
  for (const auto& c : cases) {
    brush.SetStyle(c.style);
    LOGBRUSH lb{};
    ASSERT_GT(GetObjectA(brush.GetHandle(), sizeof lb, &lb), 0) << "style " << int(c.style);
    EXPECT_EQ(c.lbStyle, lb.lbStyle) << "style " << int(c.style);
    if (c.lbStyle != BS_NULL) {
      EXPECT_EQ(0x00A0B0C0u, lb.lbColor) << "style " << int(c.style);
    }
    if (c.lbStyle == BS_HATCHED) {
      EXPECT_EQ(c.hatch, lb.lbHatch) << "style " << int(c.style);
    }
  }

  MemoryDC m;
  SetPolyFillMode(m.dc, ALTERNATE);
  brush.SetPolygonStyle(HPF_Include);
  brush.Select(m.dc);
  EXPECT_EQ(WINDING, GetPolyFillMode(m.dc));
  EXPECT_EQ(brush.GetHandle(), GetCurrentObject(m.dc, OBJ_BRUSH));
  brush.Restore();
  EXPECT_EQ(WINDING, GetPolyFillMode(m.dc)) << "restore keeps the fill mode";
  EXPECT_NE(brush.GetHandle(), GetCurrentObject(m.dc, OBJ_BRUSH));

  Listener l;
  l.Attach(brush);
  brush.SetStyle(HFS_Solid);
  brush.SetPolygonStyle(HPF_Exclude);
  brush.SetColor(clRed);
  EXPECT_EQ(3, l.changed);
  EXPECT_EQ(0, l.dirtied);

  struct Map {
    TBrushStyle vcl;
    HFillStyle_Types style;
  } maps[] = {{bsSolid, HFS_Solid},       {bsClear, HFS_None},          {bsHorizontal, HFS_Horizontal},
              {bsVertical, HFS_Vertical}, {bsFDiagonal, HFS_FDiagonal}, {bsBDiagonal, HFS_BDiagonal},
              {bsCross, HFS_Cross},       {bsDiagCross, HFS_DiagCross}};
  TBrush vcl;
  vcl.SetColor(clLime);
  for (const auto& mp : maps) {
    vcl.SetStyle(mp.vcl);
    brush.Assign(static_cast<Classes::TPersistent*>(&vcl));
    EXPECT_EQ(mp.style, brush.GetStyle()) << "TBrushStyle " << mp.vcl;
    EXPECT_EQ(clLime, brush.GetColor());
  }
  HGDIBrush copy;
  copy.Assign(&brush);
  EXPECT_EQ(HFS_DiagCross, copy.GetStyle());
  EXPECT_EQ(clLime, copy.GetColor());
  EXPECT_EQ(HPF_Exclude, copy.GetPolygonStyle());
}

TEST(GdiCharset, TableConversions) {
  EXPECT_EQ(HFCS_Default, hfIndex2Charset(0));
  EXPECT_EQ(HFCS_Default, hfIndex2Charset(18));
  EXPECT_EQ(HFCS_Default, hfIndex2Charset(-1));
  EXPECT_EQ(HFCS_Ansi, hfIndex2Charset(1));
  EXPECT_EQ(HFCS_Baltic, hfIndex2Charset(17));
  EXPECT_EQ(0, hfCharset2Index(HFCS_Default));
  EXPECT_EQ(1, hfCharset2Index(HFCS_Ansi));
  EXPECT_EQ(-1, hfCharset2Index(HFontCharset(99)));
  EXPECT_EQ(HFCS_Default, hfValue2Charset(99));
  EXPECT_EQ(1, hfCharset2Value(HFCS_Ansi));
  EXPECT_EQ(0, hfCharset2Value(HFCS_Default));
  EXPECT_EQ(1, hfCharset2Value(HFontCharset(99)));
  // Every charset round-trips through its byte and its row.
  for (int i = 0; i <= HFCS_Baltic; ++i) {
    const HFontCharset cs = HFontCharset(i);
    EXPECT_EQ(cs, hfValue2Charset(hfCharset2Value(cs))) << i;
    EXPECT_EQ(cs, hfIndex2Charset(hfCharset2Index(cs))) << i;
  }
  EXPECT_EQ(nullptr, hfCharsetTable()[18].Name);
  EXPECT_STREQ("RUSSIAN_CHARSET", hfCharsetTable()[15].Name);
  EXPECT_EQ(204, hfCharsetTable()[15].Value);
}

TEST(GdiFont, PropertiesOverLogFont) {
  LOGFONTA stock{};
  GetObjectA(GetStockObject(ANSI_VAR_FONT), sizeof stock, &stock);
  HGDIFont font;
  EXPECT_STREQ(stock.lfFaceName, font.GetFontName().c_str());
  EXPECT_EQ(stock.lfHeight, font.GetHeight());

  font.SetWidth(7);
  font.SetHeight(-20);
  EXPECT_EQ(7, font.GetWidth()) << "SetHeight keeps the width";
  font.SetSize(-18);
  EXPECT_EQ(0, font.GetWidth()) << "SetSize zeroes the width";
  EXPECT_EQ(-18, font.GetSize());
  font.SetAngle(45);
  EXPECT_EQ(450, font.GetLogFont().lfEscapement);
  font.SetWeight(600);
  EXPECT_FALSE(font.GetWeight());
  EXPECT_FALSE(font.GetBold());
  font.SetBold(true);
  EXPECT_EQ(700, font.GetLogFont().lfWeight);
  EXPECT_TRUE(font.GetWeight());
  font.SetVariable(false);
  EXPECT_EQ(FIXED_PITCH, font.GetLogFont().lfPitchAndFamily);
  font.SetVariable(true);
  EXPECT_EQ(VARIABLE_PITCH, font.GetLogFont().lfPitchAndFamily);
  font.SetCharset(HFCS_Russian);
  EXPECT_EQ(204, font.GetLogFont().lfCharSet);
  EXPECT_EQ(15, font.GetCharsetIndex());
  font.SetCharsetIndex(0);
  EXPECT_EQ(HFCS_Default, font.GetCharset());
  EXPECT_EQ(0, font.GetLogFont().lfCharSet);
  font.SetItalic(true);
  font.SetUnderline(true);
  font.SetStrikeout(true);
  font.SetFontName("A face name that is much longer than thirty-one characters");
  EXPECT_EQ(31, font.GetFontName().Length());

  // The handle holds exactly the record.
  LOGFONTA got{};
  ASSERT_GT(GetObjectA(font.GetHandle(), sizeof got, &got), 0);
  EXPECT_EQ(-18, got.lfHeight);
  EXPECT_EQ(450, got.lfEscapement);
  EXPECT_EQ(700, got.lfWeight);
  EXPECT_EQ(1, got.lfItalic);
  EXPECT_EQ(1, got.lfUnderline);
  EXPECT_EQ(1, got.lfStrikeOut);
  EXPECT_EQ(0, got.lfCharSet);
  EXPECT_STREQ(font.GetFontName().c_str(), got.lfFaceName);

  // Notifications: unchanged values do nothing, colour is Changed, the rest Dirtied.
  Listener l;
  l.Attach(font);
  font.SetBold(true);
  font.SetAngle(45);
  font.SetFontName(font.GetFontName().UpperCase());  // compared without case
  EXPECT_EQ(0, l.changed + l.dirtied);
  font.SetColor(clRed);
  EXPECT_EQ(1, l.changed);
  font.SetHeight(-12);
  font.SetFontName("Arial");
  EXPECT_EQ(2, l.dirtied);
}

TEST(GdiFont, SelectSwapsTextColorAndTextSize) {
  Gdi_temp::Initialize();
  MemoryDC m;
  SetTextColor(m.dc, RGB(1, 2, 3));
  HGDIFont font;
  font.SetColor(clBlue);
  font.Select(m.dc);
  EXPECT_EQ(font.GetHandle(), GetCurrentObject(m.dc, OBJ_FONT));
  EXPECT_EQ(RGB(0, 0, 255), GetTextColor(m.dc));
  font.Restore();
  EXPECT_EQ(RGB(1, 2, 3), GetTextColor(m.dc));
  EXPECT_NE(font.GetHandle(), GetCurrentObject(m.dc, OBJ_FONT));

  // TextSize equals DrawText's measure in the same font, on the given DC or the pool's.
  font.SetHeight(-24);
  HFONT probe = CreateFontIndirectA(&font.GetLogFont());
  HGDIOBJ old = SelectObject(m.dc, probe);
  RECT expected{};
  DrawTextA(m.dc, "Hello, world", -1, &expected, DT_CALCRECT);
  SelectObject(m.dc, old);
  DeleteObject(probe);
  MyPoint onPool = font.TextSize("Hello, world");
  MyPoint onDC = font.TextSize("Hello, world", m.dc);
  EXPECT_EQ(expected.right, onPool.x);
  EXPECT_EQ(expected.bottom, onPool.y);
  EXPECT_EQ(onPool, onDC);
  EXPECT_FALSE(font.GetSelected()) << "TextSize leaves no selection behind";
  EXPECT_EQ(0, font.TextSize(nullptr).x);

  // Assign: a GDI font copies the record and colour; a VCL font is ignored.
  HGDIFont copy;
  copy.Assign(static_cast<Classes::TPersistent*>(&font));
  EXPECT_EQ(0, std::memcmp(&copy.GetLogFont(), &font.GetLogFont(), sizeof(LOGFONTA)));
  EXPECT_EQ(clBlue, copy.GetColor());
  TFont vcl;
  vcl.SetName("Courier New");
  vcl.SetHeight(-40);
  copy.Assign(static_cast<Classes::TPersistent*>(&vcl));
  EXPECT_EQ(-24, copy.GetHeight());
  EXPECT_EQ(0, std::memcmp(&copy.GetLogFont(), &font.GetLogFont(), sizeof(LOGFONTA)));
  Gdi_temp::Finalize();
}

}  // namespace
