// GDI object wrappers: the lazy create / select / restore / destroy protocol;
// what pens, brushes, fonts and regions put into their handles and into the
// context they are selected in, read back from GDI; the temporary pool.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <utility>

#include "platform/vcl/graphics.h"
#include "platform/vcl/sysutils.h"
#include "velkin/gdi/gdi_brush.h"
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
  void Touch() {
    Changing();
    Changed();
  }

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
  EXPECT_STREQ("HHandleObject", HGDIObject::StaticClass()->ClassParent()->ClassName());
  EXPECT_STREQ("HSizableObject", HGDIHandleObject::StaticClass()->ClassParent()->ClassName());
  auto* o = new CountingObject;
  o->Dirtied();
  o->Refresh();  // no handle: only clears the flags
  EXPECT_EQ("", Take());
  EXPECT_FALSE(o->GetDirty() || o->GetModified());

  o->Select(a.dc);
  o->Select(a.dc);  // same context, unchanged: nothing
  EXPECT_EQ("create,select", Take());
  EXPECT_EQ(o->GetHandle(), GetCurrentObject(a.dc, OBJ_PEN));
  EXPECT_EQ(stock, o->GetOldObject());
  o->Select(b.dc);
  EXPECT_EQ("restore,select", Take());
  EXPECT_EQ(stock, GetCurrentObject(a.dc, OBJ_PEN));
  EXPECT_EQ(o->GetHandle(), GetCurrentObject(b.dc, OBJ_PEN));

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
  o->Select(nullptr);
  EXPECT_EQ("", Take());

  o->Select(a.dc);
  Take();
  o->Refresh();
  EXPECT_EQ("restore,destroy,create,select", Take());
  EXPECT_EQ(o->GetHandle(), GetCurrentObject(a.dc, OBJ_PEN));
  EXPECT_FALSE(o->GetModified());

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
    o.OnChanged = System::TNotifyEvent(this, &Notes::OnChanged);
    o.OnDirtied = System::TNotifyEvent(this, &Notes::OnDirtied);
  }
  void OnChanged(System::TObject*) { seen += 'C'; }
  void OnDirtied(System::TObject*) { seen += 'D'; }
  template <class F>
  std::string operator()(F action) {
    seen.clear();
    action();
    return seen;
  }
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
  EXPECT_EQ("000000 w1 s0 round 1 T", Describe(pen));
  pen.SetColor(TColor(0x123456));
  pen.SetWidth(3);
  pen.SetRoundEnd(false);
  EXTLOGPEN lp = PenOf(pen);
  EXPECT_EQ(0x123456u, lp.elpColor);
  EXPECT_EQ(3u, lp.elpWidth);
  EXPECT_EQ(DWORD(PS_GEOMETRIC | PS_SOLID | PS_ENDCAP_SQUARE | PS_JOIN_BEVEL), lp.elpPenStyle);
  pen.SetRoundEnd(true);
  pen.SetColor(clBtnFace);  // system colours are resolved
  lp = PenOf(pen);
  EXPECT_EQ(DWORD(PS_GEOMETRIC | PS_SOLID | PS_ENDCAP_ROUND | PS_JOIN_ROUND), lp.elpPenStyle);
  EXPECT_EQ(GetSysColor(COLOR_BTNFACE), lp.elpColor);
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
    EXPECT_EQ(lbStyles[style], lb.lbStyle) << "style " << style;
    if (lb.lbStyle != BS_NULL) {
      EXPECT_EQ(0x00A0B0C0u, lb.lbColor) << "style " << style;
    }
    if (lb.lbStyle == BS_HATCHED) {
      EXPECT_EQ(hatches[style], lb.lbHatch) << "style " << style;
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
    EXPECT_EQ(mapped[style], brush.GetStyle()) << "TBrushStyle " << style;
    EXPECT_EQ(clLime, brush.GetColor());
  }
  HGDIBrush copy;
  copy.Assign(static_cast<TPersistent*>(&brush));
  EXPECT_EQ(HFS_DiagCross, copy.GetStyle());
  EXPECT_EQ(clLime, copy.GetColor());
  EXPECT_EQ(HPF_Exclude, copy.GetPolygonStyle());
  HGDIPen notABrush;
  EXPECT_THROW(copy.Assign(static_cast<TPersistent*>(&notABrush)), EConvertError);
}

TEST(GdiCharset, TableConversions) {
  EXPECT_EQ(HFCS_Ansi, hfIndex2Charset(1));
  EXPECT_EQ(HFCS_Baltic, hfIndex2Charset(17));
  for (int row : {0, 18, -1}) EXPECT_EQ(HFCS_Default, hfIndex2Charset(row)) << row;
  EXPECT_EQ(-1, hfCharset2Index(HFontCharset(99)));
  EXPECT_EQ(HFCS_Default, hfValue2Charset(99));
  EXPECT_EQ(1, hfCharset2Value(HFCS_Ansi));
  EXPECT_EQ(0, hfCharset2Value(HFCS_Default));
  EXPECT_EQ(1, hfCharset2Value(HFontCharset(99)));
  // Every charset round-trips through its byte and its row.
  for (int i = 0; i <= HFCS_Baltic; ++i) {
    EXPECT_EQ(HFontCharset(i), hfValue2Charset(hfCharset2Value(HFontCharset(i)))) << i;
    EXPECT_EQ(HFontCharset(i), hfIndex2Charset(hfCharset2Index(HFontCharset(i)))) << i;
  }
  EXPECT_EQ(nullptr, hfCharsetTable()[18].Name) << "the table's end row";
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
  EXPECT_EQ(Describe(stock), Describe(font.GetLogFont()));

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

TEST(GdiFont, SelectTextSizeAndAssign) {
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
  DeleteObject(SelectObject(m.dc, old));
  EXPECT_EQ((MyPoint{expected.right, expected.bottom}), font.TextSize("Hello, world"));
  EXPECT_EQ((MyPoint{expected.right, expected.bottom}), font.TextSize("Hello, world", m.dc));
  EXPECT_FALSE(font.GetSelected()) << "TextSize leaves no selection behind";
  EXPECT_EQ(0, font.TextSize(nullptr).x);

  // A GDI font copies the record and colour; a framework font is ignored.
  HGDIFont copy;
  copy.Assign(static_cast<TPersistent*>(&font));
  EXPECT_EQ(0, std::memcmp(&copy.GetLogFont(), &font.GetLogFont(), sizeof(LOGFONTA)));
  EXPECT_EQ(clBlue, copy.GetColor());
  TFont vcl;
  vcl.SetName("Courier New");
  vcl.SetHeight(-40);
  copy.Assign(static_cast<TPersistent*>(&vcl));
  EXPECT_EQ(0, std::memcmp(&copy.GetLogFont(), &font.GetLogFont(), sizeof(LOGFONTA)));
  HGDIPen notAFont;
  EXPECT_THROW(copy.Assign(static_cast<TPersistent*>(&notAFont)), EConvertError);
  Gdi_temp::Finalize();
}

int creatorRuns = 0;
HTempItem* CountingCreator(unsigned long) { return ++creatorRuns, new HTemp_CompatibleDC(nullptr); }
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

TEST(GdiTempPool, GetRegistersOncePerName) {
  HTempPool pool;
  creatorRuns = 0;
  HTempItem* a = pool.Get("All.HTemp_CompatibleDC", CountingCreator, 0);
  ASSERT_NE(nullptr, a);
  EXPECT_EQ(a, pool.Get("All.HTemp_CompatibleDC", CountingCreator, 0));
  EXPECT_EQ(a, pool.Get("All.HTemp_CompatibleDC", nullptr, 0)) << "a known name needs no creator";
  EXPECT_EQ(1, creatorRuns);
  EXPECT_EQ(nullptr, pool.Get("Other", nullptr, 0));
  EXPECT_EQ(nullptr, pool.Get("Other", NullCreator, 0));
  EXPECT_EQ(1, pool.GetCount()) << "failures add nothing";
  EXPECT_NE(a, pool.Get("all.htemp_compatibledc", CountingCreator, 0)) << "names are case-sensitive";
  EXPECT_EQ(2, pool.GetCount());
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
  EXPECT_EQ(OBJ_MEMDC, GetObjectType(memDC));
  EXPECT_EQ(2, TempPool->GetCount());

  // Only the matching last stop destroys the pool with every DC it holds.
  Gdi_temp::Finalize();
  EXPECT_NE(nullptr, TempPool);
  Gdi_temp::Finalize();
  EXPECT_EQ(nullptr, TempPool);
  EXPECT_EQ(stops + 1, Gdi_temp::ShutDownRuns());
  EXPECT_EQ(0u, GetObjectType(memDC)) << "memory DC not deleted";
}

}  // namespace
