// Layout: aligned children stacked in their parent's client area, laid out
// again when the parent is resized or a child is hidden, moved, re-aligned or
// freed, also while the parent is being laid out; anchored children keeping
// their distances; size constraints; and the list-index error of Controls.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/vcl/core/object_text.h"
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

// Many panels coming in one by one, or in a batch, end up stacked as if laid
// out at once, and a batch lays out only at its end.
TEST(TWinControl, PanelsComingInOneByOneOrInABatchStackTheSame) {
  Forms::TForm form(nullptr);
  form.SetBorderStyle(Forms::bsNone);
  form.SetBounds(0, 0, 300, 400);
  auto* client = Make<TPanel>(&form, &form);
  client->SetAlign(alClient);
  auto* bottom = Make<TPanel>(&form, &form, 0, 0, 10, 30);
  bottom->SetAlign(alBottom);
  std::vector<TPanel*> rows;
  const auto add = [&] {
    auto* p = new TPanel(&form);
    p->SetHeight(10 + static_cast<int>(rows.size()));
    p->SetAlign(alTop);
    p->SetParent(&form);
    rows.push_back(p);
  };
  for (int i = 0; i < 5; ++i) add();
  form.DisableAlign();
  for (int i = 0; i < 5; ++i) add();
  EXPECT_EQ(0, rows.back()->GetTop()) << "laid out inside the batch";
  form.EnableAlign();
  int top = 0;
  for (size_t i = 0; i < rows.size(); ++i) {
    EXPECT_EQ((MyRect{0, top, 300, top + 10 + static_cast<int>(i)}), rows[i]->GetBoundsRect()) << "row " << i;
    top += 10 + static_cast<int>(i);
  }
  EXPECT_EQ((MyRect{0, top, 300, 370}), client->GetBoundsRect()) << "the client takes what the rows leave";
  EXPECT_EQ((MyRect{0, 370, 300, 400}), bottom->GetBoundsRect());
}

// Anchors keep a control's distances to the parent's edges as the parent
// changes size, measured where the control was put, so that shrinking and
// growing back brings everything back; constraints bound every size; both
// are published, and a design keeps its places when read.
TEST(TWinControl, AnchorsKeepDistancesAndConstraintsBoundSizes) {
  Forms::TForm form(nullptr);
  form.SetBorderStyle(Forms::bsNone);
  form.SetBounds(0, 0, 300, 200);
  form.GetHandle();
  const auto anchored = [&](TAnchors anchors, int left, int top, int width, int height) {
    auto* p = Make<TPanel>(&form, &form, left, top, width, height);
    p->SetAnchors(anchors);
    return p;
  };
  const struct {
    const char* what;
    TPanel* panel;
    std::string at400x260;
  } rows[] = {{"right and bottom: moves", anchored({akRight, akBottom}, 210, 160, 80, 30), "310,220 80x30"},
              {"left and right: stretches", anchored({akLeft, akTop, akRight}, 10, 10, 280, 20), "10,10 380x20"},
              {"all four: grows", anchored({akLeft, akTop, akRight, akBottom}, 10, 40, 100, 100), "10,40 200x160"},
              {"none: the centre in proportion", anchored({}, 100, 80, 100, 40), "150,110 100x40"},
              {"left and top: stays", anchored({akLeft, akTop}, 5, 150, 20, 20), "5,150 20x20"}};
  std::vector<std::string> before;
  for (const auto& row : rows) before.push_back(Where(row.panel));
  form.SetBounds(0, 0, 400, 260);
  for (const auto& row : rows) EXPECT_EQ(row.at400x260, Where(row.panel)) << row.what;
  form.SetBounds(0, 0, 40, 30);
  form.SetBounds(0, 0, 300, 200);
  for (size_t i = 0; i < std::size(rows); ++i) EXPECT_EQ(before[i], Where(rows[i].panel)) << rows[i].what << ", back";

  TSizeConstraints* limits = rows[4].panel->GetConstraints();
  limits->SetMinWidth(50);
  EXPECT_EQ("5,150 50x20", Where(rows[4].panel)) << "a new minimum applies at once";
  limits->SetMaxHeight(15);
  rows[4].panel->SetBounds(5, 150, 500, 100);
  EXPECT_EQ("5,150 500x15", Where(rows[4].panel));
  rows[4].panel->SetAlign(alClient);
  EXPECT_EQ(15, rows[4].panel->GetHeight()) << "aligned, still bounded";
  form.GetConstraints()->SetMinWidth(200);
  form.SetWidth(100);
  EXPECT_EQ(200, form.GetWidth());
  MINMAXINFO info{};
  SendMessageA(form.GetHandle(), WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&info));
  EXPECT_EQ(200, info.ptMinTrackSize.x) << "the frame dragged by the user";

  // A design made for a client area other than a new form's: the anchored
  // button stays where it was designed, then follows the form.
  const std::string text =
      "object F: TForm\n BorderStyle = bsNone\n ClientWidth = 500\n ClientHeight = 300\n"
      " object Ok: TPanel\n  Left = 410\n  Top = 260\n  Width = 80\n  Height = 30\n"
      "  Anchors = [akRight, akBottom]\n  Constraints.MinHeight = 25\n end\nend\n";
  Classes::TMemoryStream binary;
  Load(binary, Convert(&Classes::ObjectTextToBinary, text));
  std::unique_ptr<Classes::TComponent> read(binary.ReadComponent(nullptr));
  auto* design = dynamic_cast<Forms::TForm*>(read.get());
  ASSERT_NE(nullptr, design);
  auto* ok = dynamic_cast<TPanel*>(design->GetControl(0));
  EXPECT_EQ((MyRect{410, 260, 490, 290}), ok->GetBoundsRect());
  EXPECT_EQ(25, ok->GetConstraints()->GetMinHeight());
  design->SetClientWidth(600);
  EXPECT_EQ(510, ok->GetLeft());
}

}  // namespace
