// The dialogs measured in one run, each beside what it stands in for:
//  - XMessageBox from the call to the box shown and closed again, against
//    MessageBoxA with the same text and buttons (target: at most 1.0x);
//  - HControlStatus Store, Set and Restore of Enabled over a form of 1,000
//    controls, against a loop that saves, sets and puts back Enabled by hand
//    (target: at most 1.5x).
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <vector>

#include "bench/bench_clock.h"
#include "platform/vcl/forms/application.h"
#include "platform/vcl/stdctrls/std_buttons.h"
#include "velkin/controls/vcl_control_status.h"
#include "velkin/dialogs/xmessagebox.h"

namespace {

constexpr int kRounds = 7;

void Row(const char* what, double value, const char* baseline, double base, const char* unit, const char* target) {
  std::printf("%-44s %9.2f %s   %-34s %9.2f %s   ratio %5.2fx   %s\n", what, value, unit, baseline, base, unit,
              value / base, target);
}

// Closes each box as soon as it is active: the cancel command is handled by
// the box's own modal loop, as a click would be.
LRESULT CALLBACK CloseWhenShown(int code, WPARAM wParam, LPARAM lParam) {
  if (code == HCBT_ACTIVATE) PostMessageA(reinterpret_cast<HWND>(wParam), WM_COMMAND, IDCANCEL, 0);
  return CallNextHookEx(nullptr, code, wParam, lParam);
}

void MessageBoxes() {
  const HHOOK hook = SetWindowsHookExA(WH_CBT, &CloseWhenShown, nullptr, GetCurrentThreadId());
  const char* text = "The file \"report.txt\" already exists.\nDo you want to replace it?";
  const UINT style = MB_YESNOCANCEL | MB_ICONQUESTION;
  const int n = 40;
  double ours = 1e30, system = 1e30;
  int answers = 0;
  for (int round = 0; round < kRounds; ++round) {
    double start = Now();
    for (int i = 0; i < n; ++i) answers += XMessageBox(nullptr, text, "Copying", style | XMB_NOSOUND, 0) == IDCANCEL;
    ours = std::min(ours, (Now() - start) * 1e3 / n);
    start = Now();
    for (int i = 0; i < n; ++i) answers += MessageBoxA(nullptr, text, "Copying", style) == IDCANCEL;
    system = std::min(system, (Now() - start) * 1e3 / n);
  }
  UnhookWindowsHookEx(hook);
  if (answers != 2 * n * kRounds) std::printf("(only %d of %d boxes answered Cancel)\n", answers, 2 * n * kRounds);
  Row("XMessageBox shown and closed", ours, "MessageBoxA, same text and buttons", system, "ms", "target <= 1.0x");
}

void ControlStatus() {
  Forms::TForm form(nullptr);
  std::vector<Controls::TControl*> controls;
  for (int i = 0; i < 1000; ++i) {
    auto* button = new Stdctrls::TButton(&form);
    button->SetParent(&form);
    button->SetBounds(i % 40 * 20, i / 40 * 20, 18, 18);
    if (i % 7 == 0) button->SetEnabled(false);
    controls.push_back(button);
  }
  form.Show();
  double ours = 1e30, byHand = 1e30;
  for (int round = 0; round < kRounds; ++round) {
    double start = Now();
    HControlStatus status;
    status.Store(&form, true, 1);
    status.Set(HCS_Enabled, false);
    status.Restore(HCS_Enabled);
    ours = std::min(ours, (Now() - start) * 1e3);
    start = Now();
    std::vector<bool> saved;
    saved.reserve(controls.size());
    for (Controls::TControl* c : controls) saved.push_back(c->GetEnabled());
    for (Controls::TControl* c : controls) c->SetEnabled(false);
    for (size_t i = 0; i < controls.size(); ++i) controls[i]->SetEnabled(saved[i]);
    byHand = std::min(byHand, (Now() - start) * 1e3);
  }
  form.Hide();
  Row("HControlStatus Store+Set+Restore, 1,000", ours, "saved, set and put back by hand", byHand, "ms",
      "target <= 1.5x");
}

}  // namespace

int main() {
  Forms::Application->Initialize();
  MessageBoxes();
  ControlStatus();
  return 0;
}
