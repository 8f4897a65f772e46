// The framework beside plain Win32, measured in one run:
//  - a form with 50 controls made, shown and freed, against the same 50
//    windows made with plain CreateWindowEx under a plain top-level window
//    (target: at most 1.5x);
//  - a Synchronize round trip from a worker thread to the main thread, which
//    sits in a plain message loop, against a SendMessage from the worker to a
//    window of the main thread (target: at most 1.2x).
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <functional>

#include "bench/bench_clock.h"
#include "bench/bench_controls.h"
#include "platform/ostrel/owned_handle.h"
#include "platform/vcl/core/thread.h"
#include "platform/vcl/forms/application.h"
#include "platform/vcl/stdctrls/std_buttons.h"
#include "platform/vcl/stdctrls/std_edits.h"

namespace {

constexpr UINT kPing = WM_APP + 1;

LRESULT CALLBACK PingProc(HWND wnd, UINT msg, WPARAM wParam, LPARAM lParam) {
  if (msg == kPing) return lParam + 1;
  return DefWindowProcA(wnd, msg, wParam, lParam);
}

struct Counter {
  long value = 0;
  void Bump() { ++value; }
};

// Runs body on a worker while the main thread runs a plain message loop;
// returns the worker's seconds.
double OnWorker(const std::function<void()>& body) {
  struct Worker : Classes::TThread {
    explicit Worker(const std::function<void()>& b) : TThread(true), body(b) { Start(); }
    void Execute() override {
      const double start = Now();
      body();
      seconds = Now() - start;
      PostThreadMessageA(Classes::GetMainThreadID(), WM_QUIT, 0, 0);
    }
    std::function<void()> body;
    double seconds = 0;
  };
  auto* worker = new Worker(body);
  MSG msg;
  while (GetMessageA(&msg, nullptr, 0, 0) > 0) DispatchMessageA(&msg);
  worker->WaitFor();
  const double seconds = worker->seconds;
  delete worker;
  return seconds;
}

// 50 controls: edits, buttons and check boxes in rows.
constexpr int kControls = 50;

void FrameworkForm() {
  auto* form = new Forms::TForm(nullptr);
  form->SetBounds(0, 0, 640, 480);
  for (int i = 0; i < kControls; ++i) {
    Controls::TWinControl* c = NewWindowedControl(form, i);
    c->SetParent(form);
    c->SetBounds(10 + (i % 5) * 120, 10 + (i / 5) * 30, 110, 23);
    c->SetText("Control");
  }
  form->Show();
  Forms::Application->ProcessMessages();
  delete form;
}

void PlainForm() {
  static const ATOM frame = [] {
    WNDCLASSA wc{};
    wc.lpfnWndProc = &DefWindowProcA;
    wc.hInstance = GetModuleHandleA(nullptr);
    wc.hbrBackground = reinterpret_cast<HBRUSH>(static_cast<INT_PTR>(COLOR_BTNFACE + 1));
    wc.lpszClassName = "BenchPlainForm";
    return RegisterClassA(&wc);
  }();
  (void)frame;
  static const char* const kClasses[] = {"EDIT", "BUTTON", "BUTTON"};
  static const DWORD kStyles[] = {WS_TABSTOP | ES_AUTOHSCROLL, WS_TABSTOP | BS_PUSHBUTTON, WS_TABSTOP | BS_3STATE};
  const OwnedWindow form(CreateWindowExA(0, "BenchPlainForm", "", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, 0, 0, 640, 480,
                                         nullptr, nullptr, GetModuleHandleA(nullptr), nullptr));
  for (int i = 0; i < kControls; ++i) {
    HWND c = CreateWindowExA(i % 3 == 0 ? WS_EX_CLIENTEDGE : 0, kClasses[i % 3], "Control",
                             WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | kStyles[i % 3], 10 + (i % 5) * 120,
                             10 + (i / 5) * 30, 110, 23, form.get(), nullptr, GetModuleHandleA(nullptr), nullptr);
    SendMessageA(c, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)), FALSE);
  }
  ShowWindow(form.get(), SW_SHOW);
  SetForegroundWindow(form.get());
  MSG msg;
  while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
    TranslateMessage(&msg);
    DispatchMessageA(&msg);
  }
}

}  // namespace

int main() {
  WNDCLASSA wc{};
  wc.lpfnWndProc = &PingProc;
  wc.hInstance = GetModuleHandleA(nullptr);
  wc.lpszClassName = "BenchPing";
  RegisterClassA(&wc);
  const OwnedWindow window(
      CreateWindowExA(0, wc.lpszClassName, "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, wc.hInstance, nullptr));
  HWND ping = window.get();
  Classes::CheckSynchronize(0);  // the main thread's side is ready

  const int n = 20000;
  Counter counter;
  const Classes::TThreadMethod bump(&counter, &Counter::Bump);
  double best = 1e30, bestBase = 1e30;
  for (int round = 0; round < 7; ++round) {
    best = std::min(best, OnWorker([&] {
                            for (int i = 0; i < n; ++i) Classes::TThread::Synchronize(nullptr, bump);
                          }) * 1e9 /
                              n);
    bestBase = std::min(bestBase, OnWorker([&] {
                                    for (int i = 0; i < n; ++i) SendMessageA(ping, kPing, 0, i);
                                  }) * 1e9 /
                                      n);
  }
  double forms = 1e30, plainForms = 1e30;
  const int formRounds = 40;
  FrameworkForm();  // classes and the shared font are made once
  PlainForm();
  for (int round = 0; round < 7; ++round) {
    double start = Now();
    for (int i = 0; i < formRounds; ++i) FrameworkForm();
    forms = std::min(forms, (Now() - start) * 1e6 / formRounds);
    start = Now();
    for (int i = 0; i < formRounds; ++i) PlainForm();
    plainForms = std::min(plainForms, (Now() - start) * 1e6 / formRounds);
  }
  std::printf("Framework against plain Win32 (best of 7 alternating rounds)\n\n");
  std::printf("%-36s %10.0f us   %-34s %10.0f us   ratio %5.2fx   %s\n", "form, 50 controls: make+show+free", forms,
              "CreateWindowEx, same 50 windows", plainForms, forms / plainForms, "<= 1.50x");
  std::printf("%-36s %10.0f ns   %-34s %10.0f ns   ratio %5.2fx   %s\n", "Synchronize round trip (20000)", best,
              "cross-thread SendMessage", bestBase, best / bestBase, "<= 1.20x");
  std::printf("(%ld calls ran on the main thread)\n", counter.value);
  return 0;
}
