// Alignment: aligned children stacked in their parent's client area, laid out
// again when the parent is resized or a child is hidden, moved, re-aligned or
// freed, also while the parent is being laid out; and the list-index error
// of Controls.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/vcl/forms/forms.h"
#include "platform/vcl/stdctrls/ext_panels.h"
#include "tests/platform/vcl/test_helpers.h"

using namespace Controls;
using Extctrls::TPanel;
using namespace vcl_test;

namespace {

std::string Where(TControl* c) {
  RECT r;
  auto* w = dynamic_cast<TWinControl*>(c);
  GetWindowRect(w->GetHandle(), &r);
  MapWindowPoints(HWND_DESKTOP, w->GetParent()->GetHandle(), reinterpret_cast<POINT*>(&r), 2);
  return std::to_string(r.left) + "," + std::to_string(r.top) + " " + std::to_string(r.right - r.left) + "x" +
         std::to_string(r.bottom - r.top);
}

TEST(TWinControl, AlignedChildrenStackAndCloseUp) {
  Forms::TForm form(nullptr);
  form.SetBorderStyle(Forms::bsNone);
  form.SetBounds(0, 0, 300, 200);
  const auto panel = [&](TAlign align, int size) {
    auto* p = Make<TPanel>(&form, &form, 0, 0, size, size);
    p->SetAlign(align);
    return p;
  };
  std::vector<TPanel*> top;
  for (int i = 0; i < 3; ++i) top.push_back(panel(alTop, 20 + 10 * i));
  auto* bottom = panel(alBottom, 25);
  auto* left = panel(alLeft, 50);
  auto* client = panel(alClient, 10);
  form.GetHandle();

  struct Row {
    const char* what;
    std::vector<std::string> expected;  // top[0..2], bottom, left, client as the windows are
  };
  const auto check = [&](const Row& r) {
    const std::vector<TControl*> all{top[0], top[1], top[2], bottom, left, client};
    for (size_t i = 0; i < all.size(); ++i)
      if (all[i]->GetVisible()) {
        EXPECT_EQ(r.expected[i], Where(all[i])) << r.what << ", control " << i;
      }
  };
  check({"stacked in creation order",
         {"0,0 300x20", "0,20 300x30", "0,50 300x40", "0,175 300x25", "0,90 50x85", "50,90 250x85"}});
  top[1]->Hide();
  check({"one hidden: the others close up",
         {"0,0 300x20", "", "0,20 300x40", "0,175 300x25", "0,60 50x115", "50,60 250x115"}});
  top[1]->Show();
  top[0]->SetHeight(35);
  form.SetBounds(0, 0, 400, 250);
  check({"first grown, parent resized",
         {"0,0 400x35", "0,35 400x30", "0,65 400x40", "0,225 400x25", "0,105 50x120", "50,105 350x120"}});
  delete top[2];
  top.pop_back();
  left->SetAlign(alRight);
  EXPECT_EQ("0,65 350x160", Where(client)) << "freed and re-aligned: the client takes the room";
  EXPECT_EQ("350,65 50x160", Where(left));

  // A panel whose resize frees a sibling not yet laid out: the layout goes
  // on without it.
  struct Dropping : TPanel {
    using TPanel::TPanel;
    TControl* victim = nullptr;
    void Resize() override {
      delete victim;
      victim = nullptr;
    }
  };
  auto* dropping = Make<Dropping>(&form, &form, 0, 0, 10, 10);
  dropping->SetAlign(alTop);
  dropping->victim = bottom;
  form.SetBounds(0, 0, 420, 260);
  EXPECT_EQ(nullptr, dropping->victim);
  EXPECT_EQ("0,75 370x185", Where(client)) << "the bottom panel freed while the form was laid out";

  EXPECT_EQ("List index out of bounds (5)", ErrorOf<Classes::EListError>([&] { form.GetControl(5); }));
  EXPECT_EQ(5, form.GetControlCount());
}

}  // namespace
