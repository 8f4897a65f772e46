// Labels: fitted to their text, painted by their parent's window where they
// lie, aligned across, and forgetting a focus control that is freed.
#include "platform/vcl/std_label.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "platform/ostrel/owned_handle.h"
#include "platform/vcl/application.h"
#include "platform/vcl/filer.h"
#include "platform/vcl/std_edits.h"

using namespace Stdctrls;

namespace {

// Columns (x) of dark pixels found in the rectangle of dc.
std::pair<int, int> DarkSpan(HDC dc, const RECT& r) {
  int first = -1, last = -1;
  for (int x = r.left; x < r.right; ++x)
    for (int y = r.top; y < r.bottom; ++y) {
      const COLORREF c = GetPixel(dc, x, y);
      if (c != CLR_INVALID && GetRValue(c) < 100 && GetGValue(c) < 100 && GetBValue(c) < 100) {
        if (first < 0) first = x;
        last = x;
        break;
      }
    }
  return {first, last};
}

// Rows (y) of dark pixels found in the rectangle of dc.
std::pair<int, int> DarkRows(HDC dc, const RECT& r) {
  int first = -1, last = -1;
  for (int y = r.top; y < r.bottom; ++y)
    for (int x = r.left; x < r.right; ++x) {
      const COLORREF c = GetPixel(dc, x, y);
      if (c != CLR_INVALID && GetRValue(c) < 100 && GetGValue(c) < 100 && GetBValue(c) < 100) {
        if (first < 0) first = y;
        last = y;
        break;
      }
    }
  return {first, last};
}

TEST(TCustomLabel, FitsItsTextAndIsPaintedWhereItLies) {
  Forms::TForm form(nullptr);
  form.SetBorderStyle(Forms::bsNone);
  form.SetBounds(0, 0, 300, 100);
  auto* label = new TLabel(&form);
  label->SetParent(&form);
  label->SetBounds(20, 10, 10, 10);
  label->SetText("Some &label text");
  EXPECT_GT(label->GetWidth(), 60) << "fitted to the text";
  EXPECT_GT(label->GetHeight(), 8);

  auto* fixed = new TLabel(&form);
  fixed->SetParent(&form);
  fixed->SetAutoSize(false);
  fixed->SetBounds(20, 50, 200, 20);
  fixed->SetAlignment(taRightJustify);
  fixed->SetText("right");
  EXPECT_EQ(200, fixed->GetWidth()) << "not fitted when AutoSize is off";

  // Read back, the caption comes before AutoSize = False: still not fitted.
  Classes::TMemoryStream stream;
  stream.WriteComponent(fixed);
  stream.SetPosition(0);
  TLabel copy(nullptr);
  stream.ReadComponent(&copy);
  EXPECT_EQ(200, copy.GetWidth()) << "a fixed label read back keeps its size";
  EXPECT_EQ(20, copy.GetHeight());

  form.Show();
  RedrawWindow(form.GetHandle(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW | RDW_ALLCHILDREN);
  Forms::Application->ProcessMessages();
  const OwnedWindowDC dc(form.GetHandle());
  const auto [first, last] = DarkSpan(dc.get(), RECT{0, 0, 300, 40});
  EXPECT_GE(first, 20) << "the text starts inside the label";
  EXPECT_LE(last, 20 + label->GetWidth()) << "and ends inside it";
  EXPECT_GT(last - first, 40) << "something like a line of text was drawn";
  const auto [rightFirst, rightLast] = DarkSpan(dc.get(), RECT{0, 50, 300, 70});
  EXPECT_GT(rightFirst, 150) << "right-aligned text sits at the right end";
  EXPECT_LE(rightLast, 220);

  auto* edit = new Stdctrls::TEdit(nullptr);  // owned by nobody: freed below
  label->SetFocusControl(edit);
  delete edit;
  EXPECT_EQ(nullptr, label->GetFocusControl()) << "a freed focus control is forgotten";
}

// Layout puts the text down the label, Transparent lets the parent show
// through, WordWrap breaks the text into lines that fit the width.
TEST(TCustomLabel, LayoutTransparentAndWordWrapAsPainted) {
  Forms::TForm form(nullptr);
  form.SetBorderStyle(Forms::bsNone);
  form.SetBounds(0, 0, 300, 200);
  form.SetColor(Graphics::clWhite);
  auto* label = new TLabel(&form);
  label->SetParent(&form);
  label->SetAutoSize(false);
  label->SetBounds(20, 10, 200, 60);
  label->SetText("Mid");
  form.Show();
  const OwnedWindowDC dc(form.GetHandle());
  const auto paint = [&] {
    RedrawWindow(form.GetHandle(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW);
    Forms::Application->ProcessMessages();
  };
  const RECT area{20, 10, 220, 70};
  const struct {
    const char* what;
    TTextLayout layout;
    int centre;  // where the middle of the text is expected, down the label
  } rows[] = {{"top", tlTop, 10}, {"centre", tlCenter, 40}, {"bottom", tlBottom, 70}};
  for (const auto& r : rows) {
    label->SetLayout(r.layout);
    paint();
    const auto [first, last] = DarkRows(dc.get(), area);
    ASSERT_GE(first, 0) << r.what << ": no text";
    EXPECT_LE(std::abs((first + last) / 2 - r.centre), 12) << r.what << ": text from " << first << " to " << last;
  }

  label->SetColor(Graphics::clYellow);
  paint();
  EXPECT_EQ(RGB(255, 255, 0), GetPixel(dc.get(), 22, 12)) << "opaque: the label's colour";
  label->SetTransparent(true);
  paint();
  EXPECT_EQ(RGB(255, 255, 255), GetPixel(dc.get(), 22, 12)) << "transparent: the form's";

  label->SetTransparent(false);
  label->SetColor(Graphics::clWhite);
  label->SetAutoSize(true);
  label->SetText("Word");
  const int lineHeight = label->GetHeight();
  label->SetAutoSize(false);
  label->SetBounds(20, 10, 60, lineHeight);
  label->SetText("one two three four");
  label->SetWordWrap(true);
  label->SetAutoSize(true);
  EXPECT_GE(label->GetHeight(), 2 * lineHeight) << "fitted to the lines";
  EXPECT_LE(label->GetWidth(), 60) << "no wider than it was";
  paint();
  const auto [top, bottom] = DarkRows(dc.get(), RECT{0, 0, 300, 200});
  EXPECT_GT(bottom - top, lineHeight) << "painted on several lines";
  const auto [left, right] = DarkSpan(dc.get(), RECT{0, 0, 300, 200});
  EXPECT_GE(left, 20);
  EXPECT_LT(right, 80) << "inside the width";
}

}  // namespace
