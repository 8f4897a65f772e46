// Labels: fitted to their text, painted by their parent's window where they
// lie, aligned across, and forgetting a focus control that is freed.
#include "platform/vcl/std_label.h"

#include <gtest/gtest.h>

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

}  // namespace
