// Labels: fitted to their text, painted by their parent's window where they
// lie, aligned across and down, transparent, wrapped, and forgetting a focus
// control that is freed.
#include "platform/vcl/stdctrls/std_label.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "platform/vcl/core/filer.h"
#include "platform/vcl/forms/application.h"
#include "platform/vcl/stdctrls/std_edits.h"
#include "tests/platform/vcl/test_helpers.h"

using namespace Stdctrls;
using namespace vcl_test;

namespace {

// The bounds, last pixels included, of the dark pixels in the rectangle r of
// the form's window (left -1: none).
MyRect DarkBounds(Forms::TForm& form, const RECT& r) {
  RedrawWindow(form.GetHandle(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW | RDW_ALLCHILDREN);
  Forms::Application->ProcessMessages();
  const OwnedWindowDC dc(form.GetHandle());
  MyRect out{-1, -1, -1, -1};
  for (int y = r.top; y < r.bottom; ++y)
    for (int x = r.left; x < r.right; ++x) {
      const COLORREF c = GetPixel(dc.get(), x, y);
      if (c == CLR_INVALID || GetRValue(c) >= 100 || GetGValue(c) >= 100 || GetBValue(c) >= 100) continue;
      if (out.left < 0) out = {x, y, x, y};
      out = {std::min(out.left, x), std::min(out.top, y), std::max(out.right, x), std::max(out.bottom, y)};
    }
  return out;
}

TEST(TCustomLabel, FitsItsTextAndIsPaintedWhereItLies) {
  Forms::TForm form(nullptr);
  form.SetBorderStyle(Forms::bsNone);
  form.SetBounds(0, 0, 300, 100);
  auto* label = Make<TLabel>(&form, &form, 20, 10, 10, 10);
  label->SetText("Some &label text");
  EXPECT_GT(label->GetWidth(), 60) << "fitted to the text";
  EXPECT_GT(label->GetHeight(), 8);

  auto* fixed = Make<TLabel>(&form, &form);
  fixed->SetAutoSize(false);
  fixed->SetBounds(20, 50, 200, 20);
  fixed->SetAlignment(taRightJustify);
  fixed->SetText("right");
  EXPECT_EQ(200, fixed->GetWidth()) << "not fitted when AutoSize is off";

  // Read back, the caption comes before AutoSize = False: still not fitted.
  TLabel copy(nullptr);
  ReadBack(fixed, &copy);
  EXPECT_EQ((MyRect{20, 50, 220, 70}), copy.GetBoundsRect()) << "a fixed label read back keeps its size";

  form.Show();
  const MyRect text = DarkBounds(form, RECT{0, 0, 300, 40});
  EXPECT_GE(text.left, 20) << "the text starts inside the label";
  EXPECT_LE(text.right, 20 + label->GetWidth()) << "and ends inside it";
  EXPECT_GT(text.right - text.left, 40) << "something like a line of text was drawn";
  const MyRect right = DarkBounds(form, RECT{0, 50, 300, 70});
  EXPECT_GT(right.left, 150) << "right-aligned text sits at the right end";
  EXPECT_LE(right.right, 220);

  auto* edit = new TEdit(nullptr);  // owned by nobody: freed below
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
  auto* label = Make<TLabel>(&form, &form);
  label->SetAutoSize(false);
  label->SetBounds(20, 10, 200, 60);
  label->SetText("Mid");
  form.Show();
  const struct {
    const char* what;
    TTextLayout layout;
    int centre;  // where the middle of the text is expected, down the label
  } rows[] = {{"top", tlTop, 10}, {"centre", tlCenter, 40}, {"bottom", tlBottom, 70}};
  for (const auto& r : rows) {
    label->SetLayout(r.layout);
    const MyRect text = DarkBounds(form, RECT{20, 10, 220, 70});
    ASSERT_GE(text.top, 0) << r.what << ": no text";
    EXPECT_LE(std::abs((text.top + text.bottom) / 2 - r.centre), 12) << r.what << ": text at " << text;
  }

  const auto colourAt = [&](int x, int y) {
    RedrawWindow(form.GetHandle(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW);
    Forms::Application->ProcessMessages();
    return GetPixel(OwnedWindowDC(form.GetHandle()).get(), x, y);
  };
  label->SetColor(Graphics::clYellow);
  EXPECT_EQ(RGB(255, 255, 0), colourAt(22, 12)) << "opaque: the label's colour";
  label->SetTransparent(true);
  EXPECT_EQ(RGB(255, 255, 255), colourAt(22, 12)) << "transparent: the form's";

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
  const MyRect text = DarkBounds(form, RECT{0, 0, 300, 200});
  EXPECT_GT(text.bottom - text.top, lineHeight) << "painted on several lines";
  EXPECT_GE(text.left, 20);
  EXPECT_LT(text.right, 80) << "inside the width";
}

}  // namespace
