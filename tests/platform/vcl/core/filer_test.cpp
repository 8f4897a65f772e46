// Component streaming: a form with one of many controls written and read back
// into another instance with every published value, its fields, events,
// references, menu and string lists; malformed streams refused with the
// component and property named and nothing left behind; nesting past the
// limit refused by every reader, within a worker thread's stack; a design
// made at another screen density scaled when it is read; texts of any script
// written in one code page and read in another, strings of older writers and
// damaged ones read without harm (these run again under the Cyrillic code
// page and in a program whose code page is UTF-8).
#include "platform/vcl/core/filer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "platform/ostrel/owned_handle.h"
#include "platform/vcl/core/class_registry.h"
#include "platform/vcl/core/object_text.h"
#include "platform/vcl/forms/application.h"
#include "platform/vcl/forms/forms.h"
#include "platform/vcl/forms/menus.h"
#include "platform/vcl/stdctrls/com_ranges.h"
#include "platform/vcl/stdctrls/ext_panels.h"
#include "platform/vcl/stdctrls/std_buttons.h"
#include "platform/vcl/stdctrls/std_edits.h"
#include "platform/vcl/stdctrls/std_label.h"
#include "platform/vcl/stdctrls/std_lists.h"
#include "tests/platform/vcl/test_helpers.h"

// A designed form: fields for the controls it refers to, a published handler.
class TStreamedForm : public Forms::TForm {
  VCL_CLASS();

 public:
  using TForm::TForm;
  Extctrls::TPanel* Panel1 = nullptr;
  Stdctrls::TButton* OkButton = nullptr;
  Stdctrls::TEdit* NameEdit = nullptr;
  int clicks = 0;
  void OkClick(System::TObject*) { ++clicks; }
  // Floating-point values of both kinds.
  double GetRatio() const { return ratio_; }
  void SetRatio(double value) { ratio_ = value; }
  System::TDateTime GetDue() const { return due_; }
  void SetDue(System::TDateTime value) { due_ = value; }

 private:
  double ratio_ = 0;
  System::TDateTime due_;
};
VCL_COMPONENT_IMPL(TStreamedForm, Forms::TForm, VCL_FIELD(Panel1), VCL_FIELD(OkButton), VCL_FIELD(NameEdit),
                   VCL_METHOD(OkClick, System::TNotifyEvent), VCL_PROPERTY(Ratio), VCL_PROPERTY(Due))

namespace {

using namespace Classes;
using namespace Typinfo;
using namespace vcl_test;

// Every stored published value of a persistent object, sub-objects
// flattened, references and handlers by name: "Caption='OK' Font.Height=-13".
std::string Values(TPersistent* p, TComponent* root, const std::string& prefix = "") {
  std::string out;
  for (const TPropInfo* prop : GetPropList(p->ClassType())) {
    if (prop->Stored && !prop->Stored(p)) continue;  // follows its parent
    const std::string name = prefix + prop->Name;
    switch (prop->Kind()) {
      case tkClass: {
        TObject* o = GetObjectProp(p, prop);
        if (auto* c = dynamic_cast<TComponent*>(o))
          out += name + "=" + Str(c->GetName()) + " ";
        else if (auto* sub = dynamic_cast<TPersistent*>(o))
          out += Values(sub, root, name + ".");
        break;
      }
      case tkMethod:
        out += name + "=" + Str(MethodName(root, GetMethodProp(p, prop))) + " ";
        break;
      case tkFloat: {
        char exact[40];
        std::snprintf(exact, sizeof exact, "%.17g", GetFloatProp(p, prop));
        out += name + "=" + exact + " ";
        break;
      }
      case tkLString:
        out += name + "='" + Str(GetStrProp(p, prop)) + "' ";
        break;
      default:
        out += name + "=" + std::to_string(GetOrdProp(p, prop)) + " ";
    }
  }
  if (auto* strings = dynamic_cast<TStrings*>(p)) out += prefix + "Text='" + Str(strings->GetText()) + "' ";
  return out;
}

// The values of root and of everything it owns, one line a component, in
// the order of their names.
std::string Tree(TComponent* root) {
  std::vector<std::string> lines;
  for (int i = 0; i < root->GetComponentCount(); ++i) {
    TComponent* c = root->GetComponent(i);
    auto* parent = c->GetParentComponent();
    lines.push_back(Str(c->GetName()) + " in " + (parent ? Str(parent->GetName()) : "-") + ": " + Values(c, root));
  }
  std::sort(lines.begin(), lines.end());
  std::string out = Str(root->GetName()) + ": " + Values(root, root) + "\n";
  for (const auto& l : lines) out += l + "\n";
  return out;
}

template <class C>
C* Named(TComponent* owner, Controls::TWinControl* parent, const char* name) {
  C* c = Make<C>(owner, parent);
  c->SetName(name);
  return c;
}

// A form with something of every kind of value.
void Design(TStreamedForm& f) {
  f.SetName("Designed");
  f.SetCaption("Order \xC7\xE0\xEA\xE0\xE7");  // letters of the code page beyond ASCII
  f.SetBorderStyle(Forms::bsDialog);
  f.SetRatio(-1.0 / 3);
  f.SetDue(System::TDateTime(46000.75));
  f.SetTag(-100000);
  f.SetBorderIcons(Forms::TBorderIcons{Forms::biSystemMenu});
  f.SetClientWidth(320);
  f.SetClientHeight(200);
  f.SetColor(Graphics::clWindow);
  f.GetFont()->SetHeight(-13);
  f.GetFont()->SetStyle(Graphics::TFontStyles{Graphics::fsBold});
  f.Panel1 = Named<Extctrls::TPanel>(&f, &f, "Panel1");
  f.Panel1->SetAlign(Controls::alBottom);
  f.Panel1->SetHeight(40);
  f.Panel1->SetColor(static_cast<Graphics::TColor>(0x123456));
  f.OkButton = Named<Stdctrls::TButton>(&f, f.Panel1, "OkButton");
  f.OkButton->SetText("&OK");
  f.OkButton->SetDefault(true);
  f.OkButton->SetModalResult(Controls::mrOk);
  f.OkButton->SetOnClick({&f, &TStreamedForm::OkClick});
  f.NameEdit = Named<Stdctrls::TEdit>(&f, &f, "NameEdit");
  f.NameEdit->SetBounds(90, 10, 200, 21);
  f.NameEdit->SetText("it's a name");
  f.NameEdit->SetMaxLength(40);
  auto* label = Named<Stdctrls::TLabel>(&f, &f, "NameLabel");
  label->SetText("&Name:");
  label->SetFocusControl(f.NameEdit);
  auto* combo = Named<Stdctrls::TComboBox>(&f, &f, "Kind");
  combo->SetStyle(Stdctrls::csDropDownList);
  combo->GetItems()->SetText("first\r\nsecond\r\nthird");
  combo->SetItemIndex(1);
  auto* memo = Named<Stdctrls::TMemo>(&f, &f, "Notes");
  memo->GetLines()->SetText(AnsiString(std::string(300, 'x').c_str()) + "\r\nshort");
  auto* check = Named<Stdctrls::TCheckBox>(&f, &f, "Maybe");
  check->SetAllowGrayed(true);
  check->SetState(Stdctrls::cbGrayed);
  auto* track = Named<Comctrls::TTrackBar>(&f, &f, "Level");
  track->SetMax(20);
  track->SetPosition(15);
  auto* menu = Named<Menus::TMainMenu>(&f, nullptr, "MainMenu1");
  auto* file = Named<Menus::TMenuItem>(&f, nullptr, "FileItem");
  file->SetCaption("&File");
  menu->GetItems()->Add(file);
  auto* exit = Named<Menus::TMenuItem>(&f, nullptr, "ExitItem");
  exit->SetCaption("E&xit");
  exit->SetShortCut(Menus::scAlt | VK_F4);
  exit->SetOnClick({&f, &TStreamedForm::OkClick});
  file->Add(exit);
  f.SetMenu(menu);
  f.SetActiveControl(f.NameEdit);
}

TEST(TStream, AFormWrittenAndReadBackIsTheSameForm) {
  TStreamedForm original(nullptr);
  Design(original);
  TMemoryStream stream;
  stream.WriteComponent(&original);

  TStreamedForm copy(nullptr);
  stream.SetPosition(0);
  EXPECT_EQ(&copy, stream.ReadComponent(&copy));
  EXPECT_EQ(stream.GetSize(), stream.GetPosition()) << "read to the end";
  EXPECT_EQ(Tree(&original), Tree(&copy));

  // The copy is bound to itself: fields, handlers, references, real windows.
  ASSERT_NE(nullptr, copy.OkButton);
  EXPECT_EQ(copy.NameEdit, copy.GetActiveControl());
  SendMessageA(copy.OkButton->GetHandle(), BM_CLICK, 0, 0);
  EXPECT_EQ(1, copy.clicks) << "OnClick bound to the copy's OkClick";
  EXPECT_EQ(0, original.clicks);
  EXPECT_EQ("Order \xC7\xE0\xEA\xE0\xE7", WindowText(copy.GetHandle()));
  EXPECT_NE(nullptr, GetMenu(copy.GetHandle())) << "the menu is the form's menu bar";
  for (TComponent* c : {static_cast<TComponent*>(&original), static_cast<TComponent*>(&copy)})
    EXPECT_FALSE(c->GetComponentState().Contains(csLoading) || c->GetComponentState().Contains(csReading));

  // A stream without a root instance makes one of the class it names.
  Classes::RegisterClasses({TStreamedForm::StaticClass()});
  const int forms = Forms::Screen->GetFormCount();
  stream.SetPosition(0);
  TComponent* made = stream.ReadComponent(nullptr);
  ASSERT_NE(nullptr, made);
  EXPECT_EQ("TStreamedForm", Str(made->ClassName()));
  EXPECT_EQ("Designed", Str(made->GetName())) << "no owner, no other name to avoid";
  delete made;
  EXPECT_EQ(forms, Forms::Screen->GetFormCount());
  Classes::UnRegisterClass(TStreamedForm::StaticClass());
}

// Gives every writable published value of c another value of its kind.
void Mutate(TComponent* c) {
  for (const TPropInfo* prop : GetPropList(c->ClassType())) {
    const std::string name = prop->Name;
    if (name == "Name" || (name == "Visible" && dynamic_cast<Forms::TCustomForm*>(c))) continue;
    const TTypeInfo* type = prop->PropType();
    switch (prop->Kind()) {
      case tkInteger:
        if (prop->SetOrd)
          SetOrdProp(c, prop, type->IntToIdent ? static_cast<int>(Graphics::clHighlight) : GetOrdProp(c, prop) + 3);
        break;
      case tkEnumeration:
        if (prop->SetOrd) SetOrdProp(c, prop, (GetOrdProp(c, prop) + 1) % (type->MaxValue + 1));
        break;
      case tkSet:  // the first and the last member change: both ends of the range are written
        if (prop->SetOrd)
          SetOrdProp(c, prop,
                     GetOrdProp(c, prop) ^ (1LL << type->CompType->MinValue) ^ (1LL << type->CompType->MaxValue));
        break;
      case tkFloat:
        if (prop->SetFloat) SetFloatProp(c, prop, GetFloatProp(c, prop) + 0.5);
        break;
      case tkLString:
        if (prop->SetStr) SetStrProp(c, prop, "x" + GetStrProp(c, prop));
        break;
      default:
        break;
    }
  }
}

TEST(TStream, EveryStandardClassRoundTripsItsPublishedValues) {
  for (const char* name : kStandardClasses) {
    const System::TMetaClass* cls = FindClass(name);
    TComponent owner(nullptr);
    // Fresh: only what differs from a default is written, and an ordinal
    // without a default always is, zero too (Left).
    TComponent* fresh = CreateComponent(cls, &owner);
    TMemoryStream stream;
    stream.WriteComponent(fresh);
    const std::string bytes = Bytes(stream);
    for (const TPropInfo* prop : GetPropList(cls)) {
      const bool written =
          bytes.find(std::string(1, static_cast<char>(std::strlen(prop->Name))) + prop->Name) != std::string::npos;
      if (prop->HasDefault && IsDefaultPropValue(fresh, prop)) {
        EXPECT_FALSE(written) << name << "." << prop->Name << " holds its default and is not written";
      } else if (!prop->HasDefault && prop->SetOrd && prop->Kind() != tkMethod && std::strcmp(prop->Name, "Name") &&
                 !(prop->Stored && !prop->Stored(fresh))) {
        EXPECT_TRUE(written) << name << "." << prop->Name << " has no default and is written";
      }
    }

    // Changed and nameless: read into a new instance, every value comes back.
    TComponent* sample = CreateComponent(cls, &owner);
    sample->SetName("Sample");
    Mutate(sample);
    sample->SetName("");
    TComponent* copy = CreateComponent(cls, &owner);
    ReadBack(sample, copy);
    EXPECT_EQ(Values(sample, sample), Values(copy, copy)) << name;
    EXPECT_TRUE(copy->GetName().IsEmpty()) << name;
  }
}

// The binary stream of a text description of a form F.
std::string FromText(const std::string& body) {
  return Convert(&ObjectTextToBinary, "object F: TStreamedForm\n" + body + "end\n");
}

// The stream of a form F holding nameless components of class cls nested
// levels deep, the form the first level.
std::string NestedComponents(int levels, const std::string& cls) {
  std::string b("TPF0\x0DTStreamedForm\1F", 21);  // the NUL ends F's properties
  for (int i = 1; i < levels; ++i) b += static_cast<char>(cls.size()) + cls + std::string(2, '\0');
  return b + std::string(static_cast<size_t>(levels), '\0');
}

TEST(TReader, MalformedStreamsNameWhatFailedAndLeaveNothingBehind) {
  TStreamedForm good(nullptr);
  Design(good);
  TMemoryStream valid;
  valid.WriteComponent(&good);
  const std::string bytes = Bytes(valid);
  const auto patched = [&](const std::string& from, const std::string& to) {
    std::string b = bytes;
    const size_t at = b.find(from);
    EXPECT_NE(std::string::npos, at) << from;
    if (at != std::string::npos) b.replace(at, from.size(), to);
    return b;
  };
  const struct {
    const char* what;
    std::string bytes;
    const char* message;
  } cases[] = {
      {"wrong signature", "TPF1" + bytes.substr(4), "Invalid stream format"},
      {"unknown class", patched("TComboBox", "TCombiBox"), "Class TCombiBox not found"},
      {"unknown property", patched("MaxLength", "MaxLangth"),
       "Error reading Designed.NameEdit.MaxLangth: Property MaxLangth does not exist"},
      {"unknown sub-object", patched("Font.Height", "Fant.Height"),
       "Error reading Designed.Fant.Height: Property Fant does not exist"},
      {"a number for a string", FromText("Caption = 5\n"), "Error reading F.Caption: Invalid property value"},
      {"an unknown enumeration value", FromText("BorderStyle = bsRound\n"),
       "Error reading F.BorderStyle: Invalid property value"},
      {"a handler the form does not publish", FromText("object OkButton: TButton\nOnClick = CancelClick\nend\n"),
       "Error reading F.OkButton.OnClick: Method CancelClick not found in TStreamedForm"},
      {"a reference to nothing", FromText("ActiveControl = Ghost\nobject NameEdit: TEdit\nend\n"),
       "Error reading F.ActiveControl: Unresolved reference to Ghost"},
      {"a field of another class", FromText("object Panel1: TPanel\nobject OkButton: TLabel\nend\nend\n"),
       "Error reading F.OkButton: Field OkButton of TStreamedForm cannot hold a TLabel"},
      {"cut after the first child", bytes.substr(0, bytes.find("TButton") + 12),
       "Error reading Designed.Panel1: Stream read error"},
      {"components nested 4,000 deep", NestedComponents(4000, "TPanel"),
       "Error reading F.TPanel: Components nested deeper than 256 levels"},
      {"a NUL in a class name", patched("\x09TComboBox", std::string("\x09TComboBo") + '\0'),
       "Error reading Designed: Name TComboBo#0 holds a NUL character"},
      {"a NUL in a property name", patched("MaxLength", std::string("MaxLeng") + '\0' + "h"),
       "Error reading Designed.NameEdit: Name MaxLeng#0h holds a NUL character"},
      {"two components of one class with one name",
       FromText("object Panel1: TPanel\nobject OkButton: TButton\nend\nend\nobject OkButton: TButton\nend\n"),
       "Error reading F.OkButton: A component named OkButton already exists"},
  };
  for (const auto& c : cases) {
    const int windows = ThreadWindows();
    {
      TMemoryStream s;
      Load(s, c.bytes);
      TStreamedForm target(nullptr);
      const int forms = Forms::Screen->GetFormCount();
      std::string message;
      try {
        s.ReadComponent(&target);
      } catch (const EReadError& e) {
        message = Str(e.Message);
      } catch (const EClassNotFound& e) {
        message = Str(e.Message);
      }
      EXPECT_EQ(c.message, message) << c.what;
      EXPECT_EQ(0, target.GetComponentCount()) << c.what << ": what was made is freed";
      EXPECT_EQ(0, target.GetControlCount()) << c.what;
      EXPECT_EQ(nullptr, target.OkButton) << c.what << ": no field points at a freed control";
      EXPECT_EQ(nullptr, target.Panel1) << c.what;
      EXPECT_FALSE(target.GetComponentState().Contains(csLoading)) << c.what;
      EXPECT_EQ(forms, Forms::Screen->GetFormCount()) << c.what;
    }
    EXPECT_EQ(windows, ThreadWindows()) << c.what << ": every window made is gone";
  }

  // A small form cut at every byte: each cut fails cleanly, with as many
  // forms and windows afterwards as before.
  Classes::RegisterClasses({TStreamedForm::StaticClass()});
  TStreamedForm small(nullptr);
  small.SetName("Small");
  small.OkButton = Named<Stdctrls::TButton>(&small, &small, "OkButton");
  small.OkButton->SetText("OK");
  small.OkButton->SetOnClick({&small, &TStreamedForm::OkClick});
  TMemoryStream whole;
  whole.WriteComponent(&small);
  const std::string smallBytes = Bytes(whole);
  const int forms = Forms::Screen->GetFormCount(), windows = ThreadWindows();
  for (size_t n = 0; n < smallBytes.size(); ++n) {
    TMemoryStream s;
    Load(s, smallBytes.substr(0, n));
    EXPECT_THROW(s.ReadComponent(nullptr), EReadError) << "cut at " << n;
    TStreamedForm into(nullptr);
    s.SetPosition(0);
    EXPECT_THROW(s.ReadComponent(&into), EReadError) << "cut at " << n;
    EXPECT_EQ(0, into.GetComponentCount()) << "cut at " << n;
  }
  EXPECT_EQ(forms, Forms::Screen->GetFormCount()) << "every root made for a failed read is freed";
  EXPECT_EQ(windows, ThreadWindows()) << "and every window";
  Classes::UnRegisterClass(TStreamedForm::StaticClass());
}

// What each reader and converter makes of input nested levels deep: "ok" or
// its error's message, and what a failed read left behind.
std::string NestingOutcome(int levels) {
  const std::string components = NestedComponents(levels, "TPanel");
  std::string objects = "object F: TStreamedForm\n";
  for (int i = 1; i < levels; ++i) objects += "object TPanel\n";
  for (int i = 0; i < levels; ++i) objects += "end\n";
  const std::string lists =
      std::string(static_cast<size_t>(levels), '(') + std::string(static_cast<size_t>(levels), ')');
  const std::string listBytes =
      std::string(static_cast<size_t>(levels), vaList) + std::string(static_cast<size_t>(levels), vaNull);
  // A component F, nameless, whose property P holds the lists.
  const std::string listStream = std::string("TPF0\1F\0\1P", 9) + listBytes + std::string(2, '\0');
  const auto read = [](const std::string& bytes, TComponent* root, TComponent* owner) {
    TMemoryStream s;
    Load(s, bytes);
    TReader reader(&s);
    return reader.ReadRootComponent(root, owner);
  };
  std::string left;
  const std::pair<const char*, std::function<void()>> paths[] = {
      {"into a form",
       [&] {
         TStreamedForm form(nullptr);
         try {
           read(components, &form, nullptr);
         } catch (...) {
           if (form.GetComponentCount()) left += " (components left in the form)";
           throw;
         }
       }},
      {"new root",
       [&] {
         TComponent owner(nullptr);
         try {
           delete read(components, nullptr, &owner);
         } catch (...) {
           if (owner.GetComponentCount()) left += " (a root left)";
           throw;
         }
       }},
      {"to text", [&] { Convert(&ObjectBinaryToText, components); }},
      {"to binary", [&] { Convert(&ObjectTextToBinary, objects); }},
      {"lists to text", [&] { Convert(&ObjectBinaryToText, listStream); }},
      {"lists to binary", [&] { Convert(&ObjectTextToBinary, "object F: TF\n  P = " + lists + "\nend\n"); }},
      {"lists skipped",
       [&] {
         TMemoryStream s;
         Load(s, listBytes);
         TReader(&s).SkipValue();
       }},
  };
  std::string out;
  for (const auto& [what, run] : paths) {
    left.clear();
    std::string result = "ok";
    try {
      run();
    } catch (const EReadError& e) {
      result = Str(e.Message);
    } catch (const EParserError& e) {
      result = Str(e.Message);
    }
    out += std::string(what) + ": " + result + left + "\n";
  }
  return out;
}

// Runs work on a thread made with a 256 KB stack; false when the thread died
// or did not end in time. Wine gives a thread at least 1 MB whatever is asked:
// what is above the asked size is taken up first.
bool OnSmallStack(const std::function<void()>& work) {
  constexpr size_t kStack = 256 * 1024;
  struct Job {
    const std::function<void()>& work;
    bool done = false;
  } job{work};
  const auto run = [](void* p) -> DWORD {
    auto* job = static_cast<Job*>(p);
    MEMORY_BASIC_INFORMATION stack{};
    VirtualQuery(&stack, &stack, sizeof stack);
    char* const top = static_cast<char*>(stack.BaseAddress) + stack.RegionSize;
    const auto size = static_cast<size_t>(top - static_cast<char*>(stack.AllocationBase));
    if (size > kStack) static_cast<volatile char*>(__builtin_alloca(size - kStack))[0] = 0;
    job->work();
    job->done = true;
    return 0;
  };
  const OwnedKernelHandle thread(CreateThread(nullptr, kStack, run, &job, STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr));
  if (WaitForSingleObject(thread.get(), 60000) != WAIT_OBJECT_0) {
    TerminateThread(thread.get(), 1);
    return false;
  }
  return job.done;
}

// Components and lists nested as deep as streams may nest them are read,
// converted and skipped by every reader, one level more is refused by each
// with its own error naming the limit, and so is a nesting of thousands,
// all of it within the stack of a worker thread.
TEST(TReader, NestingPastTheLimitIsRefusedByEveryReaderWithinASmallStack) {
  Classes::RegisterClasses({TStreamedForm::StaticClass()});
  std::string atLimit, past, deep;
  ASSERT_TRUE(OnSmallStack([&] {
    atLimit = NestingOutcome(MaxStreamNesting);
    past = NestingOutcome(MaxStreamNesting + 1);
    deep = NestingOutcome(4000);
  })) << "the stack overflowed";
  Classes::UnRegisterClass(TStreamedForm::StaticClass());
  EXPECT_EQ(
      "into a form: ok\nnew root: ok\nto text: ok\nto binary: ok\nlists to text: ok\nlists to binary: ok\n"
      "lists skipped: ok\n",
      atLimit);
  const std::string refused =
      "into a form: Error reading F.TPanel: Components nested deeper than 256 levels\n"
      "new root: Error reading F.TPanel: Components nested deeper than 256 levels\n"
      "to text: Components nested deeper than 256 levels\n"
      "to binary: Line 257: objects nested deeper than 256 levels\n"
      "lists to text: Lists nested deeper than 256 levels\n"
      "lists to binary: Line 2: lists nested deeper than 256 levels\n"
      "lists skipped: Lists nested deeper than 256 levels\n";
  EXPECT_EQ(refused, past);
  EXPECT_EQ(refused, deep);
}

// A string value as it is written: its type, its length and its bytes.
std::string Value(TValueType type, const std::string& bytes) {
  const int n = static_cast<int>(type == vaWString ? bytes.size() / 2 : bytes.size());
  return std::string(1, static_cast<char>(type)) + std::string(reinterpret_cast<const char*>(&n), 4) + bytes;
}

std::string Encoded(UINT codePage, const std::wstring& w) {
  std::string s(w.size() * 4, '\0');
  s.resize(static_cast<size_t>(WideCharToMultiByte(codePage, 0, w.data(), static_cast<int>(w.size()), s.data(),
                                                   static_cast<int>(s.size()), nullptr, nullptr)));
  return s;
}

// What the captions of scripts_form.form (a TStreamedForm's design, which
// the form compiler put into this program's resources) read as under code
// pages 1251, 1252 and UTF-8, which holds them as designed: a '?' for each
// character the code page has no letter for, never a look-alike.
const struct {
  const char* name;
  std::wstring in[3];
} kScripts[] = {
    {"Cyrillic", {L"Привет, мир", L"??????, ???", L"Привет, мир"}},
    {"Latin", {L"Gr??e, caf?, na?ve", L"Größe, café, naïve", L"Größe, café, naïve"}},
    {"Cjk", {L"???", L"???", L"日本語"}},
    {"Mixed", {L"Ж ? € ? ?", L"? é € ? ?", L"Ж é € 日 😀"}},
};

// What a program writes in its code page is, for the texts it holds, what
// the form compiler wrote at build time in the build's; both read in every
// code page as far as it holds them.
TEST(TStream, TextsOfAnyScriptReadTheSameInEveryCodePage) {
  const int column = CodePageColumn();
  if (column < 0) GTEST_SKIP() << "the cases know code pages 1251, 1252 and UTF-8, not " << GetACP();
  TStreamedForm compiled(nullptr);
  ASSERT_TRUE(InitInheritedComponent(&compiled, Forms::TForm::StaticClass()));
  const HRSRC found = FindResourceA(nullptr, "TSTREAMEDFORM", RT_RCDATA);
  ASSERT_NE(nullptr, found);
  const std::string resource(static_cast<const char*>(LockResource(LoadResource(nullptr, found))),
                             SizeofResource(nullptr, found));

  // The same captions set here from the texts of this code page.
  TStreamedForm made(nullptr);
  made.SetName("ScriptsForm");
  for (const auto& row : kScripts)
    Named<Stdctrls::TLabel>(&made, &made, row.name)->SetText(Encoded(CP_ACP, row.in[column]));
  TMemoryStream written;
  written.WriteComponent(&made);
  TStreamedForm copy(nullptr);
  written.SetPosition(0);
  written.ReadComponent(&copy);

  for (const auto& row : kScripts) {
    const std::wstring& want = row.in[column];
    const auto caption = [&](TComponent& form) {
      auto* label = dynamic_cast<Stdctrls::TLabel*>(form.FindComponent(row.name));
      return label ? Wide(label->GetText()) : L"(no label)";
    };
    EXPECT_EQ(want, caption(compiled)) << row.name << ": compiled at build time";
    EXPECT_EQ(want, caption(copy)) << row.name << ": written here";
    if (want != row.in[2]) continue;
    const std::string value = Value(vaUTF8String, Encoded(CP_UTF8, want));
    EXPECT_NE(std::string::npos, Bytes(written).find(value)) << row.name << ": written as UTF-8";
    EXPECT_NE(std::string::npos, resource.find(value)) << row.name << ": compiled as UTF-8";
  }

  // Bytes that are not all text of the code page (UTF-8's are not) come back
  // as they were, in the code page they were written in.
  std::string bytes;
  for (int c = 0x20; c <= 0xFF; ++c) bytes += static_cast<char>(c);
  Named<Stdctrls::TLabel>(&made, &made, "Bytes")->SetText(bytes);
  TStreamedForm again(nullptr);
  ReadBack(&made, &again);
  auto* back = dynamic_cast<Stdctrls::TLabel*>(again.FindComponent("Bytes"));
  ASSERT_NE(nullptr, back);
  EXPECT_EQ(bytes, Str(back->GetText()));
}

// Strings of each type the binary form has, an older writer's bytes and
// damaged ones: each read into the code page as far as it holds them, and
// the property after it read too.
TEST(TReader, StringsOfEveryTypeAndDamagedOnesReadIntoTheCodePage) {
  const int column = CodePageColumn();
  if (column < 0) GTEST_SKIP() << "the cases know code pages 1251, 1252 and UTF-8, not " << GetACP();
  const auto wide = [](const std::wstring& w) {
    return Value(vaWString, std::string(reinterpret_cast<const char*>(w.data()), w.size() * 2));
  };
  const struct {
    const char* what;
    std::string value;
    std::wstring in[3];  // under 1251, 1252, UTF-8
  } cases[] = {
      {"UTF-16", wide(L"Ж é € 日"), {L"Ж ? € ?", L"? é € ?", L"Ж é € 日"}},
      {"UTF-16 with a surrogate alone", wide({L'a', wchar_t(0xD800), L'b'}), {L"a?b", L"a?b", L"a\uFFFDb"}},
      // A U+FFFD for each longest run of bytes that could have begun a character.
      {"ill-formed UTF-8",
       Value(vaUTF8String, "ok\xC3(\xFF\xED\xA0\x80!\xE6\x97"),
       {L"ok?(?\?\?\?!?", L"ok?(?\?\?\?!?", L"ok\uFFFD(\uFFFD\uFFFD\uFFFD\uFFFD!\uFFFD"}},
  };
  const std::string stream = FromText("Hint = 'XX'\nCaption = 'after'\n");
  const auto read = [&](const std::string& value, TStreamedForm& form) {
    std::string bytes = stream;
    bytes.replace(bytes.find("\x06\x02XX"), 4, value);
    TMemoryStream s;
    Load(s, bytes);
    s.ReadComponent(&form);
  };
  for (const auto& c : cases) {
    TStreamedForm form(nullptr);
    ASSERT_NO_THROW(read(c.value, form)) << c.what;
    EXPECT_EQ(c.in[column], Wide(form.GetHint())) << c.what;
    EXPECT_EQ("after", Str(form.GetCaption())) << c.what;
  }

  // Bytes that name no encoding are taken as they are, in any code page.
  TStreamedForm form(nullptr);
  read(std::string("\x06\x05\xC7\xE0\xEA\xE0\xE7"), form);
  EXPECT_EQ("\xC7\xE0\xEA\xE0\xE7", Str(form.GetHint()));
}

TEST(TCustomForm, ADesignMadeAtAnotherDensityIsScaledWhenRead) {
  const int screen = Forms::Screen->GetPixelsPerInch();
  TStreamedForm designed(nullptr);
  Design(designed);
  designed.SetPixelsPerInch(screen * 2 / 3);  // as if made on a screen of 2/3 this density
  TMemoryStream stream;
  stream.WriteComponent(&designed);

  for (const bool scaled : {true, false}) {
    TStreamedForm f(nullptr);
    f.SetScaled(scaled);
    stream.SetPosition(0);
    stream.ReadComponent(&f);
    const auto at = [&](int v) { return scaled ? MulDiv(v, 3, 2) : v; };
    const std::string what = scaled ? "scaled" : "not scaled";
    EXPECT_EQ(at(designed.GetClientWidth()), f.GetClientWidth()) << what;
    EXPECT_EQ(at(designed.GetClientHeight()), f.GetClientHeight()) << what;
    EXPECT_EQ(designed.GetLeft(), f.GetLeft()) << what << ": the form keeps its place";
    EXPECT_EQ(at(-13), f.GetFont()->GetHeight()) << what;
    EXPECT_EQ(at(90), f.NameEdit->GetLeft()) << what;
    EXPECT_EQ(at(200), f.NameEdit->GetWidth()) << what;
    EXPECT_EQ(at(40), f.Panel1->GetHeight()) << what;
    EXPECT_EQ(f.GetClientHeight() - at(40), f.Panel1->GetTop()) << what << ": still at the bottom";
    EXPECT_EQ(scaled ? screen : screen * 2 / 3, f.GetPixelsPerInch()) << what;
  }
}

}  // namespace
