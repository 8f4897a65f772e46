// Conversions: the colour table both ways, colour texts good and bad, blends
// against their formula, alignment and layout flags, shift words, line
// breaks, and the directory chooser's options.
#include "velkin/controls/vcl_conversions.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <cstdio>
#include <string>
#include <utility>

#include "tests/platform/pellum/select_dir_driver.h"

namespace {

using Graphics::TColor;

TEST(VCLColor2Str, EveryTableColourRoundTripsByNameAndOthersByNumber) {
  int named = 0;
  for (int i = 0; i < HVCLColorCount; ++i) {
    const TColor value = GetVCLColor(i);
    const std::string name = GetVCLColorName(i);
    ASSERT_EQ(0, name.rfind("cl", 0)) << i;
    EXPECT_EQ(i, VCLColorIndexOf(name.c_str())) << name;
    EXPECT_EQ(value, Str2VCLColor(name.c_str())) << name;
    // Duplicates resolve to the earlier name.
    const std::string back = VCLColor2Str(value);
    EXPECT_EQ(value, Str2VCLColor(back.c_str())) << name;
    named += back == name;
  }
  EXPECT_EQ(HVCLColorCount - 2, named) << "only clLtGray and clDkGray give way";
  EXPECT_STREQ("clSilver", VCLColor2Str(TColor(0xC0C0C0)));
  EXPECT_STREQ("clGray", VCLColor2Str(TColor(0x808080)));
  EXPECT_EQ(15, VCLColorIndexOf("clLtGray"));
  EXPECT_EQ(TColor(0x80000018), GetVCLColor(42));
  EXPECT_EQ(HNoColor, GetVCLColor(43));
  EXPECT_EQ(HNoColor, GetVCLColor(-1));
  EXPECT_STREQ("", GetVCLColorName(-1));
  EXPECT_STREQ("", GetVCLColorName(43));
  EXPECT_EQ(-1, VCLColorIndexOf("clbtnface")) << "names are exact";
  EXPECT_EQ(-1, VCLColorIndexOf(TColor(0x123456)));

  // Other values go through one shared "0x%X" buffer.
  const char* first = VCLColor2Str(TColor(0x123456));
  EXPECT_STREQ("0x123456", first);
  EXPECT_STREQ("0x1FFFFFFF", VCLColor2Str(HNoColor));
  EXPECT_EQ(first, VCLColor2Str(TColor(0x80000019))) << "the same buffer";
  EXPECT_STREQ("0x80000019", first);
  for (unsigned v : {0x1u, 0xABCDEFu, 0x7FFFFFFFu, 0x80000000u - 1, 0xFFFFFFFFu})
    EXPECT_EQ(TColor(static_cast<int>(v)), Str2VCLColor(VCLColor2Str(TColor(static_cast<int>(v))))) << v;
}

TEST(Str2VCLColor, ReadsHexNamesAndNumbersAndRefusesTheRest) {
  const std::string longHex = "0x" + std::string(5000, 'F');
  const std::string longName = "cl" + std::string(5000, 'x');
  const std::string longNumber(5000, '9');
  const struct {
    const char* text;
    unsigned expected;
  } cases[] = {
      // clang-format off
      {"0x1F", 31}, {"0xff00ff", 0xFF00FF}, {"0xFFFFFFFF", 0xFFFFFFFF}, {"clInfoBk", 0x80000018},
      {"clBtnFace", 0x8000000F}, {"42", 42}, {"-7", static_cast<unsigned>(-7)}, {"12abc", 12}, {"", 0},
      {nullptr, 0}, {"0x", 0x1FFFFFFF}, {"0xZZ", 0x1FFFFFFF}, {"0x1 ", 0x1FFFFFFF}, {"0x100000000", 0x1FFFFFFF},
      {"0X1F", 0}, {"cl", 0x1FFFFFFF}, {"clNoSuch", 0x1FFFFFFF}, {"CLRED", 0}, {"red", 0},
      {longHex.c_str(), 0x1FFFFFFF}, {longName.c_str(), 0x1FFFFFFF}, {longNumber.c_str(), 0x7FFFFFFF},
      // clang-format on
  };
  for (const auto& c : cases) {
    const std::string shown = c.text ? std::string(c.text).substr(0, 16) : "(null)";
    EXPECT_EQ(c.expected, static_cast<unsigned>(Str2VCLColor(c.text))) << shown;
  }
}

// The blend formula worked out by hand for one channel.
unsigned Channel(int from, int to, int steps) {
  return static_cast<unsigned>((to * (steps - 1) + from + (steps + 1) / 2) / steps) & 0xFF;
}

TEST(GetTransColor, BlendsByTheFormulaWrappingAtOneStep) {
  EXPECT_EQ(TColor(0x808080), GetTransColor(Graphics::clBlack, Graphics::clWhite, 2));
  EXPECT_EQ(TColor(0x000000), GetTransColor(Graphics::clWhite, Graphics::clWhite, 1)) << "255 + 1 wraps to 0";
  EXPECT_EQ(TColor(0x010101), GetTransColor(Graphics::clBlack, Graphics::clWhite, 1));
  EXPECT_EQ(Graphics::clBtnFace, GetTransColor(Graphics::clBtnFace, Graphics::clWhite, 0)) << "unresolved";
  EXPECT_EQ(Graphics::clInfoBk, GetTransColor(Graphics::clBlack, Graphics::clInfoBk, 9)) << "unresolved";

  const TColor pairs[][2] = {{TColor(0x000000), TColor(0xFFFFFF)},
                             {TColor(0x102030), TColor(0xF0E0D0)},
                             {TColor(0xFF0000), TColor(0x0000FF)},
                             {TColor(0x7F7F7F), TColor(0x7F7F7F)},
                             {Graphics::clBtnFace, Graphics::clHighlight}};
  for (const auto& p : pairs) {
    const int f = Graphics::ColorToRGB(p[0]), t = Graphics::ColorToRGB(p[1]);
    for (int steps : {-9, -3, -2, -1, 1, 2, 3, 4, 5, 6, 7, 8}) {
      unsigned expected = 0;
      for (int shift = 0; shift < 24; shift += 8)
        expected |= Channel((f >> shift) & 0xFF, (t >> shift) & 0xFF, steps) << shift;
      EXPECT_EQ(expected, static_cast<unsigned>(GetTransColor(p[0], p[1], steps)))
          << std::hex << f << " to " << t << " in " << std::dec << steps;
    }
  }
  // Extreme step counts are defined too.
  GetTransColor(Graphics::clWhite, Graphics::clWhite, -0x7FFFFFFF - 1);
}

TEST(VclFlags, AlignmentLayoutSidesAndShiftWords) {
  using Stdctrls::taCenter;
  using Stdctrls::taLeftJustify;
  using Stdctrls::taRightJustify;
  const struct {
    Stdctrls::TAlignment align;
    bool horizontal;
    int flags;
  } aligns[] = {{taLeftJustify, true, 0},           {taLeftJustify, false, 0},   {taRightJustify, true, DT_RIGHT},
                {taRightJustify, false, DT_BOTTOM}, {taCenter, true, DT_CENTER}, {taCenter, false, DT_VCENTER},
                {Stdctrls::TAlignment(7), true, 0}};
  for (const auto& a : aligns)
    EXPECT_EQ(a.flags, Align2DTFlags(a.align, a.horizontal)) << int(a.align) << (a.horizontal ? " across" : " down");
  // clang-format off
  const std::pair<Stdctrls::TTextLayout, int> layouts[] = {
      {Stdctrls::tlTop, 0}, {Stdctrls::tlCenter, DT_VCENTER}, {Stdctrls::tlBottom, DT_BOTTOM},
      {Stdctrls::TTextLayout(9), DT_VCENTER}};
  // clang-format on
  for (auto [layout, flags] : layouts) EXPECT_EQ(flags, Layout2DTFlags(layout)) << int(layout);

  using namespace Controls;
  const TAlign sides[][2] = {{alTop, alBottom}, {alBottom, alTop},    {alLeft, alRight},   {alRight, alLeft},
                             {alNone, alNone},  {alClient, alClient}, {alCustom, alCustom}};
  for (const auto& s : sides) EXPECT_EQ(s[1], Align2Opposite(s[0])) << int(s[0]);
  for (TAlign a : {alNone, alTop, alBottom, alLeft, alRight, alClient})
    EXPECT_EQ(a == alLeft || a == alRight, IsVertical(a)) << int(a);

  EXPECT_EQ(9u, ShiftToWMParam(TShiftState{ssShift, ssLeft}));
  EXPECT_EQ(4u | 2u | 16u, ShiftToWMParam(TShiftState{ssCtrl, ssRight, ssMiddle}));
  EXPECT_EQ(0u, ShiftToWMParam(TShiftState{ssAlt, ssDouble}));

  // The state held now, from real key presses.
  EXPECT_TRUE(VCLMouseShifts().Contains(ssShift) == (GetKeyState(VK_SHIFT) < 0));
  BYTE keys[256] = {};
  ASSERT_TRUE(GetKeyboardState(keys));
  BYTE held[256];
  std::copy(std::begin(keys), std::end(keys), held);
  held[VK_SHIFT] = held[VK_CONTROL] = held[VK_RBUTTON] = 0x80;
  held[VK_MENU] = held[VK_LBUTTON] = held[VK_MBUTTON] = 0;
  ASSERT_TRUE(SetKeyboardState(held));
  const TShiftState state = VCLMouseShifts();
  SetKeyboardState(keys);
  EXPECT_TRUE(state == (TShiftState{ssShift, ssCtrl, ssRight})) << "shift, ctrl and the right button";
}

TEST(VCLNormalizeNRString, EveryRunOfLineBreaksBecomesOneLineFeed) {
  const struct {
    std::string in, out;
  } cases[] = {
      // clang-format off
      {"a\r\n\r\nb", "a\nb"}, {"a\r\nb", "a\nb"}, {"a\n\nb", "a\nb"}, {"a\rb", "a\nb"}, {"a\n\rb\r", "a\nb\n"},
      {"\r\n\r\n", "\n"}, {"", ""}, {"plain", "plain"}, {"x\n", "x\n"}, {"1\n2\r\n3", "1\n2\n3"},
      {std::string("a\0b\n\nc", 6), std::string("a\0b\nc", 5)},
      // clang-format on
  };
  for (const auto& c : cases) {
    const System::AnsiString out = VCLNormalizeNRString(System::AnsiString(c.in.data(), static_cast<int>(c.in.size())));
    EXPECT_EQ(c.out, std::string(out.c_str(), static_cast<size_t>(out.Length())));
  }
}

// The chooser with and without AllowCreate, on a folder that does not exist.
TEST(HSelectDirectory, CreatesAMissingFolderOnlyWhenAllowed) {
  using namespace select_dir_driver;
  char temp[MAX_PATH];
  GetTempPathA(sizeof temp, temp);
  const std::string base = std::string(temp) + "velkin_hseldir_" + std::to_string(GetCurrentProcessId());
  CreateDirectoryA(base.c_str(), nullptr);
  char canonical[MAX_PATH];
  GetFullPathNameA(base.c_str(), sizeof canonical, canonical, nullptr);
  const std::string made = std::string(canonical) + "\\fresh";

  System::AnsiString dir = canonical;
  EXPECT_FALSE(RunScript({Opened(), Type("fresh"), Press("OkButton"), Opened(), Press("CancelButton")},
                         [&] { return HSelectDirectory(dir, false); }));
  EXPECT_FALSE(timedOut) << "stopped at step " << next;
  EXPECT_STREQ(canonical, dir.c_str());
  EXPECT_EQ(INVALID_FILE_ATTRIBUTES, GetFileAttributesA(made.c_str())) << "refused, not made";

  EXPECT_TRUE(RunScript({Opened(), Type("fresh"), Press("OkButton"), Answer(IDYES)},
                        [&] { return HSelectDirectory(dir, true); }));
  EXPECT_FALSE(timedOut) << "stopped at step " << next;
  EXPECT_EQ(made, std::string(dir.c_str()));
  EXPECT_NE(INVALID_FILE_ATTRIBUTES, GetFileAttributesA(made.c_str())) << "asked, then made";
  RemoveDirectoryA(made.c_str());
  RemoveDirectoryA(canonical);
}

}  // namespace
