// The cross-thread call window against plain window messages, in one run. The
// main thread owns the windows and runs a plain message loop; a worker
//  - makes blocking calls: HSync_CallEvent against SendMessage to a window of
//    the main thread (target: at most 1.1x), with the framework's
//    Synchronize beside them for reference;
//  - posts calls: HSync_PostEvent against PostMessage, timed until the main
//    thread has run them all (target: at most 1.2x).
#include <windows.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <functional>

#include "bench/bench_clock.h"
#include "platform/ostrel/owned_handle.h"
#include "platform/vcl/core/thread.h"
#include "velkin/sync/hsync.h"

namespace {

constexpr UINT kPing = WM_APP + 1;
std::atomic<long> ran{0};

LRESULT CALLBACK PingProc(HWND wnd, UINT msg, WPARAM wParam, LPARAM lParam) {
  if (msg == kPing) {
    ran.fetch_add(1, std::memory_order_relaxed);
    return lParam + 1;
  }
  return DefWindowProcA(wnd, msg, wParam, lParam);
}

long Bump(void* arg) {
  ran.fetch_add(1, std::memory_order_relaxed);
  return static_cast<long>(reinterpret_cast<intptr_t>(arg)) + 1;
}

struct Counter {
  void Bump() { ran.fetch_add(1, std::memory_order_relaxed); }
};

// Runs body on a worker while the main thread runs a plain message loop until
// expected calls have run; returns the seconds from the start of body.
double OnWorker(const std::function<void()>& body, long expected) {
  ran = 0;
  std::atomic<bool> finished{false};
  const double start = Now();
  const OwnedKernelHandle worker(CreateThread(
      nullptr, 0,
      [](void* p) -> DWORD {
        auto* args = static_cast<std::pair<const std::function<void()>*, std::atomic<bool>*>*>(p);
        (*args->first)();
        *args->second = true;
        return 0;
      },
      new std::pair<const std::function<void()>*, std::atomic<bool>*>(&body, &finished), 0, nullptr));
  MSG msg;
  while (!finished || ran.load() < expected) {
    if (!PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
      MsgWaitForMultipleObjects(0, nullptr, FALSE, 1, QS_ALLINPUT);
      continue;
    }
    DispatchMessageA(&msg);
  }
  const double seconds = Now() - start;
  WaitForSingleObject(worker.get(), INFINITE);
  return seconds;
}

void Row(const char* what, double ours, const char* baseline, double base, const char* target) {
  std::printf("%-30s %9.0f ns   %-30s %9.0f ns   ratio %5.2fx   %s\n", what, ours, baseline, base, ours / base, target);
}

}  // namespace

int main() {
  WNDCLASSA wc{};
  wc.lpfnWndProc = &PingProc;
  wc.hInstance = GetModuleHandleA(nullptr);
  wc.lpszClassName = "BenchSyncPing";
  RegisterClassA(&wc);
  const OwnedWindow window(
      CreateWindowExA(0, wc.lpszClassName, "", 0, 0, 0, 0, 0, nullptr, nullptr, wc.hInstance, nullptr));
  HWND ping = window.get();
  HSync_Add();
  Classes::CheckSynchronize(0);
  Counter counter;
  const Classes::TThreadMethod bump(&counter, &Counter::Bump);

  const int n = 20000;
  double call = 1e30, send = 1e30, sync = 1e30, post = 1e30, plainPost = 1e30;
  for (int round = 0; round < 7; ++round) {
    call = std::min(call, OnWorker(
                              [&] {
                                for (int i = 0; i < n; ++i)
                                  HSync_CallEvent(&Bump, reinterpret_cast<void*>(intptr_t{i}));
                              },
                              n) *
                              1e9 / n);
    send = std::min(send, OnWorker(
                              [&] {
                                for (int i = 0; i < n; ++i) SendMessageA(ping, kPing, 0, i);
                              },
                              n) *
                              1e9 / n);
    sync = std::min(sync, OnWorker(
                              [&] {
                                for (int i = 0; i < n; ++i) Classes::TThread::Synchronize(nullptr, bump);
                              },
                              n) *
                              1e9 / n);
    post = std::min(post, OnWorker(
                              [&] {
                                for (int i = 0; i < n; ++i) HSync_PostEvent(&Bump, nullptr);
                              },
                              n) *
                              1e9 / n);
    plainPost = std::min(plainPost, OnWorker(
                                        [&] {
                                          for (int i = 0; i < n; ++i) PostMessageA(ping, kPing, 0, i);
                                        },
                                        n) *
                                        1e9 / n);
  }
  std::printf("Cross-thread calls from a worker to the main thread (best of 7 rounds, %d calls each)\n\n", n);
  Row("HSync_CallEvent round trip", call, "cross-thread SendMessage", send, "<= 1.10x");
  Row("Synchronize round trip", sync, "cross-thread SendMessage", send, "(reference)");
  Row("HSync_PostEvent, all run", post, "PostMessage, all run", plainPost, "<= 1.20x");
  HSync_Delete();
  return 0;
}
