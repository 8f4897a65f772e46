// The long-operation window as jobs share it: made on first need, laid out
// by what it shows, freed by its last holder; the abort button pressed as a
// user would; every operation turned to a hook; the I/O error number kept.
#include "velkin/dialogs/hoperation.h"

#include <commctrl.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <memory>
#include <string>
#include <vector>

#include "platform/ostrel/ioerror.h"
#include "platform/vcl/forms/application.h"
#include "tests/velkin/dialogs/dialog_watcher.h"
#include "tests/velkin/dialogs/text_fit.h"
#include "tests/velkin/resources/string_texts.h"
#include "velkin/dialogs/hoperation_form.h"

namespace {

THLongOperationForm* Shared() { return HOperation::SharedForm(); }

// What the window shows, as one line: "none", or visibility, text, the
// stacked controls' tops and the client height.
std::string Shown() {
  THLongOperationForm* f = Shared();
  if (!f) return "none";
  std::string s = IsWindowVisible(f->GetHandle()) ? "shown" : "hidden";
  s += " use " + std::to_string(f->GetUseCount());
  const auto part = [&](const char* name, Controls::TControl* c) {
    if (c->GetVisible()) s += std::string(" ") + name + "@" + std::to_string(c->GetTop());
  };
  if (f->txtText->GetVisible()) s += " \"" + std::string(f->txtText->GetText().c_str()) + "\"";
  part("text", f->txtText);
  part("bar", f->pbProgress);
  part("abort", f->btnAbort);
  RECT client;
  GetClientRect(f->GetHandle(), &client);
  if (IsWindowVisible(f->GetHandle())) s += " h" + std::to_string(client.bottom);
  return s;
}

TEST(HOperation, OneWindowSharedByEveryHolderAndLaidOutByWhatItShows) {
  Forms::Application->Initialize();
  // Heights the stack is made of.
  HOperation probe(nullptr, "x");
  const int text = Shared()->txtText->GetHeight(), bar = Shared()->pbProgress->GetHeight(),
            button = Shared()->btnAbort->GetHeight();
  probe.SetText(nullptr);
  ASSERT_EQ(nullptr, Shared());
  // The stack below a text: nothing, the bar, the abort button, or both.
  const auto at = [](int y) { return std::to_string(y); };
  const std::string t = "text@" + at(2), b = " bar@" + at(2 + text + 2);
  const std::string plain = t + " h" + at(2 + text + 2 + 2), withBar = t + b + " h" + at(2 + text + 2 + bar + 2 + 2),
                    both = t + b + " abort@" + at(2 + text + 2 + bar + 2) + " h" +
                           at(2 + text + 2 + bar + 2 + button + 2 + 2),
                    withAbort = t + " abort@" + at(2 + text + 2) + " h" + at(2 + text + 2 + button + 2 + 2);
  const std::string copying = "shown use 1 \"Copying: 100% of %d\" ";

  std::unique_ptr<HOperation> one, two, three;
  const struct {
    const char* what;
    std::function<void()> act;
    std::string shown;
  } steps[] = {
      {"a constructor's text is a format without arguments",
       [&] { one = std::make_unique<HOperation>(nullptr, "Copying: 100%% of %d"); }, copying + plain},
      {"progress shows the bar", [&] { one->SetProgress(50); }, copying + withBar},
      {"the abort button below it", [&] { one->SetAbort(true); }, copying + both},
      {"progress 0 hides the bar and shrinks the window", [&] { one->SetProgress(0); }, copying + withAbort},
      {"a second holder", [&] { two = std::make_unique<HOperation>(nullptr); },
       "shown use 2 \"Copying: 100% of %d\" " + withAbort},
      {"its text, formatted", [&] { two->SetText("File %d of %s", 3, "7"); },
       "shown use 2 \"File 3 of 7\" " + withAbort},
      {"the first lets go with a null text", [&] { one->SetText(nullptr); },
       "shown use 1 \"File 3 of 7\" " + withAbort},
      {"the first goes and lets go once more: the window goes with it", [&] { one.reset(); }, "none"},
      {"the second's next text makes a new one", [&] { two->SetText("Again"); }, "shown use 1 \"Again\" " + plain},
      {"an empty text hides the window", [&] { two->SetText("%s", ""); }, "hidden use 1"},
      {"the last holder goes: the window is freed", [&] { two.reset(); }, "none"},
      {"asking whether it shows makes it, hidden",
       [&] {
         three = std::make_unique<HOperation>(nullptr);
         EXPECT_FALSE(three->isShowed());
       },
       "hidden use 1 \"\" text@1 bar@30 abort@55"},
      {"counted shows: one null text is not enough",
       [&] {
         three->SetText("busy");
         three->IncShow();
         three->SetText(nullptr);
       },
       "shown use 1 \"busy\" " + plain},
      {"the second null text frees it", [&] { three->SetText(nullptr); }, "none"},
  };
  for (const auto& step : steps) {
    step.act();
    EXPECT_EQ(step.shown, Shown()) << step.what;
  }
  three.reset();
  EXPECT_EQ(nullptr, Shared());
}

// The designed window: a tool window of its own, its texts from the string
// tables in the screen's language, none clipped at the screen's density.
TEST(HOperation, TheDesignedWindow) {
  Forms::Application->Initialize();
  HOperation op(nullptr, "Reading the archive");
  op.SetProgress(30);
  op.SetAbort(true);
  THLongOperationForm* f = Shared();
  ASSERT_NE(nullptr, f);
  HWND w = f->GetHandle();
  EXPECT_TRUE(GetWindowLongA(w, GWL_EXSTYLE) & WS_EX_TOOLWINDOW);
  EXPECT_EQ(nullptr, GetWindow(w, GW_OWNER)) << "a window of its own";
  EXPECT_EQ(Graphics::clWindow, f->GetColor());
  const struct {
    const char* what;
    HWND window;
    int id;
  } texts[] = {{"caption", w, 1040}, {"abort button", f->btnAbort->GetHandle(), 1041}};
  for (const auto& t : texts) {
    const std::wstring shown = dialog_watcher::Text(t.window);
    EXPECT_EQ(string_texts::Shown(t.id), shown) << t.what;
    EXPECT_EQ("", string_texts::Misread(shown, string_texts::Column())) << t.what;
  }
  EXPECT_EQ(30, SendMessageA(f->pbProgress->GetHandle(), PBM_GETPOS, 0, 0));
  for (const std::string& c : text_fit::Clipped(f)) ADD_FAILURE() << c;
  // Centred on the screen.
  RECT r;
  GetWindowRect(w, &r);
  EXPECT_NEAR(GetSystemMetrics(SM_CXSCREEN) / 2, (r.left + r.right) / 2, 2);
}

TEST(HOperation, AbortPressedTwiceBetweenPollsIsToldOnce) {
  Forms::Application->Initialize();
  HOperation op(nullptr, "Working");
  op.SetAbort(true);
  THLongOperationForm* f = Shared();
  EXPECT_FALSE(op.isAborted());
  // With the mouse: the window holds it (taken again as the job goes on),
  // and hands a press on the button to the button.
  const HWND window = f->GetHandle(), button = f->btnAbort->GetHandle();
  for (int i = 0; i < 2; ++i) {
    op.SetProgress(10 + i);
    const POINT p{f->btnAbort->GetLeft() + 5, f->btnAbort->GetTop() + 5};
    ASSERT_EQ(window, GetCapture());
    SendMessageA(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(p.x, p.y));
    EXPECT_EQ(button, GetCapture());
    SendMessageA(button, WM_LBUTTONUP, 0, MAKELPARAM(5, 5));
  }
  EXPECT_TRUE(op.isAborted());
  EXPECT_FALSE(op.isAborted()) << "told once";
  SendMessageA(f->btnAbort->GetHandle(), BM_CLICK, 0, 0);
  op.SetAbort(true);
  EXPECT_FALSE(op.isAborted()) << "showing the button again forgets a press";
  SendMessageA(f->btnAbort->GetHandle(), BM_CLICK, 0, 0);
  EXPECT_TRUE(op.isAborted());
  op.SetText(nullptr);
  EXPECT_EQ(nullptr, Shared());
  EXPECT_NE(window, GetCapture()) << "the mouse given back";
}

// A recorder of the hooks' calls.
struct Hooks {
  std::string log;
  void IncShow() { log += "inc "; }
  void Text(const char* format, void* args) {
    char text[64];
    vsnprintf(text, sizeof text, format, *static_cast<va_list*>(args));
    log += std::string("text:") + text + " ";
    SetErrorN(99);
  }
  void Progress(int v) { log += "progress:" + std::to_string(v) + " "; }
  void Abort(bool v) { log += std::string("abort:") + (v ? "1 " : "0 "); }
  void Modal(bool v) { log += std::string("modal:") + (v ? "1 " : "0 "); }
  void Color(const Graphics::TColor& c) { log += "color:" + std::to_string(c) + " "; }
  void Caption(const System::AnsiString& s) { log += std::string("caption:") + s.c_str() + " "; }
  bool Aborted() {
    log += "aborted? ";
    SetErrorN(98);
    return true;
  }
  bool Showed() {
    log += "showed? ";
    return true;
  }
};

TEST(HOperation, HooksTakeEveryOperationAndTheErrorNumberIsKept) {
  Forms::Application->Initialize();
  Hooks h;
  HOperation op(nullptr);
  op.SetOnIncShow({&h, &Hooks::IncShow});
  op.SetOnSetText({&h, &Hooks::Text});
  op.SetOnSetProgress({&h, &Hooks::Progress});
  op.SetOnSetAbort({&h, &Hooks::Abort});
  op.SetOnSetModal({&h, &Hooks::Modal});
  op.SetOnSetColor({&h, &Hooks::Color});
  op.SetOnSetButtonCaption({&h, &Hooks::Caption});
  op.SetOnIsAborted({&h, &Hooks::Aborted});
  op.SetOnIsShowed({&h, &Hooks::Showed});
  SetErrorN(17);
  op.IncShow();
  op.SetText("%d%%", 40);
  op.SetProgress(40);
  op.SetAbort(true);
  op.SetModal(false);
  op.SetColor(Graphics::clRed);
  op.SetButtonCaption("Stop");
  EXPECT_TRUE(op.isAborted());
  EXPECT_EQ(nullptr, Shared()) << "hooks leave the window alone";
  EXPECT_TRUE(op.isShowed());
  EXPECT_EQ(17, GetIOErrorN()) << "kept across the calls, whatever the hooks did";
  EXPECT_EQ("inc text:40% progress:40 abort:1 modal:0 color:255 caption:Stop aborted? showed? ", h.log);
  EXPECT_NE(nullptr, Shared()) << "isShowed makes the window first";
  op.Init();
  EXPECT_EQ(2, Shared()->GetUseCount()) << "Init holds the window and clears the hooks";
  op.SetText(nullptr);
}

}  // namespace
