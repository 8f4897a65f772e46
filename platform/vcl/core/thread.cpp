#include "platform/vcl/core/thread.h"

#include <algorithm>
#include <atomic>
#include <deque>
#include <mutex>
#include <utility>
#include <vector>

#include "platform/ostrel/oslib.h"

namespace Classes {

VCL_CLASS_IMPL(EThread, Sysutils::Exception)
VCL_CLASS_IMPL(TThread, System::TObject)

namespace {

// The loading thread: static initialisation runs on it.
const DWORD mainThreadId = GetCurrentThreadId();

// A call waiting for the main thread. A synchronous one is on the caller's
// stack and is handed back through its event; a queued one is the queue's.
struct SyncCall {
  TThreadMethod method;
  HANDLE done = nullptr;  // null: queued, nobody waits
  std::exception_ptr error;
  DWORD caller = 0;  // the thread that waits
};

constexpr UINT kWakeMessage = WM_USER;

std::mutex queueLock;
std::deque<SyncCall*> pending;
// Set while calls are pending: what CheckSynchronize and WaitFor wait on.
const OwnedKernelHandle syncEvent(CreateEventA(nullptr, TRUE, FALSE, nullptr));
std::atomic<HWND> wakeWindow{nullptr};
std::atomic<bool> wakePosted{false};

// A queued call's failure met in the wake window, raised by the next direct
// CheckSynchronize: a window procedure must not let it through.
std::exception_ptr deferredError;

// The threads whose synchronous calls the main thread is running now,
// innermost last (a call may run a message loop that runs another). Only the
// main thread touches it.
std::vector<DWORD> runningCallers;

bool RunningCallOf(DWORD thread) {
  return std::find(runningCallers.begin(), runningCallers.end(), thread) != runningCallers.end();
}

LRESULT CALLBACK WakeProc(HWND wnd, UINT msg, WPARAM wParam, LPARAM lParam) {
  if (msg != kWakeMessage) return DefWindowProcA(wnd, msg, wParam, lParam);
  wakePosted = false;
  try {
    CheckSynchronize(0);
  } catch (...) {
    if (!deferredError) deferredError = std::current_exception();
  }
  return 0;
}

HINSTANCE ThisModule() { return static_cast<HINSTANCE>(ModuleOf(reinterpret_cast<const void*>(&WakeProc))); }

// A message-only window of the main thread: a message posted to it reaches
// WakeProc from whatever loop the main thread is in. Made on the main thread
// the first time it deals with threads. A class left registered by an earlier
// load of this module (with a procedure that is gone) is replaced.
void EnsureWakeWindow() {
  static OwnedWindow window;
  if (window || GetCurrentThreadId() != mainThreadId) return;
  constexpr char kClass[] = "TThreadSyncWindow";
  WNDCLASSA existing{};
  if (GetClassInfoA(ThisModule(), kClass, &existing) && existing.lpfnWndProc != &WakeProc)
    UnregisterClassA(kClass, ThisModule());
  WNDCLASSA wc{};
  wc.lpfnWndProc = &WakeProc;
  wc.hInstance = ThisModule();
  wc.lpszClassName = kClass;
  RegisterClassA(&wc);
  window.reset(CreateWindowExA(0, kClass, "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, wc.hInstance, nullptr));
  wakeWindow = window.get();
}

void WakeMainThread() {
  if (HWND w = wakeWindow.load()) {
    if (!wakePosted.exchange(true)) PostMessageA(w, kWakeMessage, 0, 0);
  } else {
    PostThreadMessageA(mainThreadId, WM_NULL, 0, 0);
  }
}

void Enqueue(SyncCall* call) {
  {
    std::lock_guard<std::mutex> guard(queueLock);
    pending.push_back(call);
    SetEvent(syncEvent.get());
  }
  WakeMainThread();
}

SyncCall* Dequeue() {
  std::lock_guard<std::mutex> guard(queueLock);
  if (pending.empty()) {
    ResetEvent(syncEvent.get());
    return nullptr;
  }
  SyncCall* call = pending.front();
  pending.pop_front();
  return call;
}

bool OnMainThread() { return GetCurrentThreadId() == mainThreadId; }

// Auto-reset events that waiting callers borrow, one per call in flight; kept
// for the next caller rather than made per call (and not per thread: thread
// exit would have to close them).
class EventPool {
 public:
  HANDLE Take() {
    std::lock_guard<std::mutex> guard(lock_);
    if (free_.empty()) {
      all_.emplace_back(CreateEventA(nullptr, FALSE, FALSE, nullptr));
      return all_.back().get();
    }
    HANDLE event = free_.back();
    free_.pop_back();
    return event;
  }
  void Give(HANDLE event) {
    std::lock_guard<std::mutex> guard(lock_);
    free_.push_back(event);
  }

 private:
  std::mutex lock_;
  std::deque<OwnedKernelHandle> all_;
  std::vector<HANDLE> free_;
};
EventPool callerEvents;

}  // namespace

DWORD GetMainThreadID() { return mainThreadId; }

bool CheckSynchronize(int timeoutMs) {
  if (!OnMainThread())
    throw EThread("CheckSynchronize called from thread " + Sysutils::IntToStr(GetCurrentThreadId()) +
                  ", which is not the main thread");
  EnsureWakeWindow();
  if (deferredError) std::rethrow_exception(std::exchange(deferredError, nullptr));
  if (timeoutMs > 0) WaitForSingleObject(syncEvent.get(), timeoutMs);
  bool ran = false;
  while (SyncCall* call = Dequeue()) {
    ran = true;
    std::exception_ptr error;
    if (call->done) runningCallers.push_back(call->caller);
    try {
      call->method();
    } catch (...) {
      error = std::current_exception();
    }
    if (call->done) runningCallers.pop_back();
    if (call->done) {
      call->error = error;
      SetEvent(call->done);
    } else {
      delete call;
      if (error) std::rethrow_exception(error);  // a queued call's failure is the main thread's
    }
  }
  return ran;
}

void TThread::Synchronize(TThread*, TThreadMethod method) {
  if (OnMainThread()) {
    EnsureWakeWindow();
    method();
    return;
  }
  SyncCall call{method, callerEvents.Take(), nullptr, GetCurrentThreadId()};
  Enqueue(&call);
  WaitForSingleObject(call.done, INFINITE);
  callerEvents.Give(call.done);
  if (call.error) std::rethrow_exception(call.error);
}

void TThread::Queue(TThread*, TThreadMethod method) {
  if (OnMainThread()) {
    method();
    return;
  }
  Enqueue(new SyncCall{method, nullptr, nullptr});
}

// ---- TThread ----

TThread::TThread(bool createSuspended) {
  if (OnMainThread()) EnsureWakeWindow();
  handle_.reset(CreateThread(nullptr, 0, &ThreadProc, this, CREATE_SUSPENDED, &threadId_));
  if (!handle_) throw EThread("Thread creation error: " + Sysutils::IntToStr(static_cast<int>(GetLastError())));
  if (!createSuspended) Start();
}

TThread::~TThread() { StopAndWait(); }

void TThread::BeforeDestruction() { StopAndWait(); }

// Deleted inside a call its thread waits for: waiting for the thread here
// would never end, so it is asked to stop and frees itself once it has. A
// delete already under way (whose wait ran the call) frees it itself.
bool TThread::DestroyLater() {
  if (!OnMainThread() || !RunningCallOf(threadId_)) return false;
  if (!destroying_) {
    Terminate();
    freeOnTerminate_ = true;
  }
  return true;
}

void TThread::StopAndWait() {
  if (!handle_ || GetCurrentThreadId() == threadId_) return;  // freed by its own thread on termination
  destroying_ = true;
  if (!finished_) {
    Terminate();
    // A thread never started runs only to see that it was terminated.
    if (!started_) {
      started_ = true;
      ResumeThread(handle_.get());
    }
    freeOnTerminate_ = false;
    WaitFor();
  }
}

void TThread::Start() {
  if (started_) throw EThread("Cannot call Start on a running or finished thread");
  started_ = true;
  ResumeThread(handle_.get());
}

void TThread::Terminate() { terminated_ = true; }
bool TThread::GetTerminated() const { return terminated_; }
bool TThread::GetFinished() const { return finished_; }

int TThread::WaitFor() {
  if (GetCurrentThreadId() == threadId_) throw EThread("Cannot call WaitFor on the current thread");
  if (freeOnTerminate_) throw EThread("Cannot call WaitFor on a free-on-terminate thread");
  if (!started_) throw EThread("Cannot call WaitFor on a thread that was never started");
  if (OnMainThread() && RunningCallOf(threadId_))
    throw EThread("Cannot wait for a thread from a call it is waiting for");
  // OnTerminate may free the object meanwhile: the wait keeps a handle of its
  // own, and ReturnValue comes back as the thread's exit code.
  HANDLE own = nullptr;
  DuplicateHandle(GetCurrentProcess(), handle_.get(), GetCurrentProcess(), &own,
                  SYNCHRONIZE | THREAD_QUERY_LIMITED_INFORMATION, FALSE, 0);
  const OwnedKernelHandle thread(own);
  if (OnMainThread()) {
    // The thread may be waiting for the main thread: serve it meanwhile.
    const HANDLE waits[] = {thread.get(), syncEvent.get()};
    while (WaitForMultipleObjects(2, waits, FALSE, INFINITE) != WAIT_OBJECT_0) CheckSynchronize(0);
  } else {
    WaitForSingleObject(thread.get(), INFINITE);
  }
  DWORD code = 0;
  GetExitCodeThread(thread.get(), &code);
  return static_cast<int>(code);
}

void TThread::DoTerminate() {
  if (onTerminate_) Synchronize(TThreadMethod(this, &TThread::CallOnTerminate));
}

void TThread::CallOnTerminate() { onTerminate_(this); }

DWORD WINAPI TThread::ThreadProc(void* self) {
  auto* thread = static_cast<TThread*>(self);
  if (!thread->terminated_) {
    try {
      thread->Execute();
    } catch (...) {
      thread->fatalException_ = std::current_exception();
    }
  }
  try {
    thread->DoTerminate();
  } catch (...) {
    if (!thread->fatalException_) thread->fatalException_ = std::current_exception();
  }
  const auto result = static_cast<DWORD>(thread->returnValue_);
  const bool free = thread->freeOnTerminate_;
  thread->finished_ = true;
  if (free) delete thread;
  return result;
}

}  // namespace Classes
