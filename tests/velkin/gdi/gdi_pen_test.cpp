// Pens: what the properties put into the handle, the dash pattern, the
// notifications, and copies from GDI and framework pens.
#include "velkin/gdi/gdi_pen.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdio>
#include <string>

#include "platform/vcl/core/sysutils.h"
#include "platform/vcl/graphics/graphics.h"
#include "tests/velkin/gdi/gdi_fixtures.h"

namespace {

using namespace Graphics;
using Classes::TPersistent;
using gdi_fixtures::Notes;
using Sysutils::EConvertError;

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

TEST(HCustomGDIPen, HandleAndPattern) {
  HGDIPen pen;
  EXPECT_EQ("000000 w1 s0 round 1 T", Describe(pen)) << "a new pen";
  EXPECT_EQ(DWORD(PS_GEOMETRIC | PS_SOLID | PS_ENDCAP_ROUND | PS_JOIN_ROUND), PenOf(pen).elpPenStyle)
      << "a new pen, elpPenStyle: the system's own ends and joins";
  pen.SetColor(TColor(0x123456));
  pen.SetWidth(3);
  pen.SetRoundEnd(false);
  EXTLOGPEN lp = PenOf(pen);
  EXPECT_EQ(0x123456ul, lp.elpColor) << "flat pen, elpColor";
  EXPECT_EQ(3ul, lp.elpWidth) << "flat pen, elpWidth";
  EXPECT_EQ(DWORD(PS_GEOMETRIC | PS_SOLID | PS_ENDCAP_SQUARE | PS_JOIN_BEVEL), lp.elpPenStyle)
      << "flat pen, elpPenStyle";
  pen.SetRoundEnd(true);
  pen.SetColor(clBtnFace);  // system colours are resolved
  lp = PenOf(pen);
  EXPECT_EQ(GetSysColor(COLOR_BTNFACE), lp.elpColor) << "system colour, elpColor";
  EXPECT_EQ(DWORD(PS_GEOMETRIC | PS_SOLID | PS_ENDCAP_ROUND | PS_JOIN_ROUND), lp.elpPenStyle)
      << "round pen, elpPenStyle";
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

TEST(HCustomGDIPen, NotificationsAndAssign) {
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

}  // namespace
