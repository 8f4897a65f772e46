#pragma once
#include <windows.h>

#include <atomic>

// Counts debugger breaks while it lives and lets the program carry on past
// them, so that tests can check that misuse breaks without dying of it.
class BreakCounter {
 public:
  BreakCounter() : handler_(AddVectoredExceptionHandler(1, &BreakCounter::OnException)) { count_ = 0; }
  ~BreakCounter() { RemoveVectoredExceptionHandler(handler_); }
  BreakCounter(const BreakCounter&) = delete;
  BreakCounter& operator=(const BreakCounter&) = delete;
  int Count() const { return count_; }

 private:
  static LONG CALLBACK OnException(EXCEPTION_POINTERS* e) {
    if (e->ExceptionRecord->ExceptionCode != EXCEPTION_BREAKPOINT) return EXCEPTION_CONTINUE_SEARCH;
    ++count_;
    // Reported at the breakpoint instruction itself: step over it.
    if (*reinterpret_cast<const unsigned char*>(e->ContextRecord->Rip) == 0xCC) ++e->ContextRecord->Rip;
    return EXCEPTION_CONTINUE_EXECUTION;
  }

  void* handler_;
  static inline std::atomic<int> count_{0};
};

// Polls cond until it holds or about ten seconds have passed; the bound only
// keeps a broken lock from hanging the run, it never decides a result.
template <class Cond>
bool WaitUntil(Cond cond) {
  for (int i = 0; i < 10000 && !cond(); ++i) Sleep(1);
  return cond();
}
