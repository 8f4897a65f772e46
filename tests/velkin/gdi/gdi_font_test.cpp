// Fonts: the properties over the font record, the handle made from it, the
// text colour a selection swaps, the notifications and copies.
#include "velkin/gdi/gdi_font.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdio>
#include <cstring>
#include <string>

#include "platform/ostrel/owned_handle.h"
#include "platform/vcl/core/sysutils.h"
#include "platform/vcl/graphics/graphics.h"
#include "tests/script_samples.h"
#include "tests/velkin/gdi/gdi_fixtures.h"
#include "velkin/gdi/gdi_pen.h"

namespace {

using namespace Graphics;
using namespace gdi_fixtures;
using Classes::TPersistent;
using Sysutils::EConvertError;

// The LOGFONTA fields the setters write.
std::string Describe(const LOGFONTA& f) {
  char s[128];
  std::snprintf(s, sizeof s, "height %ld width %ld esc %ld weight %ld ius %d%d%d charset %d pitch %d %s", f.lfHeight,
                f.lfWidth, f.lfEscapement, f.lfWeight, f.lfItalic, f.lfUnderline, f.lfStrikeOut, f.lfCharSet,
                f.lfPitchAndFamily, f.lfFaceName);
  return s;
}

TEST(HCustomGDIFont, PropertiesOverLogFont) {
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

// A text in the process's code page measures as the letters it stands for.
TEST(HCustomGDIFont, TextSizeOfTheLetters) {
  HGDIFont font;
  font.SetHeight(-13);
  const OwnedMemoryDC m(CreateCompatibleDC(nullptr));
  for (const auto& sample : script_samples::samples) {
    std::string text;
    if (!script_samples::InAnsi(sample.utf8, text)) continue;
    const std::wstring letters = script_samples::Wide(sample.utf8);
    const HGDIOBJ old = SelectObject(m.get(), font.GetHandle());
    RECT r{0, 0, 0, 0};
    DrawTextW(m.get(), letters.c_str(), -1, &r, DT_CALCRECT);
    SelectObject(m.get(), old);
    const MyPoint size = font.TextSize(text.c_str());
    EXPECT_EQ(r.right, size.x) << sample.what;
    EXPECT_EQ(r.bottom, size.y) << sample.what;
  }
}

// A face name longer than the record holds is cut between letters of the
// code page: as many whole ones as their bytes fit in 31.
TEST(HCustomGDIFont, FaceNameCutBetweenLetters) {
  for (const char* utf8 : {"Шрифт с длинным именем", "Crème brûlée et crème anglaise", "ＭＳ ゴシック ＭＳ ゴシック"}) {
    std::string name;
    if (!script_samples::InAnsi(utf8, name)) continue;
    const std::wstring letters = script_samples::Wide(utf8);
    std::string whole;
    for (size_t n = 0; n <= letters.size(); ++n)
      if (const std::string prefix = script_samples::Ansi(letters.substr(0, n)); prefix.size() < LF_FACESIZE)
        whole = prefix;
    HGDIFont font;
    font.SetFontName(name.c_str());
    EXPECT_EQ(whole, std::string(font.GetLogFont().lfFaceName)) << utf8;
  }
}

TEST(HCustomGDIFont, SelectAndAssign) {
  const OwnedMemoryDC m(CreateCompatibleDC(nullptr));
  SetTextColor(m.get(), RGB(1, 2, 3));
  HGDIFont font;
  font.SetColor(clBlue);
  font.Select(m.get());
  EXPECT_EQ(font.GetHandle(), GetCurrentObject(m.get(), OBJ_FONT)) << "selected";
  EXPECT_EQ(RGB(0, 0, 255), GetTextColor(m.get())) << "the font's colour while selected";
  font.Restore();
  EXPECT_EQ(RGB(1, 2, 3), GetTextColor(m.get()));

  font.SetHeight(-24);
  // A GDI font copies the record and colour; a framework font is ignored.
  HGDIFont copy;
  copy.Assign(static_cast<TPersistent*>(&font));
  EXPECT_EQ(0, std::memcmp(&copy.GetLogFont(), &font.GetLogFont(), sizeof(LOGFONTA))) << "copied record";
  EXPECT_EQ(clBlue, copy.GetColor()) << "copied colour";
  TFont vcl;
  vcl.SetName("Courier New");
  vcl.SetHeight(-40);
  copy.Assign(static_cast<TPersistent*>(&vcl));
  EXPECT_EQ(0, std::memcmp(&copy.GetLogFont(), &font.GetLogFont(), sizeof(LOGFONTA)));
  HGDIPen notAFont;
  EXPECT_THROW(copy.Assign(static_cast<TPersistent*>(&notAFont)), EConvertError);
}

}  // namespace
