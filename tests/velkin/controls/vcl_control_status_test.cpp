// Snapshots of a form's control tree: which controls are recorded in which
// order for each depth, state forced and put back, a freed control skipped.
#include "velkin/controls/vcl_control_status.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "platform/vcl/forms/application.h"
#include "platform/vcl/stdctrls/ext_panels.h"
#include "platform/vcl/stdctrls/std_buttons.h"
#include "platform/vcl/stdctrls/std_edits.h"
#include "platform/vcl/stdctrls/std_group_box.h"
#include "platform/vcl/stdctrls/std_label.h"

namespace {

using Controls::TControl;
using Controls::TWinControl;

// form: L1, P (G (L2, E), B2), B1, L3
struct Tree {
  Forms::TForm form{nullptr};
  template <class T>
  T* Add(const char* name, TWinControl* parent) {
    T* c = new T(&form);
    c->SetName(name);
    c->SetParent(parent);
    c->SetBounds(4, 4, 60, 20);
    return c;
  }
  Stdctrls::TLabel* L1 = Add<Stdctrls::TLabel>("L1", &form);
  Extctrls::TPanel* P = Add<Extctrls::TPanel>("P", &form);
  Stdctrls::TGroupBox* G = Add<Stdctrls::TGroupBox>("G", P);
  Stdctrls::TLabel* L2 = Add<Stdctrls::TLabel>("L2", G);
  Stdctrls::TEdit* E = Add<Stdctrls::TEdit>("E", G);
  Stdctrls::TButton* B2 = Add<Stdctrls::TButton>("B2", P);
  Stdctrls::TButton* B1 = Add<Stdctrls::TButton>("B1", &form);
  Stdctrls::TLabel* L3 = Add<Stdctrls::TLabel>("L3", &form);
};

std::string Names(const HControlStatus& status) {
  std::string s;
  for (int i = 0; i < status.Count(); ++i)
    s += (i ? " " : "") + std::string(status.Item(i)->Control ? status.Item(i)->Control->GetName().c_str() : "-");
  return s;
}

TEST(HControlStatus, RecordsEachDepthInItsOrder) {
  Tree t;
  const struct {
    bool recursive;
    int depth;
    const char* names;
  } rows[] = {
      {true, 1, "L1 L3 P B1"},           {true, 2, "L1 L3 G B2 P B1"},
      {true, -1, "L1 L3 G B2 P B1"},  // exactly two levels: not the edit inside the group box
      {true, 3, "L1 L3 L2 E G B2 P B1"}, {true, 9, "L1 L3 L2 E G B2 P B1"},
      {false, 5, "L1 L3 P B1"},          {true, -2, "L1 L3 P B1"},
  };
  HControlStatus status;
  for (const auto& r : rows) {
    status.Store(&t.form, r.recursive, r.depth);
    EXPECT_EQ(r.names, Names(status)) << "recursive " << r.recursive << ", depth " << r.depth;
  }
  status.Store(&t.form, true, 0);
  EXPECT_EQ("L1 L3 P B1", Names(status)) << "depth 0 keeps the earlier snapshot";
  status.Store(nullptr, true, 1);
  EXPECT_EQ("", Names(status)) << "no root, no snapshot";
  EXPECT_EQ(nullptr, status.GetRoot());
}

TEST(HControlStatus, SetForcesAndRestorePutsBackOnlyWhatItIsAsked) {
  Tree t;
  t.form.Show();
  t.B1->SetEnabled(false);
  t.L3->SetVisible(false);
  HControlStatus status;
  status.Set(HCS_Enabled, false);  // nothing stored: nothing done
  EXPECT_TRUE(t.E->GetEnabled());
  status.Store(&t.form, true, -1);
  const auto state = [&] {
    std::string s;
    for (TControl* c : std::initializer_list<TControl*>{t.L1, t.P, t.B1, t.B2, t.L3, t.E})
      s += std::string(c->GetName().c_str()) + (c->GetVisible() ? "v" : "-") + (c->GetEnabled() ? "e " : "- ");
    return s;
  };
  const struct {
    const char* what;
    void (HControlStatus::*act)(unsigned short, bool);
    unsigned short mask;
    bool value;
    const char* state;
  } steps[] = {
      {"all disabled (not the edit: not recorded)", &HControlStatus::Set, HCS_Enabled, false,
       "L1v- Pv- B1v- B2v- L3-- Eve "},
      {"all hidden too", &HControlStatus::Set, HCS_Visible, false, "L1-- P-- B1-- B2-- L3-- Eve "},
      {"visibility back alone", nullptr, HCS_Visible, false, "L1v- Pv- B1v- B2v- L3-- Eve "},
      {"enabled back: B1 stays disabled", nullptr, HCS_Enabled, false, "L1ve Pve B1v- B2ve L3-e Eve "},
      {"both at once", &HControlStatus::Set, HCS_Visible | HCS_Enabled, true, "L1ve Pve B1ve B2ve L3ve Eve "},
      {"both back", nullptr, HCS_Visible | HCS_Enabled, false, "L1ve Pve B1v- B2ve L3-e Eve "},
  };
  for (const auto& s : steps) {
    if (s.act)
      (status.*s.act)(s.mask, s.value);
    else
      status.Restore(s.mask);
    EXPECT_EQ(s.state, state()) << s.what;
  }

  // A control freed after the snapshot is skipped; ForEach stops at false.
  delete t.B2;
  status.Set(HCS_Enabled, false);
  EXPECT_EQ("L1 L3 G - P B1", Names(status));
  struct Counter {
    int calls = 0;
    bool Count(HControlStatus*, HControlStatusStore*, unsigned long param) { return ++calls < static_cast<int>(param); }
  } counter;
  status.ForEach({&counter, &Counter::Count}, 3);
  EXPECT_EQ(3, counter.calls);
  t.form.Hide();
}

// A derived snapshot that keeps each control's text too.
struct TextRecord : HControlStatusStore {
  std::string text;
};
class TextStatus : public HControlStatus {
 protected:
  HControlStatusStore* CreateStorage() override { return new TextRecord; }
  void FillStorage(HControlStatusStore* record, TControl* control) override {
    HControlStatus::FillStorage(record, control);
    static_cast<TextRecord*>(record)->text = control->GetText().c_str();
  }
};

TEST(HControlStatus, DerivedRecordsSaveMore) {
  Tree t;
  t.B1->SetText("Run");
  TextStatus status;
  status.Store(&t.form, false, 1);
  ASSERT_EQ(4, status.Count());
  EXPECT_EQ(t.B1, status.Item(3)->Control);
  EXPECT_EQ("Run", static_cast<TextRecord*>(status.Item(3))->text);
}

}  // namespace
