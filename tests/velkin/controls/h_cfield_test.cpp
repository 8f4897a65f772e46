// The control field: binding by accept list and class chain with its two
// error texts, the property matrix over every kind of control it serves, and
// the edit-and-confirm protocol driven by keystrokes on a shown form.
#include "velkin/controls/h_cfield.h"

#include <gtest/gtest.h>

#include <commctrl.h>
#include <windows.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/vcl/core/sysutils.h"
#include "platform/vcl/forms/application.h"
#include "platform/vcl/forms/forms.h"
#include "tests/velkin/resources/string_texts.h"

namespace {

using System::AnsiString;

// A table text in the user's language and the process's code page.
std::string Table(int id) {
  for (const auto& t : string_texts::texts)
    if (t.id == id) return string_texts::InCodePage(t.text[string_texts::Column()], GetACP());
  return "(no text " + std::to_string(id) + ")";
}

std::string Raised(const std::function<void()>& call) {
  try {
    call();
  } catch (const Sysutils::Exception& e) {
    return e.Message.c_str();
  }
  return "(nothing raised)";
}

const char* const kSupported =
    "TCustomLabel;TCustomEdit;TCustomComboBox;TCustomListBox;TCustomMemo;TButtonControl;TSpeedButton;TMenu;"
    "TScrollBar;TTrackBar;TProgressBar;TCustomUpDown";

TEST(HControlField, BindsByAcceptListAndClassChainAndNamesBothInItsErrors) {
  if (const char* lcAll = std::getenv("LC_ALL"); lcAll && std::string(lcAll).rfind("ru", 0) == 0) {
    ASSERT_EQ(LANG_RUSSIAN, PRIMARYLANGID(GetUserDefaultUILanguage())) << "LC_ALL=" << lcAll;
  }
  const struct {
    std::string unsupportedAccept = Table(1001), supportedOnly = Table(1002), unsupportedClass = Table(1003);
  } t;
  Forms::TForm form(nullptr);
  auto* edit = new Stdctrls::TEdit(&form);
  edit->SetParent(&form);
  edit->SetText("typed");
  auto* memo = new Stdctrls::TMemo(&form);
  memo->SetParent(&form);
  memo->SetText("memo text");

  struct Log {
    std::string text;
    void Changed(System::TObject*, Classes::TComponent* o, Classes::TComponent* n) {
      const auto name = [](Classes::TComponent* c) { return c ? std::string(c->ClassName().c_str()) : "-"; };
      text += name(o) + ">" + name(n) + " ";
    }
  } log;
  HControlField field;
  field.SetOnControlChange({&log, &Log::Changed});
  EXPECT_EQ(kSupported, std::string(field.GetSupportedTypes().c_str()));
  EXPECT_EQ(t.unsupportedClass + "[TEdit].\n" + t.supportedOnly + ": []", Raised([&] { field.SetControl(edit); }))
      << "nothing binds before an accept list";
  EXPECT_EQ(nullptr, field.GetControl());

  field.SetAccept("TCustomEdit");
  EXPECT_EQ(t.unsupportedAccept + " [TEdit].\n" + t.supportedOnly + ": [" + kSupported + "]",
            Raised([&] { field.SetAccept("TCustomListBox;TEdit"); }))
      << "a concrete class is not a supported name";
  EXPECT_EQ("TCustomEdit", std::string(field.GetAccept().c_str())) << "the old list stays";
  EXPECT_EQ(t.unsupportedAccept + " [tcustomedit].\n" + t.supportedOnly + ": [" + kSupported + "]",
            Raised([&] { field.SetAccept("tcustomedit"); }));

  // A memo's chain holds TCustomEdit; its text comes through that branch.
  field.SetControl(memo);
  EXPECT_TRUE(field.GetTracksText());
  EXPECT_EQ("memo text", std::string(field.GetSavedText().c_str()));
  EXPECT_EQ("memo text", std::string(field.GetText().c_str()));

  // Binding the edit releases the memo's events; releasing keeps the control.
  field.SetControl(edit);
  EXPECT_FALSE(memo->GetOnKeyPress().IsSet());
  field.SetControl(nullptr);
  EXPECT_EQ(edit, field.GetControl()) << "kept after release";
  EXPECT_EQ("typed", std::string(field.GetText().c_str()));
  EXPECT_FALSE(field.GetTracksText());
  EXPECT_EQ("", std::string(field.GetSavedText().c_str()));
  EXPECT_EQ("->- ->- ->TMemo TMemo>- TMemo>TEdit TEdit>- ", log.text)
      << "a release is announced even with nothing held (the refused bind, then the first bind)";

  // A refused class releases what was bound and names the accept list.
  field.SetAccept("TMenu;TCustomLabel");
  field.SetAccept("TCustomEdit");
  field.SetControl(memo);
  Menus::TMenuItem item(nullptr);
  field.SetAccept("TMenu");
  EXPECT_EQ(t.unsupportedClass + "[TMenuItem].\n" + t.supportedOnly + ": [TMenu]",
            Raised([&] { field.SetControl(&item); }));
  EXPECT_FALSE(memo->GetOnKeyPress().IsSet()) << "released by the refused bind";
  EXPECT_EQ(memo, field.GetControl());

  // A bound TMenu matches no kind: every property is the default.
  Menus::TMainMenu menu(nullptr);
  field.SetControl(&menu);
  EXPECT_TRUE(field.GetChecked());
  EXPECT_EQ(-1, field.GetItemIndex());

  // A control freed while held is forgotten rather than left dangling.
  field.SetAccept("TCustomEdit");
  field.SetControl(edit);
  delete edit;
  EXPECT_EQ(nullptr, field.GetControl());
  EXPECT_EQ("", std::string(field.GetText().c_str()));
}

struct Counted {
  int calls = 0;
};

// Counts what reaches a control: its messages, its virtual setters and its
// repaints, to show that writing the value it already has calls nothing. The
// messages that read what the window holds are not counted: on a shown form
// the control has its window from the start, and comparing reads it.
template <class Base>
class Counting : public Base, public Counted {
 public:
  using Base::Base;
  void WndProc(Controls::TMessage& message) override {
    static constexpr UINT kReads[] = {WM_GETTEXT,   WM_GETTEXTLENGTH, BM_GETCHECK, CB_GETCURSEL,
                                      LB_GETCURSEL, TBM_GETPOS,       UDM_GETPOS,  PBM_GETPOS};
    if (std::find(std::begin(kReads), std::end(kReads), message.Msg) == std::end(kReads)) ++calls;
    Base::WndProc(message);
  }
  void SetText(const AnsiString& value) override { ++calls, Base::SetText(value); }
  void SetEnabled(bool value) override { ++calls, Base::SetEnabled(value); }
  void Invalidate() override { ++calls, Base::Invalidate(); }
};

template <class C>
std::function<Controls::TControl*(Forms::TForm*)> Make(std::function<void(C*)> setUp = nullptr) {
  return [setUp](Forms::TForm* form) {
    auto* c = new Counting<C>(form);
    c->SetParent(form);
    if (setUp) setUp(c);
    return c;
  };
}

int Calls(Controls::TControl* c) { return dynamic_cast<Counted&>(*c).calls; }

// Which of a control's events hold a handler: k the five key and focus
// events (k? when only some do), c OnClick, d OnDblClick, g OnChange, u an
// up-down's OnClick, a its OnChanging.
std::string Hooks(Controls::TControl* c) {
  std::string s;
  if (auto* w = dynamic_cast<Controls::TWinControl*>(c)) {
    const int keys = w->GetOnEnter().IsSet() + w->GetOnExit().IsSet() + w->GetOnKeyDown().IsSet() +
                     w->GetOnKeyUp().IsSet() + w->GetOnKeyPress().IsSet();
    s += keys == 0 ? "" : keys == 5 ? "k" : "k?";
  }
  if (c->GetOnClick().IsSet()) s += 'c';
  if (c->GetOnDblClick().IsSet()) s += 'd';
  bool change = false;
  if (auto* x = dynamic_cast<Stdctrls::TCustomEdit*>(c)) change = x->GetOnChange().IsSet();
  if (auto* x = dynamic_cast<Stdctrls::TCustomComboBox*>(c)) change = x->GetOnChange().IsSet();
  if (auto* x = dynamic_cast<Stdctrls::TScrollBar*>(c)) change = x->GetOnChange().IsSet();
  if (auto* x = dynamic_cast<Comctrls::TTrackBar*>(c)) change = x->GetOnChange().IsSet();
  if (change) s += 'g';
  if (auto* x = dynamic_cast<Comctrls::TCustomUpDown*>(c)) {
    if (x->GetOnClick().IsSet()) s += 'u';
    if (x->GetOnChanging().IsSet()) s += 'a';
  }
  return s;
}

// For each kind of control: binding puts the field's handlers into the kind's
// own events, chosen in a fixed order, and the control's messages then reach
// the field's OnClick and OnChange with the control as Sender; each property
// serves its kinds and gives the default elsewhere, and writing the value the
// control has already reaches nothing. Unbinding clears the same events.
TEST(HControlField, EachKindsEventsAndPropertiesAndDefaultsElsewhere) {
  Forms::TForm form(nullptr);
  form.SetBorderStyle(Forms::bsNone);
  form.SetBounds(0, 0, 300, 200);
  form.Show();
  const auto at = [](HWND w, UINT msg, int x, int y) {
    SendMessageA(w, msg, msg == WM_LBUTTONUP ? 0 : MK_LBUTTON, MAKELPARAM(x, y));
  };
  const auto click = [&](HWND w, int x, int y) {
    at(w, WM_LBUTTONDOWN, x, y);
    at(w, WM_LBUTTONUP, x, y);
  };
  const auto wnd = [](Controls::TControl* c) { return static_cast<Controls::TWinControl*>(c)->GetHandle(); };
  const auto key = [&](WORD k) { return [&, k](Controls::TControl* c) { SendMessageA(wnd(c), WM_KEYDOWN, k, 1); }; };
  const auto bmClick = [&](Controls::TControl* c) { SendMessageA(wnd(c), BM_CLICK, 0, 0); };
  const auto clickIn = [&](Controls::TControl* c) { click(wnd(c), 5, 5); };
  const auto clickOnForm = [&](Controls::TControl*) { click(form.GetHandle(), 15, 15); };
  const auto items = [](auto* c) {
    c->GetItems()->Add("one");
    c->GetItems()->Add("two");
  };
  const auto atTopLeft = [](Controls::TControl* c) { c->SetBounds(10, 10, 40, 20); };
  const struct {
    const char* name;
    std::function<Controls::TControl*(Forms::TForm*)> make;
    const char* hooks;
    std::function<void(Controls::TControl*)> fire;  // through the control's own messages
    const char* heard;
    // T ext, H int, P osition, X max, N min, C hecked, S trings, I temIndex; null: not checked
    const char* served;
  } rows[] = {
      {"label", Make<Stdctrls::TLabel>([&](auto* c) {
         c->SetAutoSize(false);
         atTopLeft(c);
       }),
       "c", clickOnForm, "click ", "TH"},
      {"edit", Make<Stdctrls::TEdit>(), "kc", clickIn, "click ", "TH"},
      {"memo", Make<Stdctrls::TMemo>(), "kc", clickIn, "click ", "TH"},
      {"drop-down combo box", Make<Stdctrls::TComboBox>(items), "kc", key(VK_DOWN), "", "THSI"},
      {"drop-down list", Make<Stdctrls::TComboBox>([&](auto* c) {
         items(c);
         c->SetStyle(Stdctrls::csDropDownList);
       }),
       "kcg", key(VK_DOWN), "change ", nullptr},
      {"list box", Make<Stdctrls::TListBox>(items), "kcd",
       [&](Controls::TControl* c) {
         click(wnd(c), 5, 5);
         at(wnd(c), WM_LBUTTONDBLCLK, 5, 5);
         at(wnd(c), WM_LBUTTONUP, 5, 5);
       },
       "click change ", "HSI"},
      {"check box", Make<Stdctrls::TCheckBox>(), "kc", bmClick, "click ", "THC"},
      {"radio button", Make<Stdctrls::TRadioButton>(), "kc", bmClick, "click ", "THC"},
      {"button", Make<Stdctrls::TButton>(), "kc", bmClick, "click ", "TH"},
      {"speed button", Make<Buttons::TSpeedButton>([&](auto* c) {
         atTopLeft(c);
         c->SetGroupIndex(1);  // so that it can stay down
         c->SetAllowAllUp(true);
       }),
       "c", clickOnForm, "click ", "THC"},
      {"scroll bar", Make<Stdctrls::TScrollBar>(), "kg", key(VK_RIGHT), "change ", "HPXN"},
      {"track bar", Make<Comctrls::TTrackBar>(), "kg", key(VK_RIGHT), "change ", "HPXN"},
      {"progress bar", Make<Comctrls::TProgressBar>(), "k", nullptr, "", "HPXN"},
      {"up-down", Make<Comctrls::TUpDown>(), "kua", [&](Controls::TControl* c) { click(wnd(c), 8, 2); },
       "change click ", "HPXN"},  // OnChanging, then OnClick once it moved
  };

  // The events the field raises, and whether the control is their Sender.
  struct Heard {
    Controls::TControl* control = nullptr;
    std::string log;
    void Add(const std::string& what, System::TObject* sender) {
      const std::string entry = what + (sender == control ? " " : "(not the control) ");
      if (!log.ends_with(entry)) log += entry;  // a control may report one change twice
    }
    void Click(System::TObject* sender) { Add("click", sender); }
    void Change(System::TObject* sender) { Add("change", sender); }
  } heard;
  HControlField field;
  field.SetAccept(
      "TCustomLabel;TCustomEdit;TCustomComboBox;TCustomListBox;TButtonControl;TSpeedButton;TScrollBar;TTrackBar;"
      "TProgressBar;TCustomUpDown");

  // Unbound: the defaults.
  EXPECT_EQ("", std::string(field.GetText().c_str()));
  EXPECT_TRUE(field.GetChecked());
  EXPECT_TRUE(field.GetDown());
  EXPECT_EQ(-1, field.GetItemIndex());
  EXPECT_TRUE(field.GetEnabled());
  EXPECT_TRUE(field.GetVisible());
  EXPECT_EQ(nullptr, field.GetStrings());

  field.SetOnClick({&heard, &Heard::Click});
  field.SetOnChange({&heard, &Heard::Change});
  for (const auto& r : rows) {
    SCOPED_TRACE(r.name);
    Controls::TControl* c = r.make(&form);
    heard.control = c;
    heard.log.clear();
    EXPECT_EQ("", Hooks(c)) << "before binding";
    field.SetControl(c);
    ASSERT_EQ(c, field.GetControl());
    EXPECT_EQ(r.hooks, Hooks(c)) << "bound";

    const int start = Calls(c);
    field.SetText(field.GetText());
    field.SetHint(field.GetHint());
    field.SetPosition(field.GetPosition());
    field.SetMax(field.GetMax());
    field.SetMin(field.GetMin());
    field.SetChecked(field.GetChecked());
    field.SetItemIndex(field.GetItemIndex());
    field.SetEnabled(field.GetEnabled());
    field.SetVisible(field.GetVisible());
    EXPECT_EQ(start, Calls(c)) << "an equal value reached the control";

    if (r.fire) r.fire(c);
    EXPECT_EQ(r.heard, heard.log);
    if (auto* combo = dynamic_cast<Stdctrls::TComboBox*>(c)) {
      EXPECT_EQ(0, combo->GetItemIndex()) << "the key chose an item";
    }
    if (auto* upDown = dynamic_cast<Comctrls::TUpDown*>(c)) {
      EXPECT_EQ(1, upDown->GetPosition()) << "AllowChange left as given";
      for (bool allow : {false, true}) {
        bool given = allow;
        field.idUpDownChanging(c, given);
        EXPECT_EQ(allow, given) << "AllowChange untouched";
      }
    }

    if (r.served) {
      const std::string served = r.served;
      const auto serves = [&](char p) { return served.find(p) != std::string::npos; };
      const std::string before = c->GetText().c_str();
      field.SetText("new text");
      EXPECT_EQ(serves('T') ? "new text" : before, std::string(c->GetText().c_str()));
      EXPECT_EQ(serves('T') ? "new text" : "", std::string(field.GetText().c_str()));

      field.SetHint("a hint");
      EXPECT_EQ(serves('H') ? "a hint" : "", std::string(c->GetHint().c_str()));
      EXPECT_EQ(serves('H') ? "a hint" : "", std::string(field.GetHint().c_str()));

      field.SetMin(5);
      field.SetMax(60);
      field.SetPosition(25);
      EXPECT_EQ(serves('N') ? 5 : 0, field.GetMin());
      EXPECT_EQ(serves('X') ? 60 : 0, field.GetMax());
      EXPECT_EQ(serves('P') ? 25 : 0, field.GetPosition());

      const bool checkedBefore = field.GetChecked();
      field.SetChecked(!checkedBefore);
      EXPECT_EQ(serves('C') ? !checkedBefore : true, field.GetChecked());
      EXPECT_EQ(field.GetChecked(), field.GetDown()) << "Down is Checked";
      field.SetDown(checkedBefore);
      EXPECT_EQ(serves('C') ? checkedBefore : true, field.GetChecked());

      EXPECT_EQ(serves('S'), field.GetStrings() != nullptr);
      if (serves('S')) {
        Classes::TStrings* list = field.GetStrings();
        field.SetStrings(nullptr);
        EXPECT_EQ(list, field.GetStrings()) << "lists are not replaced";
      }
      field.SetItemIndex(1);
      EXPECT_EQ(serves('I') ? 1 : -1, field.GetItemIndex());
    }

    field.SetEnabled(false);
    EXPECT_FALSE(c->GetEnabled());
    EXPECT_FALSE(field.GetEnabled());
    field.SetVisible(false);
    EXPECT_FALSE(c->GetVisible());
    field.SetEnabled(true);
    field.SetVisible(true);
    EXPECT_TRUE(c->GetEnabled() && c->GetVisible());
    field.SetControl(nullptr);
    EXPECT_EQ("", Hooks(c)) << "unbound";
    delete c;
  }
}

TEST(HControlField, RangeValuesKeepTheControlsWidths) {
  Forms::TForm form(nullptr);
  auto* upDown = new Comctrls::TUpDown(&form);
  upDown->SetParent(&form);
  auto* progress = new Counting<Comctrls::TProgressBar>(&form);
  progress->SetParent(&form);
  progress->GetHandle();  // so that a write reaches the window
  HControlField field;
  field.SetAccept("TCustomUpDown;TProgressBar");

  field.SetControl(upDown);
  field.SetMin(-70000);  // low 16 bits: 0xEE90
  field.SetMax(70000);   // low 16 bits: 0x1170
  EXPECT_EQ(-4464, upDown->GetMin());
  EXPECT_EQ(4464, upDown->GetMax());
  EXPECT_EQ(-4464, field.GetMin()) << "read sign-extended";
  field.SetPosition(-2);
  EXPECT_EQ(-2, field.GetPosition());

  // Whole values are compared: 70000 is kept as 4464, so setting it again
  // writes again, while 4464 is already there.
  field.SetControl(progress);
  field.SetMax(70000);
  EXPECT_EQ(4464, progress->GetMax()) << "written as the low 16 bits, sign-extended";
  int calls = progress->calls;
  field.SetMax(70000);
  EXPECT_LT(calls, progress->calls) << "70000 differs from the 4464 held";
  calls = progress->calls;
  field.SetMax(4464);
  EXPECT_EQ(calls, progress->calls) << "4464 is held already";
  field.SetMax(40000);
  EXPECT_EQ(40000 - 65536, progress->GetMax()) << "sign-extended";
  field.SetControl(nullptr);
}

// Keystrokes as the keyboard delivers them to the window that had the focus
// when typing began: key down and key up through the application's message
// loop, which makes the characters. (Another program may take the focus
// meanwhile; the keys still reach the same window.)
HWND typingTo = nullptr;
void Press(WORD key) {
  HWND w = typingTo;
  PostMessageA(w, WM_KEYDOWN, key, 1);
  PostMessageA(w, WM_KEYUP, key, 0xC0000001);
  Forms::Application->ProcessMessages();
}

void Type(const std::string& text) {
  for (char c : text) Press(static_cast<WORD>(VkKeyScanA(c) & 0xFF));
}

TEST(HControlField, TypedTextIsVettedConfirmedByEnterAndRevertedByEscape) {
  Forms::TForm form(nullptr);
  form.SetBounds(100, 100, 300, 140);
  auto* edit = new Stdctrls::TEdit(&form);
  edit->SetParent(&form);
  edit->SetBounds(10, 10, 200, 23);
  auto* combo = new Stdctrls::TComboBox(&form);
  combo->SetParent(&form);
  combo->SetBounds(10, 50, 200, 23);
  auto* other = new Stdctrls::TButton(&form);
  other->SetParent(&form);
  other->SetBounds(10, 80, 75, 25);
  form.Show();
  SetForegroundWindow(form.GetHandle());

  struct Watcher {
    std::string log;
    bool refuseText = false;
    bool Accept(System::TObject*, Classes::TComponent*, const AnsiString& text) {
      if (text.Length() == 1) return !(text[1] >= '0' && text[1] <= '9');  // no digits
      log += "accept(" + std::string(text.c_str()) + ") ";
      return !refuseText;
    }
    void Changed(System::TObject* sender) { log += sender == field ? "change " : "change(control) "; }
    void KeyPress(System::TObject* sender, char& key) {
      if (sender == field && key < ' ') log += "key" + std::to_string(static_cast<int>(key)) + " ";
    }
    void Entered(System::TObject* sender) { log += sender == field ? "enter " : "enter(control) "; }
    void Exited(System::TObject* sender) { log += sender == field ? "exit " : "exit(control) "; }
    HControlField* field = nullptr;
  };

  for (Controls::TWinControl* target : std::vector<Controls::TWinControl*>{edit, combo}) {
    const std::string what = target == edit ? "edit" : "combo box";
    HControlField field;
    Watcher w;
    w.field = &field;
    field.SetAccept("TCustomEdit;TCustomComboBox");
    target->SetText("start");
    field.SetControl(target);
    field.SetOnAccept({&w, &Watcher::Accept});
    field.SetOnChange({&w, &Watcher::Changed});
    field.SetOnKeyPress({&w, &Watcher::KeyPress});
    field.SetOnEnter({&w, &Watcher::Entered});
    other->SetFocus();
    target->SetFocus();
    Forms::Application->ProcessMessages();
    EXPECT_EQ("enter ", w.log) << what;
    EXPECT_EQ("start", std::string(field.GetSavedText().c_str())) << what;

    typingTo = GetFocus();
    ASSERT_TRUE(typingTo == target->GetHandle() || IsChild(target->GetHandle(), typingTo)) << what;
    SendMessageA(typingTo, EM_SETSEL, 0, -1);
    Type("a1b2");
    EXPECT_EQ("ab", std::string(target->GetText().c_str())) << what << ": digits dropped";
    Press(VK_RETURN);
    EXPECT_EQ("enter key0 key0 accept(ab) change key0 ", w.log) << what << ": Enter swallowed";
    EXPECT_EQ("ab", std::string(field.GetSavedText().c_str())) << what;

    w.log.clear();
    Type("cd");
    w.refuseText = true;
    Press(VK_RETURN);
    EXPECT_EQ("accept(abcd) key0 ", w.log) << what;
    EXPECT_EQ("ab", std::string(target->GetText().c_str())) << what << ": refused text reverted";

    w.log.clear();
    Type("zz");
    Press(VK_ESCAPE);
    EXPECT_EQ("ab", std::string(target->GetText().c_str())) << what << ": Escape reverted";
    EXPECT_EQ("key27 ", w.log) << what << ": Escape passed on";
    EXPECT_FALSE(field.GetModified());

    // Text that a derived field marked Modified is vetted as the focus leaves.
    field.SetOnExit({&w, &Watcher::Exited});
    for (bool refuse : {true, false}) {
      target->SetFocus();
      Forms::Application->ProcessMessages();
      SendMessageA(typingTo, EM_SETSEL, 100, 100);
      Type("e");
      w.log.clear();
      w.refuseText = refuse;
      field.SetModified(true);
      other->SetFocus();
      Forms::Application->ProcessMessages();
      EXPECT_EQ(refuse ? "accept(abe) exit " : "accept(abe) change exit ", w.log) << what;
      EXPECT_EQ(refuse ? "ab" : "abe", std::string(target->GetText().c_str())) << what;
      EXPECT_EQ(refuse ? "ab" : "abe", std::string(field.GetSavedText().c_str())) << what;
      EXPECT_FALSE(field.GetModified()) << what;
    }
    field.SetControl(nullptr);
  }
}

}  // namespace
