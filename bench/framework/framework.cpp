// The framework beside plain Win32, measured in one run:
//  - a Synchronize round trip from a worker thread to the main thread, which
//    sits in a plain message loop, against a SendMessage from the worker to a
//    window of the main thread (target: at most 1.2x).
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <functional>

#include "bench/bench_clock.h"
#include "platform/ostrel/owned_handle.h"
#include "platform/vcl/thread.h"

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
  std::printf("Framework against plain Win32 (best of 7 alternating rounds, %d calls each)\n\n", n);
  std::printf("%-36s %10.0f ns   %-34s %10.0f ns   ratio %5.2fx   %s\n", "Synchronize round trip", best,
              "cross-thread SendMessage", bestBase, best / bestBase, "<= 1.20x");
  std::printf("(%ld calls ran on the main thread)\n", counter.value);
  return 0;
}
