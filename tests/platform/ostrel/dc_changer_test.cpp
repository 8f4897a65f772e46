// The changer puts back exactly what it changed: attributes, objects and the
// clip, read back from GDI; what others changed meanwhile is left alone.
#include <gtest/gtest.h>
#include <windows.h>

#include <functional>
#include <iterator>
#include <string>

#include "platform/ostrel/dc_changer.h"
#include "platform/ostrel/owned_handle.h"

namespace {

struct Attribute {
  const char* name;
  std::function<DWORD(HDC)> get;
  std::function<void(DCChanger&, DWORD)> change;  // through the changer
  std::function<void(HDC, DWORD)> set;            // by hand
  DWORD value;                                    // unlike a new context's
  DWORD other;                                    // a second change through the changer
  DWORD refused;                                  // a value GDI rejects; 0 for none
};

// clang-format off
const Attribute kAttributes[] = {
  {"text colour", GetTextColor, [](DCChanger& u, DWORD v) { u.SetTextColor(v); }, [](HDC d, DWORD v) { SetTextColor(d, v); }, RGB(1, 2, 3), RGB(4, 5, 6), 0},
  {"background colour", GetBkColor, [](DCChanger& u, DWORD v) { u.SetBkColor(v); }, [](HDC d, DWORD v) { SetBkColor(d, v); }, RGB(7, 8, 9), RGB(10, 11, 12), 0},
  {"background mode", [](HDC d) -> DWORD { return GetBkMode(d); }, [](DCChanger& u, DWORD v) { u.SetBkMode(v); }, [](HDC d, DWORD v) { SetBkMode(d, v); }, TRANSPARENT, OPAQUE, 77},
  {"text alignment", GetTextAlign, [](DCChanger& u, DWORD v) { u.SetTextAlign(v); }, [](HDC d, DWORD v) { SetTextAlign(d, v); }, TA_BOTTOM | TA_RIGHT, TA_BASELINE, 0},
  {"raster operation", [](HDC d) -> DWORD { return GetROP2(d); }, [](DCChanger& u, DWORD v) { u.SetROP2(v); }, [](HDC d, DWORD v) { SetROP2(d, v); }, R2_XORPEN, R2_NOT, 77},
  {"polygon fill mode", [](HDC d) -> DWORD { return GetPolyFillMode(d); }, [](DCChanger& u, DWORD v) { u.SetPolyFillMode(v); }, [](HDC d, DWORD v) { SetPolyFillMode(d, v); }, WINDING, ALTERNATE, 77},
  {"stretch mode", [](HDC d) -> DWORD { return GetStretchBltMode(d); }, [](DCChanger& u, DWORD v) { u.SetStretchBltMode(v); }, [](HDC d, DWORD v) { SetStretchBltMode(d, v); }, HALFTONE, COLORONCOLOR, 77},
  {"DC pen colour", GetDCPenColor, [](DCChanger& u, DWORD v) { u.SetDCPenColor(v); }, [](HDC d, DWORD v) { SetDCPenColor(d, v); }, RGB(13, 14, 15), RGB(16, 17, 18), 0},
  {"DC brush colour", GetDCBrushColor, [](DCChanger& u, DWORD v) { u.SetDCBrushColor(v); }, [](HDC d, DWORD v) { SetDCBrushColor(d, v); }, RGB(19, 20, 21), RGB(22, 23, 24), 0},
};
// clang-format on

std::string Pair(const Attribute& a, const Attribute& b) {
  return std::string("changer: ") + a.name + ", by hand: " + b.name + ", ";
}

TEST(DCChanger, PutsBackTheAttributesItChangedOnly) {
  for (const Attribute& a : kAttributes)
    for (const Attribute& b : kAttributes) {
      if (&a == &b) continue;
      const OwnedMemoryDC dc(CreateCompatibleDC(nullptr));
      DWORD before[std::size(kAttributes)];
      for (size_t i = 0; i < std::size(kAttributes); ++i) before[i] = kAttributes[i].get(dc.get());
      {
        DCChanger use(dc.get());
        if (a.refused) a.change(use, a.refused);  // displaces nothing: not what comes back
        a.change(use, a.value);
        a.change(use, a.other);  // nor is what the second change displaced
        b.set(dc.get(), b.value);
        EXPECT_EQ(a.other, a.get(dc.get())) << Pair(a, b) << "inside the scope";
      }
      for (size_t i = 0; i < std::size(kAttributes); ++i) {
        const Attribute& x = kAttributes[i];
        const DWORD expected = &x == &b ? b.value : before[i];
        EXPECT_EQ(expected, x.get(dc.get())) << Pair(a, b) << x.name << " after the scope";
      }
    }
}

struct ObjectKind {
  const char* name;
  UINT type;  // for GetCurrentObject
  std::function<HGDIOBJ(HDC)> make;
  std::function<void(DCChanger&, HGDIOBJ)> selectTyped;
  std::function<void(DCChanger&)> restoreOne;
};

const ObjectKind kObjects[] = {
    {"pen", OBJ_PEN, [](HDC) { return CreatePen(PS_SOLID, 1, 0); },
     [](DCChanger& u, HGDIOBJ o) { u.Select(static_cast<HPEN>(o)); }, [](DCChanger& u) { u.RestorePen(); }},
    {"brush", OBJ_BRUSH, [](HDC) { return CreateSolidBrush(0); },
     [](DCChanger& u, HGDIOBJ o) { u.Select(static_cast<HBRUSH>(o)); }, [](DCChanger& u) { u.RestoreBrush(); }},
    {"font", OBJ_FONT, [](HDC) { return CreateFontA(12, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, ""); },
     [](DCChanger& u, HGDIOBJ o) { u.Select(static_cast<HFONT>(o)); }, [](DCChanger& u) { u.RestoreFont(); }},
    {"bitmap", OBJ_BITMAP, [](HDC dc) { return CreateCompatibleBitmap(dc, 4, 4); },
     [](DCChanger& u, HGDIOBJ o) { u.Select(static_cast<HBITMAP>(o)); }, [](DCChanger& u) { u.RestoreBitmap(); }},
};

// Per pair of kinds: a is selected twice through the changer (typed, then
// asking GDI the type), b once through it and once by hand, or b through it
// and a put back alone; after the scope only what the changer displaced is back.
TEST(DCChanger, PutsBackTheObjectsItDisplaced) {
  for (const ObjectKind& a : kObjects)
    for (const ObjectKind& b : kObjects) {
      if (&a == &b) continue;
      const std::string at = std::string("changer: ") + a.name + ", other: " + b.name + ", ";
      const OwnedMemoryDC dc(CreateCompatibleDC(nullptr));
      const OwnedGdiObject a1(a.make(dc.get())), a2(a.make(dc.get())), b1(b.make(dc.get()));
      const HGDIOBJ aBefore = GetCurrentObject(dc.get(), a.type), bBefore = GetCurrentObject(dc.get(), b.type);
      {
        DCChanger use(dc.get());
        a.selectTyped(use, a1.get());
        use.Select(a2.get());
        EXPECT_EQ(a2.get(), GetCurrentObject(dc.get(), a.type)) << at << "inside the scope";
        SelectObject(dc.get(), b1.get());
      }
      EXPECT_EQ(aBefore, GetCurrentObject(dc.get(), a.type)) << at << "changer's kind after the scope";
      EXPECT_EQ(b1.get(), GetCurrentObject(dc.get(), b.type)) << at << "hand-selected kind after the scope";
      SelectObject(dc.get(), bBefore);
      {
        DCChanger use(dc.get());
        a.selectTyped(use, a1.get());
        b.selectTyped(use, b1.get());
        a.restoreOne(use);
        EXPECT_EQ(aBefore, GetCurrentObject(dc.get(), a.type)) << at << "put back alone";
        EXPECT_EQ(b1.get(), GetCurrentObject(dc.get(), b.type)) << at << "stays while another is put back";
      }
      EXPECT_EQ(bBefore, GetCurrentObject(dc.get(), b.type)) << at << "other kind after the scope";
    }
}

TEST(DCChanger, PutsBackTheClip) {
  struct Row {
    const char* name;
    bool hadClip;
    std::function<void(DCChanger&)> change;
  };
  const OwnedRegion inner(CreateRectRgn(20, 20, 30, 30));
  // clang-format off
  const Row rows[] = {
      {"narrowed, no clip before", false, [](DCChanger& u) { u.IntersectClip(RECT{5, 5, 15, 15}); }},
      {"narrowed, clip before", true, [](DCChanger& u) { u.IntersectClip(RECT{5, 5, 15, 15}); }},
      {"replaced, no clip before", false, [&](DCChanger& u) { u.SelectClip(inner.get()); }},
      {"replaced twice, clip before", true, [&](DCChanger& u) { u.SelectClip(inner.get()), u.IntersectClip(RECT{22, 22, 25, 25}); }},
      {"removed, clip before", true, [](DCChanger& u) { u.SelectClip(nullptr); }},
  };
  // clang-format on
  for (const Row& row : rows) {
    const OwnedMemoryDC dc(CreateCompatibleDC(nullptr));
    const OwnedBitmap bitmap(CreateCompatibleBitmap(dc.get(), 60, 60));
    DCChanger surface(dc.get());
    surface.Select(bitmap.get());
    const OwnedRegion previous(CreateRectRgn(0, 0, 40, 40));
    if (row.hadClip) SelectClipRgn(dc.get(), previous.get());
    RECT before{}, inside{};
    GetClipBox(dc.get(), &before);
    {
      DCChanger use(dc.get());
      row.change(use);
      GetClipBox(dc.get(), &inside);
      SetTextColor(dc.get(), RGB(9, 9, 9));
    }
    EXPECT_FALSE(EqualRect(&before, &inside)) << row.name << ": the clip did not change inside the scope";
    const OwnedRegion now(CreateRectRgn(0, 0, 0, 0));
    EXPECT_EQ(row.hadClip ? 1 : 0, GetClipRgn(dc.get(), now.get())) << row.name << ": clip region present after";
    EXPECT_TRUE(!row.hadClip || EqualRgn(previous.get(), now.get())) << row.name << ": clip region";
    EXPECT_EQ(RGB(9, 9, 9), GetTextColor(dc.get())) << row.name << ": hand-made text colour";
  }
}

// Restore() puts everything back at once and leaves the changer as new: what
// it changes next comes back to the values of that moment.
TEST(DCChanger, RestoreEarlyThenReuse) {
  const OwnedMemoryDC dc(CreateCompatibleDC(nullptr));
  const OwnedPen pen(CreatePen(PS_SOLID, 1, 0));
  const HGDIOBJ stockPen = GetCurrentObject(dc.get(), OBJ_PEN);
  const COLORREF color = GetTextColor(dc.get());
  DCChanger use(dc.get());
  use.Select(pen.get());
  use.SetTextColor(RGB(1, 1, 1));
  use.IntersectClip(RECT{0, 0, 5, 5});
  use.Restore();
  const OwnedRegion clip(CreateRectRgn(0, 0, 0, 0));
  EXPECT_EQ(stockPen, GetCurrentObject(dc.get(), OBJ_PEN)) << "pen after Restore";
  EXPECT_EQ(color, GetTextColor(dc.get())) << "text colour after Restore";
  EXPECT_EQ(0, GetClipRgn(dc.get(), clip.get())) << "clip after Restore";

  SetTextColor(dc.get(), RGB(2, 2, 2));  // by hand between the two uses: the new starting point
  use.SetTextColor(RGB(3, 3, 3));
  use.Select(pen.get());
  use.Restore();
  EXPECT_EQ(RGB(2, 2, 2), GetTextColor(dc.get())) << "text colour after the second use";
  EXPECT_EQ(stockPen, GetCurrentObject(dc.get(), OBJ_PEN)) << "pen after the second use";
  use.Restore();  // nothing left to put back: changes nothing
  EXPECT_EQ(RGB(2, 2, 2), GetTextColor(dc.get())) << "a second Restore";
}

}  // namespace
