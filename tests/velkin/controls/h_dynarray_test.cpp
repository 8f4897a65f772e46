// The dynamic control array: panels lifted out of template forms made from
// their resources, stacked into a scroll box by alignment, found by key,
// control or parent, and handed back with their designed bounds.
#include "velkin/controls/h_dynarray.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/vcl/forms/application.h"
#include "platform/vcl/stdctrls/ext_panels.h"
#include "platform/vcl/stdctrls/scroll_box.h"

// A row template whose show and hide events are counted.
class TRowForm : public Forms::TForm {
  VCL_CLASS();

 public:
  explicit TRowForm(Classes::TComponent* owner) : TForm(owner) { ReadDesign(); }
  Extctrls::TPanel* RowPanel = nullptr;
  std::string log;
  void FormShow(System::TObject* sender) { log += sender ? "show(sender) " : "show "; }
  void FormHide(System::TObject* sender) { log += sender ? "hide(sender) " : "hide "; }
};
VCL_COMPONENT_IMPL(TRowForm, Forms::TForm, VCL_FIELD(RowPanel), VCL_METHOD(FormShow, System::TNotifyEvent),
                   VCL_METHOD(FormHide, System::TNotifyEvent))

// A template whose panel is designed bottom-aligned.
class TBarForm : public Forms::TForm {
  VCL_CLASS();

 public:
  explicit TBarForm(Classes::TComponent* owner) : TForm(owner) { ReadDesign(); }
  Extctrls::TPanel* BarPanel = nullptr;
};
VCL_COMPONENT_IMPL(TBarForm, Forms::TForm, VCL_FIELD(BarPanel))

namespace {

using Controls::TAlign;

struct Host {
  Host() : form(nullptr), box(new Forms::TScrollBox(&form)) {
    form.SetBounds(0, 0, 400, 400);
    box->SetParent(&form);
    box->SetBounds(0, 0, 300, 300);
  }
  Forms::TForm form;
  Forms::TScrollBox* box;
};

std::string Bounds(const Controls::TControl* c) {
  return std::to_string(c->GetLeft()) + "," + std::to_string(c->GetTop()) + " " + std::to_string(c->GetWidth()) + "x" +
         std::to_string(c->GetHeight());
}

TEST(HDynamicArray, TemplatePanelsStackInCallOrderAndGoBackAsDesigned) {
  Host host;
  host.form.Show();  // rows placed into a box on the screen appear there
  std::vector<std::unique_ptr<TRowForm>> rows;
  for (int i = 0; i < 3; ++i) rows.push_back(std::make_unique<TRowForm>(nullptr));
  const std::string designed = Bounds(rows[0]->RowPanel);
  ASSERT_EQ("8,6 220x41", designed);
  auto bar = std::make_unique<TBarForm>(nullptr);
  const std::string barDesigned = Bounds(bar->BarPanel);

  HDynamicArray array(nullptr, 0);
  for (int i = 0; i < 3; ++i) {
    HDynamicControl* r =
        array.NewControl(reinterpret_cast<void*>(i + 1), rows[i].get(), host.box, Controls::alTop, 77, 77);
    ASSERT_NE(nullptr, r);
    EXPECT_EQ(rows[i]->RowPanel, r->Control);
    EXPECT_EQ(Controls::alNone, r->Align) << "the designed alignment is kept";
    EXPECT_FALSE(r->OwnsForm);
    EXPECT_EQ("show ", rows[i]->log) << "OnShow with no sender, once placed";
  }
  ASSERT_NE(nullptr, array.NewControl(reinterpret_cast<void*>(9), bar.get(), host.box, Controls::alBottom, 0, 0));
  const int width = host.box->GetClientWidth();
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(host.box, rows[i]->RowPanel->GetParent());
    EXPECT_EQ(Controls::alTop, rows[i]->RowPanel->GetAlign());
    EXPECT_EQ("0," + std::to_string(41 * i) + " " + std::to_string(width) + "x41", Bounds(rows[i]->RowPanel))
        << "row " << i << " stacked in call order";
    ASSERT_TRUE(rows[i]->RowPanel->HandleAllocated()) << "row " << i;
    EXPECT_EQ(GetParent(rows[i]->RowPanel->GetHandle()), host.box->GetHandle()) << "row " << i;
    EXPECT_TRUE(IsWindowVisible(rows[i]->RowPanel->GetHandle())) << "row " << i;
  }
  EXPECT_EQ("0," + std::to_string(host.box->GetClientHeight() - 30) + " " + std::to_string(width) + "x30",
            Bounds(bar->BarPanel));
  EXPECT_EQ(4, array.Count());
  EXPECT_EQ(2, array.Locate(reinterpret_cast<void*>(3)));
  EXPECT_EQ(-1, array.Locate(reinterpret_cast<void*>(5)));
  EXPECT_EQ(1, array.LocateByControl(rows[1]->RowPanel));
  EXPECT_EQ(0, array.LocateByParent(host.box));
  EXPECT_EQ(-1, array.LocateByParent(&host.form));
  EXPECT_EQ(nullptr, array.NewControl(nullptr, nullptr, host.box, Controls::alTop, 0, 0));
  Forms::TForm empty(nullptr);
  EXPECT_EQ(nullptr, array.NewControl(nullptr, &empty, host.box, Controls::alTop, 0, 0));
  EXPECT_EQ(4, array.Count());

  EXPECT_TRUE(array.DeleteNum(1));
  EXPECT_EQ(rows[1].get(), rows[1]->RowPanel->GetParent());
  EXPECT_EQ(designed, Bounds(rows[1]->RowPanel));
  EXPECT_EQ("show hide ", rows[1]->log);
  EXPECT_FALSE(array.DeleteNum(3));
  EXPECT_EQ("0,0 " + std::to_string(width) + "x41", Bounds(rows[0]->RowPanel));
  EXPECT_EQ("0,41 " + std::to_string(width) + "x41", Bounds(rows[2]->RowPanel)) << "the gap closed";

  array.DeleteAll();
  EXPECT_EQ(0, array.Count());
  EXPECT_EQ(0, host.box->GetControlCount());
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(rows[i].get(), rows[i]->RowPanel->GetParent());
    EXPECT_EQ(designed, Bounds(rows[i]->RowPanel));
    EXPECT_EQ(Controls::alNone, rows[i]->RowPanel->GetAlign());
    EXPECT_EQ("show hide ", rows[i]->log);
  }
  EXPECT_EQ(bar.get(), bar->BarPanel->GetParent());
  EXPECT_EQ(Controls::alBottom, bar->BarPanel->GetAlign());
  EXPECT_EQ(barDesigned, Bounds(bar->BarPanel));
}

// A template made in code whose panel notes where the array put it, before
// the parent's alignment moved it.
struct TPlacedPanel : Extctrls::TPanel {
  using TPanel::TPanel;
  void SetParent(Controls::TWinControl* parent) override {
    if (parent && parent != GetOwner()) placed = std::to_string(GetLeft()) + "," + std::to_string(GetTop());
    TPanel::SetParent(parent);
  }
  std::string placed;
};
struct Template {
  Template() : form(nullptr), panel(new TPlacedPanel(&form)) {
    panel->SetParent(&form);
    panel->SetBounds(8, 6, 220, 41);
  }
  Forms::TForm form;
  TPlacedPanel* panel;
};

// Each side: two placements, the second one further in; Left/Top ignored.
// Before alignment runs, a panel is one pixel past the last sibling on the
// top and left, two pixels before it on the bottom and right (with none, one
// inside the parent's outer edge).
TEST(HDynamicArray, EachSideStacksOnePixelPastItsLastSibling) {
  for (TAlign align : {Controls::alTop, Controls::alBottom, Controls::alLeft, Controls::alRight}) {
    SCOPED_TRACE("align " + std::to_string(int(align)));
    Host host;
    host.box->SetBounds(0, 0, 500, 300);
    Template a, b;
    HDynamicArray array(nullptr, 0);
    array.NewControl(nullptr, &a.form, host.box, align, 5, 5);
    array.NewControl(nullptr, &b.form, host.box, align, 5, 5);
    const int w = host.box->GetClientWidth(), h = host.box->GetClientHeight();
    const auto n = [](int v) { return std::to_string(v); };
    // The bounds of the first and second panel, then where each was placed.
    const std::map<TAlign, std::vector<std::string>> expected = {
        {Controls::alTop, {"0,0 " + n(w) + "x41", "0,41 " + n(w) + "x41", "0,0", "0,42"}},
        {Controls::alBottom,
         {"0," + n(h - 41) + " " + n(w) + "x41", "0," + n(h - 82) + " " + n(w) + "x41", "0,299", "0," + n(h - 43)}},
        {Controls::alLeft, {"0,0 220x" + n(h), "220,0 220x" + n(h), "0,0", "221,0"}},
        {Controls::alRight, {n(w - 220) + ",0 220x" + n(h), n(w - 440) + ",0 220x" + n(h), "499,0", n(w - 222) + ",0"}},
    };
    EXPECT_EQ(expected.at(align),
              (std::vector<std::string>{Bounds(a.panel), Bounds(b.panel), a.panel->placed, b.panel->placed}));
    array.DeleteAll();
  }

  // Not aligned: -1 keeps the designed coordinate.
  Host host;
  TRowForm row(nullptr);
  HDynamicArray array(nullptr, 0);
  array.NewControl(nullptr, &row, host.box, Controls::alNone, -1, 20);
  EXPECT_EQ("8,20 220x41", Bounds(row.RowPanel));
  EXPECT_EQ(host.box, row.RowPanel->GetParent());
  EXPECT_EQ(nullptr, array.NewControl(nullptr, &row, nullptr, Controls::alNone, 3, -1))
      << "the form's panel is placed already: nothing left to lift";
  TRowForm other(nullptr);
  array.NewControl(nullptr, &other, nullptr, Controls::alNone, 3, -1);
  EXPECT_EQ("3,6 220x41", Bounds(other.RowPanel)) << "no parent: moved where it is";
  EXPECT_EQ(&other, other.RowPanel->GetParent());
  EXPECT_EQ("show ", row.log);
  EXPECT_EQ("", other.log) << "OnShow only with a parent";
  array.DeleteAll();
  EXPECT_EQ(&row, row.RowPanel->GetParent());
  EXPECT_EQ("8,6 220x41", Bounds(row.RowPanel));
  EXPECT_EQ("8,6 220x41", Bounds(other.RowPanel));
}

TEST(HDynamicArray, SortedArraysInsertBeforeAnEqualKeyAndFindByIt) {
  Host host;
  std::vector<std::unique_ptr<TRowForm>> rows;
  for (int i = 0; i < 5; ++i) rows.push_back(std::make_unique<TRowForm>(nullptr));
  char b1[] = "b", a[] = "A", c[] = "c", b2[] = "B", lookFor[] = "C", missing[] = "d";
  HDynamicArray byName(&HDynamicArray::idStringCmp, 0);
  char* keys[] = {b1, a, c, b2};
  for (int i = 0; i < 4; ++i) byName.NewControl(keys[i], rows[i].get(), host.box, Controls::alNone, -1, -1);
  std::string order;
  for (int i = 0; i < byName.Count(); ++i) order += static_cast<const char*>(byName.Item(i)->Data);
  EXPECT_EQ("ABbc", order) << "case folded; the second b before the first";
  EXPECT_EQ(rows[3].get(), byName.Item(1)->Form);
  EXPECT_EQ(3, byName.Locate(lookFor));
  EXPECT_EQ(-1, byName.Locate(missing));
  byName.DeleteAll();

  HDynamicArray byNumber(&HDynamicArray::idNumberCmp, 0);
  for (int key : {30, 10, 20, -5})
    byNumber.NewControl(reinterpret_cast<void*>(static_cast<intptr_t>(key)), rows[4].get(), nullptr, Controls::alNone,
                        -1, -1);
  std::vector<intptr_t> numbers;
  for (int i = 0; i < byNumber.Count(); ++i) numbers.push_back(reinterpret_cast<intptr_t>(byNumber.Item(i)->Data));
  EXPECT_EQ((std::vector<intptr_t>{-5, 10, 20, 30}), numbers);
  EXPECT_EQ(2, byNumber.Locate(reinterpret_cast<void*>(20)));
  EXPECT_EQ(0, HDynamicArray::idNumberCmp(byNumber.Item(0), byNumber.Item(0)));
  byNumber.DeleteAll();
}

TEST(HDynamicArray, ARecordOwningItsFormFreesItOnceAndIsFoundNoMore) {
  Host host;
  auto* row = new TRowForm(nullptr);
  HDynamicArray array(nullptr, 0);
  HDynamicControl* r = array.NewControl(nullptr, row, host.box, Controls::alTop, 0, 0);
  ASSERT_NE(nullptr, r);
  r->OwnsForm = true;
  const int forms = Forms::Screen->GetFormCount();
  array.RemoveControl(r);
  EXPECT_EQ(forms - 1, Forms::Screen->GetFormCount()) << "the form went with its panel";
  EXPECT_EQ(0, host.box->GetControlCount());
  EXPECT_EQ(1, array.Count()) << "the record stays";
  EXPECT_EQ(-1, array.LocateByControl(nullptr)) << "even though a record now has no control";
  array.RemoveControl(array.Item(0));
  array.RemoveControl(nullptr);
  EXPECT_TRUE(array.DeleteNum(0));
  EXPECT_EQ(forms - 1, Forms::Screen->GetFormCount());
}

}  // namespace
