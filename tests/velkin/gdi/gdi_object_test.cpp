// GDI object wrappers: the lazy create / select / restore / destroy protocol;
// what pens, brushes, fonts, regions and bitmaps put into their handles and
// into the context they are selected in, read back from GDI; no handle leaks;
// the temporary pool.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstdio>
#include <cstring>
#include <functional>
#include <initializer_list>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "platform/vcl/graphics.h"
#include "platform/vcl/sysutils.h"
#include "velkin/gdi/gdi_bitmap.h"
#include "velkin/gdi/gdi_brush.h"
#include "velkin/gdi/gdi_dib.h"
#include "velkin/gdi/gdi_font.h"
#include "velkin/gdi/gdi_pen.h"
#include "velkin/gdi/gdi_region.h"
#include "velkin/gdi/gdi_temp.h"

using namespace Graphics;
using Classes::TPersistent;
using Sysutils::EConvertError;

namespace {

struct MemoryDC {
  HDC dc = CreateCompatibleDC(nullptr);
  ~MemoryDC() { DeleteDC(dc); }
};

std::string trace;  // protocol steps in order; "~" marks those run from a destructor
std::string Take() { return std::exchange(trace, std::string()); }

// A real pen object that logs each protocol step.
class CountingObject : public HGDIObject {
 public:
  ~CountingObject() override {
    inDestructor_ = true;
    ReleaseOnDestroy();
  }
  void Touch() { Changing(), Changed(); }

 protected:
  void* DoCreateHandle() override { return Log("create", CreatePen(PS_SOLID, 1, 0)); }
  void DoDestroyHandle(void* h) override { Log("destroy", DeleteObject(h)); }
  void* DoSelect(void* dc, void* h) override { return Log("select", SelectObject(static_cast<HDC>(dc), h)); }
  void DoRestore(void* dc, void* old) override { Log("restore", SelectObject(static_cast<HDC>(dc), old)); }

 private:
  template <class T>
  T Log(const char* step, T result) {
    trace += (trace.empty() ? "" : ",") + std::string(step) + (inDestructor_ ? "~" : "");
    return result;
  }
  bool inDestructor_ = false;
};

TEST(GdiObject, SelectRestoreRefreshDelete) {
  MemoryDC a, b;
  HGDIOBJ stock = GetCurrentObject(a.dc, OBJ_PEN);
  auto* o = new CountingObject;
  o->Dirtied();
  o->Refresh();  // no handle: only clears the flags
  EXPECT_EQ((std::tuple{std::string(), false, false}), (std::tuple{Take(), o->GetDirty(), o->GetModified()}));

  o->Select(a.dc);
  o->Select(a.dc);  // same context, unchanged: nothing
  EXPECT_EQ("create,select", Take());
  EXPECT_EQ((std::tuple{o->GetHandle(), stock}), (std::tuple{GetCurrentObject(a.dc, OBJ_PEN), o->GetOldObject()}));
  o->Select(b.dc);
  EXPECT_EQ("restore,select", Take());
  EXPECT_EQ(stock, GetCurrentObject(a.dc, OBJ_PEN));

  // A change while selected: the old handle stays until the next Select.
  void* before = o->GetHandle();
  o->Touch();
  EXPECT_EQ(before, GetCurrentObject(b.dc, OBJ_PEN));
  o->Select(b.dc);
  EXPECT_EQ("restore,destroy,create,select", Take());
  EXPECT_EQ(o->GetHandle(), GetCurrentObject(b.dc, OBJ_PEN));
  // GetHandle alone after a change also restores the selection first.
  o->Touch();
  o->GetHandle();
  EXPECT_EQ("restore,destroy,create", Take());
  EXPECT_EQ(stock, GetCurrentObject(b.dc, OBJ_PEN));

  o->Select(a.dc);
  Take();
  o->Refresh();
  EXPECT_EQ("restore,destroy,create,select", Take());
  EXPECT_EQ((std::tuple{o->GetHandle(), false}), (std::tuple{GetCurrentObject(a.dc, OBJ_PEN), o->GetModified()}));

  // delete releases from the before-destruction hook, not from a destructor.
  delete o;
  EXPECT_EQ("restore,destroy", Take());
  EXPECT_EQ(stock, GetCurrentObject(a.dc, OBJ_PEN));
}

// "kind:left,top,right,bottom" of the context's clip box.
std::string Clip(HDC dc) {
  RECT r{};
  const int kind = GetClipBox(dc, &r);
  char s[64];
  std::snprintf(s, sizeof s, "%d:%ld,%ld,%ld,%ld", kind, r.left, r.top, r.right, r.bottom);
  return s;
}

TEST(GdiRegion, SelectAndRestoreClip) {
  MemoryDC m;  // on a 50x50 bitmap, unclipped
  HBITMAP bmp = CreateCompatibleBitmap(m.dc, 50, 50);
  HGDIOBJ oldBmp = SelectObject(m.dc, bmp);
  EXPECT_EQ("2:0,0,50,50", Clip(m.dc));
  HGDIRegion region(0, 0, 9, 9);  // inclusive edges
  region.Select(m.dc);
  EXPECT_EQ("2:0,0,10,10", Clip(m.dc));
  region.Restore();  // the context had no clip: the empty region
  EXPECT_EQ("1:0,0,0,0", Clip(m.dc));

  // A context with a clip gets that clip back.
  HRGN outer = CreateRectRgn(5, 5, 40, 30);
  SelectClipRgn(m.dc, outer);
  DeleteObject(outer);
  HGDIRegion inner(MyRect{20, 20, 24, 24});
  inner.Select(m.dc);
  EXPECT_EQ("2:20,20,25,25", Clip(m.dc));
  inner.Restore();
  EXPECT_EQ("2:5,5,40,30", Clip(m.dc));
  SelectObject(m.dc, oldBmp);
  DeleteObject(bmp);
}

// The notifications an action raises: C = OnChanged, D = OnDirtied.
struct Notes {
  std::string seen;
  explicit Notes(HSizableObject& o) {
    o.SetOnChanged(System::TNotifyEvent(this, &Notes::OnChanged));
    o.SetOnDirtied(System::TNotifyEvent(this, &Notes::OnDirtied));
  }
  void OnChanged(System::TObject*) { seen += 'C'; }
  void OnDirtied(System::TObject*) { seen += 'D'; }
  std::string operator()(const std::function<void()>& action) { return seen.clear(), action(), seen; }
};

EXTLOGPEN PenOf(HGDIPen& pen) {
  EXTLOGPEN lp{};
  EXPECT_GT(GetObjectA(pen.GetHandle(), sizeof lp, &lp), 0);
  return lp;
}

// "colour wWidth sStyle round|flat pattern bits".
std::string Describe(const HCustomGDIPen& pen) {
  char s[64];
  std::snprintf(s, sizeof s, "%06X w%d s%d %s %s ", unsigned(pen.GetColor()), pen.GetWidth(), int(pen.GetStyle()),
                pen.GetRoundEnd() ? "round" : "flat", pen.GetPattern().c_str());
  std::string r = s;
  for (int i = 0; i < pen.GetPatternLength(); ++i) r += pen.GetPatternBits()[i] ? 'T' : 'F';
  return r;
}

TEST(GdiPen, HandleAndPattern) {
  HGDIPen pen;
  pen.SetColor(TColor(0x123456));
  pen.SetWidth(3);
  pen.SetRoundEnd(false);
  EXTLOGPEN lp = PenOf(pen);
  EXPECT_EQ((std::tuple{0x123456ul, 3ul, DWORD(PS_GEOMETRIC | PS_SOLID | PS_ENDCAP_SQUARE | PS_JOIN_BEVEL)}),
            (std::tuple{lp.elpColor, lp.elpWidth, lp.elpPenStyle}));
  pen.SetRoundEnd(true);
  pen.SetColor(clBtnFace);  // system colours are resolved
  lp = PenOf(pen);
  EXPECT_EQ((std::tuple{GetSysColor(COLOR_BTNFACE), DWORD(PS_GEOMETRIC | PS_SOLID | PS_ENDCAP_ROUND | PS_JOIN_ROUND)}),
            (std::tuple{lp.elpColor, lp.elpPenStyle}));
  pen.SetStyle(HPS_None);  // may come back as the stock null pen: only its style is certain
  EXPECT_EQ(DWORD(PS_NULL), PenOf(pen).elpPenStyle & PS_STYLE_MASK);

  // Blanks are dropped; a text with a run below 1 or no runs is ignored.
  const char* cases[][2] = {{"5, 3", "5,3 TTTTTFFF"}, {" 2,1,1", "2,1,1 TTFT"}, {"5,0,2", "2,1,1 TTFT"},
                            {"", "2,1,1 TTFT"},       {"3,-1", "2,1,1 TTFT"},   {"1,2,3", "1,2,3 TFFTTT"}};
  pen.SetColor(clBlack);
  pen.SetWidth(-3);
  for (const auto& c : cases) {
    pen.SetPattern(c[0]);
    EXPECT_EQ(std::string("000000 w0 s1 round ") + c[1], Describe(pen)) << "pattern '" << c[0] << "'";
  }
}

TEST(GdiPen, NotificationsAndAssign) {
  HGDIPen pen, copy;
  Notes notes(pen);
  EXPECT_EQ("CC", notes([&] { pen.SetColor(clRed), pen.SetColor(clRed); })) << "pens always notify";
  EXPECT_EQ("DDD", notes([&] { pen.SetWidth(2), pen.SetStyle(HPS_None), pen.SetRoundEnd(false); }));
  EXPECT_EQ("C", notes([&] { pen.SetPattern("4,4"); }));
  EXPECT_EQ("", notes([&] { pen.SetPattern("4,0"); }));
  copy.Assign(static_cast<TPersistent*>(&pen));
  EXPECT_EQ("0000FF w2 s1 flat 4,4 TTTTFFFF", Describe(copy));

  // A framework pen gives colour and width, a solid style and its dash style
  // as a pattern; round end is kept.
  const char* patterns[] = {
      "1 T", "5,5 TTTTTFFFFF", "2,2 TTFF", "5,3,2,3 TTTTTFFFTTFFF", "5,3,2,3,2,3 TTTTTFFFTTFFFTTFFF", "1 T", "1 T"};
  TPen vcl;
  vcl.SetColor(clBlue);
  vcl.SetWidth(4);
  for (int style = psSolid; style <= psInsideFrame; ++style) {
    vcl.SetStyle(TPenStyle(style));
    copy.Assign(static_cast<TPersistent*>(&vcl));
    EXPECT_EQ(std::string("FF0000 w4 s0 flat ") + patterns[style], Describe(copy)) << "TPenStyle " << style;
  }
  TBrush notAPen;
  EXPECT_THROW(copy.Assign(static_cast<TPersistent*>(&notAPen)), EConvertError);
}

TEST(GdiBrush, HandleStylesFillModeAndAssign) {
  // For HFillStyle_Types 0..8 in declaration order, then an unknown value.
  const UINT lbStyles[] = {BS_SOLID,   BS_SOLID,   BS_HATCHED, BS_HATCHED, BS_HATCHED,
                           BS_HATCHED, BS_HATCHED, BS_HATCHED, BS_NULL,    BS_HATCHED};
  const ULONG_PTR hatches[] = {0,           0, HS_BDIAGONAL, HS_CROSS, HS_DIAGCROSS, HS_FDIAGONAL, HS_HORIZONTAL,
                               HS_VERTICAL, 0, HS_CROSS};
  HGDIBrush brush;
  brush.SetColor(TColor(0x00A0B0C0));
  for (int style = 0; style < 10; ++style) {
    brush.SetStyle(HFillStyle_Types(style < 9 ? style : 42));
    LOGBRUSH lb{};
    ASSERT_GT(GetObjectA(brush.GetHandle(), sizeof lb, &lb), 0);
    // Colour and hatch only where they mean something.
    const bool null = lbStyles[style] == BS_NULL, hatched = lbStyles[style] == BS_HATCHED;
    EXPECT_EQ((std::tuple{lbStyles[style], null ? 0ul : 0x00A0B0C0ul, hatched ? hatches[style] : 0}),
              (std::tuple{lb.lbStyle, null ? 0ul : lb.lbColor, hatched ? lb.lbHatch : 0}))
        << "style " << style;
  }

  MemoryDC m;
  SetPolyFillMode(m.dc, ALTERNATE);
  brush.SetPolygonStyle(HPF_Include);
  brush.Select(m.dc);
  brush.Restore();
  EXPECT_EQ(WINDING, GetPolyFillMode(m.dc)) << "set on select, kept on restore";

  Notes notes(brush);
  EXPECT_EQ("CCC",
            notes([&] { brush.SetStyle(HFS_Solid), brush.SetPolygonStyle(HPF_Exclude), brush.SetColor(clRed); }));

  // TBrushStyle in declaration order.
  const HFillStyle_Types mapped[] = {HFS_Solid,     HFS_None,      HFS_Horizontal, HFS_Vertical,
                                     HFS_FDiagonal, HFS_BDiagonal, HFS_Cross,      HFS_DiagCross};
  TBrush vcl;
  vcl.SetColor(clLime);
  for (int style = bsSolid; style <= bsDiagCross; ++style) {
    vcl.SetStyle(TBrushStyle(style));
    brush.Assign(static_cast<TPersistent*>(&vcl));
    EXPECT_EQ((std::tuple{mapped[style], clLime}), (std::tuple{brush.GetStyle(), brush.GetColor()})) << style;
  }
  HGDIBrush copy;
  copy.Assign(static_cast<TPersistent*>(&brush));
  EXPECT_EQ((std::tuple{HFS_DiagCross, clLime, HPF_Exclude}),
            (std::tuple{copy.GetStyle(), copy.GetColor(), copy.GetPolygonStyle()}));
  HGDIPen notABrush;
  EXPECT_THROW(copy.Assign(static_cast<TPersistent*>(&notABrush)), EConvertError);
}

TEST(GdiCharset, TableConversions) {
  // Rows run 1..17; anything else, and unknown values, fall back.
  EXPECT_EQ((std::tuple{HFCS_Ansi, HFCS_Baltic, HFCS_Default, HFCS_Default, HFCS_Default}),
            (std::tuple{hfIndex2Charset(1), hfIndex2Charset(17), hfIndex2Charset(0), hfIndex2Charset(18),
                        hfIndex2Charset(-1)}));
  EXPECT_EQ((std::tuple{-1, HFCS_Default}), (std::tuple{hfCharset2Index(HFontCharset(99)), hfValue2Charset(99)}));
  EXPECT_EQ((std::tuple{1, 0, 1}), (std::tuple{int(hfCharset2Value(HFCS_Ansi)), int(hfCharset2Value(HFCS_Default)),
                                               int(hfCharset2Value(HFontCharset(99)))}));
  // Every charset round-trips through its byte and its row.
  for (auto i = HFontCharset(0); i <= HFCS_Baltic; i = HFontCharset(i + 1))
    EXPECT_EQ((std::tuple{i, i}),
              (std::tuple{hfValue2Charset(hfCharset2Value(i)), hfIndex2Charset(hfCharset2Index(i))}));
}

// The LOGFONTA fields the setters write.
std::string Describe(const LOGFONTA& f) {
  char s[128];
  std::snprintf(s, sizeof s, "height %ld width %ld esc %ld weight %ld ius %d%d%d charset %d pitch %d %s", f.lfHeight,
                f.lfWidth, f.lfEscapement, f.lfWeight, f.lfItalic, f.lfUnderline, f.lfStrikeOut, f.lfCharSet,
                f.lfPitchAndFamily, f.lfFaceName);
  return s;
}

TEST(GdiFont, PropertiesOverLogFont) {
  LOGFONTA stock{};
  GetObjectA(GetStockObject(ANSI_VAR_FONT), sizeof stock, &stock);
  HGDIFont font;
  EXPECT_EQ(Describe(stock), Describe(font.GetLogFont())) << "the default record";

  font.SetWidth(7);
  font.SetHeight(-20);
  EXPECT_EQ(7, font.GetWidth()) << "SetHeight keeps the width";
  font.SetSize(-18);
  EXPECT_EQ(0, font.GetWidth()) << "SetSize zeroes the width";
  font.SetWeight(600);
  EXPECT_FALSE(font.GetWeight() || font.GetBold());
  font.SetBold(true);
  EXPECT_TRUE(font.GetWeight());
  font.SetVariable(false);
  EXPECT_EQ(FIXED_PITCH, font.GetLogFont().lfPitchAndFamily);
  font.SetVariable(true);
  font.SetCharset(HFCS_Russian);
  EXPECT_EQ(204, font.GetLogFont().lfCharSet);
  font.SetCharsetIndex(0);
  font.SetAngle(45);
  font.SetItalic(true);
  font.SetUnderline(true);
  font.SetStrikeout(true);
  font.SetFontName("A face name that is much longer than thirty-one characters");
  LOGFONTA got{};  // the handle holds exactly the record; names are cut to 31 characters
  ASSERT_GT(GetObjectA(font.GetHandle(), sizeof got, &got), 0);
  EXPECT_EQ("height -18 width 0 esc 450 weight 700 ius 111 charset 0 pitch 2 A face name that is much longer",
            Describe(got));

  // Unchanged values (names compared without case) do nothing; colour is
  // Changed, the rest Dirtied.
  Notes notes(font);
  EXPECT_EQ("",
            notes([&] { font.SetBold(true), font.SetAngle(45), font.SetFontName(font.GetFontName().UpperCase()); }));
  EXPECT_EQ("C", notes([&] { font.SetColor(clRed); }));
  EXPECT_EQ("DD", notes([&] { font.SetHeight(-12), font.SetFontName("Arial"); }));
}

TEST(GdiFont, SelectAndAssign) {
  MemoryDC m;
  SetTextColor(m.dc, RGB(1, 2, 3));
  HGDIFont font;
  font.SetColor(clBlue);
  font.Select(m.dc);
  EXPECT_EQ((std::tuple{font.GetHandle(), RGB(0, 0, 255)}),
            (std::tuple{GetCurrentObject(m.dc, OBJ_FONT), GetTextColor(m.dc)}));
  font.Restore();
  EXPECT_EQ(RGB(1, 2, 3), GetTextColor(m.dc));

  font.SetHeight(-24);
  // A GDI font copies the record and colour; a framework font is ignored.
  HGDIFont copy;
  copy.Assign(static_cast<TPersistent*>(&font));
  EXPECT_EQ((std::tuple{0, clBlue}),
            (std::tuple{std::memcmp(&copy.GetLogFont(), &font.GetLogFont(), sizeof(LOGFONTA)), copy.GetColor()}));
  TFont vcl;
  vcl.SetName("Courier New");
  vcl.SetHeight(-40);
  copy.Assign(static_cast<TPersistent*>(&vcl));
  EXPECT_EQ(0, std::memcmp(&copy.GetLogFont(), &font.GetLogFont(), sizeof(LOGFONTA)));
  HGDIPen notAFont;
  EXPECT_THROW(copy.Assign(static_cast<TPersistent*>(&notAFont)), EConvertError);
}

// Pixel k of the buffer, in memory order.
HColor32* Pixel(HGDIDib32& d, int k) { return static_cast<HColor32*>(d.GetPixels()) + k; }

// A live buffer filled with values whose sums rarely divide evenly (fourth
// byte: the pixel's index), or with `fill` when given.
void Fill(HGDIDib32& d, const HColor32* fill = nullptr) {
  ASSERT_NE(nullptr, d.DataAt(0, d.GetHeight()));
  for (int k = 0; k < d.GetSize() / 4; ++k)
    *Pixel(d, k) = fill ? *fill : HColor32{uint8_t(3 * k + 1), uint8_t(200 - 7 * k), uint8_t(k * k), uint8_t(k)};
}

// The truncated per-channel average of the listed source pixels, fourth byte x.
HColor32 Avg(HGDIDib32& src, std::initializer_list<int> ks, uint8_t x) {
  unsigned b = 0, g = 0, r = 0;
  for (int k : ks) b += Pixel(src, k)->Blue, g += Pixel(src, k)->Green, r += Pixel(src, k)->Red;
  const unsigned n = static_cast<unsigned>(ks.size());
  return HColor32{uint8_t(b / n), uint8_t(g / n), uint8_t(r / n), x};
}

TEST(GdiDib, SizesRowsAndPixels) {
  MyRect r{5, 7, -2, 100};
  HGDIDib32(10, 20).CorrectRect(r);
  EXPECT_EQ((MyRect{0, 7, 5, 20}), r);

  // 3 pixels wide: lines of 12 bytes; y = height is the first line in memory.
  HGDIDib32 dib(3, 4);
  auto* bits = reinterpret_cast<uint8_t*>(dib.DataAt(0, 4));
  ASSERT_NE(nullptr, bits);
  EXPECT_EQ((std::tuple{static_cast<void*>(bits), 12, 48}),
            (std::tuple{dib.GetPixels(), dib.GetLineSize(), dib.GetSize()}));
  EXPECT_EQ(static_cast<void*>(bits + 36), dib.DataAt(0, 1));
  EXPECT_EQ(static_cast<void*>(bits + 12), dib.DataAt(3, 4)) << "x runs on into the next line";
  EXPECT_EQ(static_cast<void*>(bits + 44), dib.DataAt(2, 1)) << "last pixel of the buffer";
  const std::pair<int, int> outside[] = {{0, 0}, {3, 1}, {-1, 4}, {0, 5}, {0x7FFFFFFF, -0x7FFFFFFF}};
  for (auto [x, y] : outside) EXPECT_EQ(nullptr, dib.DataAt(x, y)) << "out of range: " << x << "," << y;

  // GDI's top row is DataAt's y = 1 (the last line in memory).
  HDC dc = CreateCompatibleDC(nullptr);
  dib.Select(dc);
  SetPixel(dc, 2, 0, RGB(10, 20, 30));
  GdiFlush();
  EXPECT_EQ((HColor32{30, 20, 10, 0}), dib.GetPixelAt(2, 4 - 3));
  const HColor32 c{1, 2, 3, 4};
  dib.SetPixelAt(1, 4, c);
  EXPECT_EQ(c, dib.GetPixelAt(1, 4)) << "all four bytes";
  EXPECT_EQ(RGB(3, 2, 1), GetPixel(dc, 1, 3));
  // Out-of-range pixel access reads zero and writes nothing.
  std::vector<uint8_t> before(bits, bits + 48);
  dib.SetPixelAt(3, 1, HColor32{9, 9, 9, 9});
  dib.SetPixelAt(0, 0, HColor32{9, 9, 9, 9});
  EXPECT_EQ(0, std::memcmp(before.data(), bits, 48));
  EXPECT_EQ(HColor32{}, dib.GetPixelAt(-5, 4));
  EXPECT_EQ(c, dib.GetPixelAt(-2, 3)) << "a negative x reaches back into the line before";

  dib.Restore();
  DeleteDC(dc);
  // After DestroyHandle the stored pointer is stale: DataAt makes a new DIB.
  dib.DestroyHandle();
  ASSERT_NE(nullptr, dib.DataAt(0, 1));
  EXPECT_TRUE(dib.GetHandleValid());
}

TEST(GdiDib, CompatibleBitmapAndAssign) {
  HGDIBitmap bmp;
  bmp.Assign(30, 0);
  EXPECT_EQ(1, bmp.GetHeight());
  bmp.SetHeight(12);
  BITMAP bm{};
  ASSERT_GT(GetObjectA(bmp.GetHandle(), sizeof bm, &bm), 0);
  EXPECT_EQ((MyPoint{30, 12}), (MyPoint{bm.bmWidth, bm.bmHeight}));

  HGDIDib dib8(8, 10, 3);

  HGDIDib32 dib(4, 4);
  dib.Assign(&bmp);
  EXPECT_EQ((MyPoint{30, 12}), (MyPoint{dib.GetWidth(), dib.GetHeight()}));
  dib.Assign(static_cast<Classes::TPersistent*>(&dib8));  // ignored on purpose
  dib.Assign(static_cast<Classes::TPersistent*>(nullptr));
  EXPECT_EQ(30, dib.GetWidth());
}

TEST(GdiDib, AntiAliasArithmeticStaysInBuffer) {
  // 4 x 3: buffer pixels 0..11; y = 0 lies past the buffer, y = 3 is the
  // first line in memory. Each row walks 5 samples two pixels apart; later
  // rows overwrite earlier ones; neighbours before the buffer are left out.
  const HColor32 grey{7, 7, 7, 0xAB};
  HGDIDib32 src(4, 3), dst(4, 3);
  Fill(src);
  Fill(dst, &grey);
  MyRect r{0, 0, 4, 3};
  src.AntiAlias(&dst, r);
  const HColor32 expected[12] = {
      Avg(src, {0}, 0xAB),    grey, Avg(src, {2, 0}, 0xAB),    grey, Avg(src, {4, 2}, 0xAB),     grey,
      Avg(src, {6, 4}, 0xAB), grey, Avg(src, {8, 6, 0}, 0xAB), grey, Avg(src, {10, 8, 2}, 0xAB), grey,
  };
  for (int k = 0; k < 12; ++k) EXPECT_EQ(expected[k], *Pixel(dst, k)) << "pixel " << k;

  // Fully inside the buffer: 8 x 6, samples at x = 1, 3, 5 on rows 2 and 3;
  // the target takes the source size.
  HGDIDib32 big(8, 6), out(2, 2);
  Fill(big);
  MyRect inner{1, 2, 3, 3};
  big.AntiAlias(&out, inner);
  ASSERT_EQ((MyPoint{8, 6}), (MyPoint{out.GetWidth(), out.GetHeight()}));
  const uint8_t x = Pixel(out, 33)->Reserved;  // fresh DIB: whatever it holds
  const std::pair<int, HColor32> cases[] = {
      {33, Avg(big, {33, 31, 17}, x)}, {35, Avg(big, {35, 33, 19}, x)}, {37, Avg(big, {37, 35, 21}, x)},
      {25, Avg(big, {25, 23, 9}, x)},  {27, Avg(big, {27, 25, 11}, x)}, {29, Avg(big, {29, 27, 13}, x)},
  };
  for (const auto& [k, want] : cases) EXPECT_EQ(want, *Pixel(out, k)) << "pixel " << k;

  // An empty corrected rectangle leaves the target alone, size included.
  HGDIDib32 keep(7, 7);
  MyRect empty{2, 2, 2, 5}, outside{50, 50, 60, 60};
  big.AntiAlias(&keep, empty);
  EXPECT_EQ(7, keep.GetWidth());
  big.AntiAlias(&keep, outside);  // clamps to nothing: no sample, no crash
  big.AntiAlias(nullptr, inner);
}

// Every handle any wrapper creates, through any path of the protocol, is gone
// (GetObjectType == 0) once the wrappers are gone, and the contexts hold their
// original objects again.
std::vector<void*> created;

// Records every handle the wrapper makes, then behaves as the wrapper does.
template <class T>
class Tracked : public T {
 public:
  using T::T;

 protected:
  void* DoCreateHandle() override { return created.emplace_back(T::DoCreateHandle()); }
  // A region selection keeps a copy of the previous clip: created too.
  void* DoSelect(void* dc, void* h) override {
    void* old = T::DoSelect(dc, h);
    if constexpr (std::is_base_of_v<HGDIRegion, T>) created.push_back(old);
    return old;
  }
};

void Change(HCustomGDIPen& o, int i) { i % 2 ? o.SetColor(Graphics::TColor(i & 0xFFFFFF)) : o.SetWidth(i % 7); }
void Change(HCustomGDIBrush& o, int i) { o.SetStyle(HFillStyle_Types(i % 9)); }
void Change(HCustomGDIFont& o, int i) { o.SetHeight(-(8 + i % 20)); }
void Change(HGDIRegion& o, int) { o.Dirtied(); }
void Change(HGDIDib32& o, int i) { o.SetWidth(1 + i % 16); }

// Each cycle selects, changes, re-selects, moves to another context, takes the
// handle, changes while selected and refreshes; the wrapper then ends by
// delete or by leaving the scope, alternately.
template <class T, class... Args>
void Cycles(HDC a, HDC b, int count, Args... args) {
  for (int i = 0; i < count; ++i) {
    auto run = [&](T& o) {
      o.Select(a);
      Change(o, i);
      o.Select(a);
      o.Select(b);
      Change(o, i + 1);
      o.GetHandle();
      o.Select(b);
      Change(o, i + 2);
      o.Refresh();
    };
    if (i % 2) {
      T* o = new T(args...);
      run(*o);
      delete o;
    } else {
      T o(args...);
      run(o);
    }
  }
}

TEST(GdiLeaks, EveryWrapperKindReleasesEveryHandle) {
  HDC dcs[] = {CreateCompatibleDC(nullptr), CreateCompatibleDC(nullptr)};
  const int types[] = {OBJ_PEN, OBJ_BRUSH, OBJ_FONT, OBJ_BITMAP};
  HGDIOBJ original[2][4];
  for (int d = 0; d < 2; ++d)
    for (int k = 0; k < 4; ++k) original[d][k] = GetCurrentObject(dcs[d], types[k]);
  const int n = 2000;
  Cycles<Tracked<HGDIPen>>(dcs[0], dcs[1], n);
  Cycles<Tracked<HGDIBrush>>(dcs[0], dcs[1], n);
  Cycles<Tracked<HGDIFont>>(dcs[0], dcs[1], n);
  Cycles<Tracked<HGDIRegion>>(dcs[0], dcs[1], n, 0, 0, 9, 9);
  Cycles<Tracked<HGDIDib32>>(dcs[0], dcs[1], n, 4, 4);

  // Null-style brushes and pens come back as stock objects, never deleted.
  int live = 0, checked = 0;
  for (void* h : created) {
    if (!h || h == GetStockObject(NULL_BRUSH) || h == GetStockObject(NULL_PEN)) continue;
    ++checked;
    if (GetObjectType(h) != 0 && ++live == 1) ADD_FAILURE() << "handle " << h << " alive, type " << GetObjectType(h);
  }
  EXPECT_EQ(0, live) << "of " << checked << " handles created";
  EXPECT_GT(checked, 5 * n * 3) << "each cycle creates several handles";
  for (int d = 0; d < 2; ++d) {
    for (int k = 0; k < 4; ++k) EXPECT_EQ(original[d][k], GetCurrentObject(dcs[d], types[k])) << "type " << types[k];
    SelectClipRgn(dcs[d], nullptr);  // region selections leave the empty clip behind, as documented
    DeleteDC(dcs[d]);
  }
}

HTempItem* NullCreator(unsigned long) { return nullptr; }
HTempItem* WindowCreator(unsigned long) { return new HTemp_WindowDC(nullptr); }

std::string Expected(const char* name, HTempCreator creator, unsigned long data) {
  return std::string("Can not retrive temprorary item named: [") + name +
         "] by: Proc:" + std::to_string(reinterpret_cast<uintptr_t>(creator)) + "Data: " + std::to_string(data);
}

// The message of the exception HTempGet<T> raises.
template <class T>
std::string FetchError(const char* name, HTempCreator creator, unsigned long data) {
  try {
    HTempGet<T>(name, creator, data);
  } catch (Sysutils::Exception& e) {
    return e.Message.c_str();
  }
  return "(no exception)";
}

TEST(GdiTempPool, TypedFetchAndUnitLifecycle) {
  const int starts = Gdi_temp::StartUpRuns(), stops = Gdi_temp::ShutDownRuns();
  // The test program links the library without loading it as a package:
  // nothing has started the unit yet.
  ASSERT_EQ(nullptr, TempPool);
  EXPECT_EQ(Expected("X", WindowCreator, 0), FetchError<HTemp_WindowDC>("X", WindowCreator, 0)) << "no pool yet";
  Gdi_temp::Initialize();
  Gdi_temp::Initialize();
  ASSERT_NE(nullptr, TempPool);
  EXPECT_EQ(starts + 1, Gdi_temp::StartUpRuns());

  EXPECT_EQ(Expected("X", NullCreator, 77), FetchError<HTemp_CompatibleDC>("X", NullCreator, 77));
  EXPECT_EQ(Expected("Y", nullptr, 5), FetchError<HTemp_WindowDC>("Y", nullptr, 5));
  // A name registered with one class and fetched as the other.
  ASSERT_NE(nullptr, HTempGet<HTemp_WindowDC>("Screen", WindowCreator, 0));
  EXPECT_EQ(Expected("Screen", WindowCreator, 3), FetchError<HTemp_CompatibleDC>("Screen", WindowCreator, 3));
  auto* mem = HTempGet<HTemp_CompatibleDC>("All.HTemp_CompatibleDC", HTempCreateCompatibleDC, 0);
  HDC memDC = static_cast<HDC>(mem->GetDC());
  EXPECT_EQ((std::tuple{DWORD(OBJ_MEMDC), 2}), (std::tuple{GetObjectType(memDC), TempPool->GetCount()}));

  // Only the matching last stop destroys the pool with every DC it holds.
  Gdi_temp::Finalize();
  EXPECT_NE(nullptr, TempPool);
  Gdi_temp::Finalize();
  EXPECT_EQ((std::tuple{static_cast<HTempPool*>(nullptr), stops + 1, DWORD(0)}),
            (std::tuple{TempPool, Gdi_temp::ShutDownRuns(), GetObjectType(memDC)}));
}

}  // namespace
