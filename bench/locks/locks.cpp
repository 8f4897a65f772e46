// Costs of COptex and CSingleWriteMultiRead beside the platform's locks,
// measured in the same run. Each figure is the best of several rounds; the
// locks take turns within a round so that a slow moment hits them all alike.
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "velkin/sync/brannock.h"

namespace {

double Now() {
  static const double tick = [] {
    LARGE_INTEGER f;
    QueryPerformanceFrequency(&f);
    return 1e9 / static_cast<double>(f.QuadPart);
  }();
  LARGE_INTEGER c;
  QueryPerformanceCounter(&c);
  return static_cast<double>(c.QuadPart) * tick;
}

struct Candidate {
  std::string name;
  std::function<double()> run;  // one round, nanoseconds per operation
  double best = 1e30;
};

void Measure(std::vector<Candidate>& all, int rounds) {
  for (int r = 0; r < rounds; ++r)
    for (Candidate& c : all) c.best = std::min(c.best, c.run());
}

// Uncontended enter+leave, nanoseconds per pair.
template <class Enter, class Leave>
double PerPair(int n, Enter enter, Leave leave) {
  const double start = Now();
  for (int i = 0; i < n; ++i) {
    enter();
    leave();
  }
  return (Now() - start) / n;
}

// Two threads, each n times: enter, bump a shared counter, leave. Nanoseconds
// per critical section, over both threads.
template <class Enter, class Leave>
double Contended(int n, Enter enter, Leave leave) {
  volatile long counter = 0;
  auto work = [&] {
    for (int i = 0; i < n; ++i) {
      enter();
      counter = counter + 1;
      leave();
    }
  };
  const double start = Now();
  std::thread a(work), b(work);
  a.join();
  b.join();
  const double ns = (Now() - start) / (2.0 * n);
  if (counter != 2L * n) std::printf("!! lost updates: %ld of %ld\n", counter, 2L * n);
  return ns;
}

void Row(const char* figure, double value, const char* baseline, double base, const char* target) {
  std::printf("%-34s %9.2f   %-28s %9.2f   %6.2fx   %s\n", figure, value, baseline, base, value / base, target);
}

}  // namespace

int main() {
  const int n = 4000000, rounds = 15;
  COptex priv;
  COptex named(("bench_locks_" + std::to_string(GetCurrentProcessId())).c_str());
  CRITICAL_SECTION cs;
  InitializeCriticalSection(&cs);
  SRWLOCK srw = SRWLOCK_INIT;
  std::mutex mutex;
  volatile LONG floorWord = 0;
  CSingleWriteMultiRead rw;

  std::vector<Candidate> single = {
      {"COptex private",
       [&] {
         return PerPair(
             n, [&] { priv.Enter(); }, [&] { priv.Leave(); });
       }},
      {"COptex named",
       [&] {
         return PerPair(
             n, [&] { named.Enter(); }, [&] { named.Leave(); });
       }},
      {"CRITICAL_SECTION",
       [&] {
         return PerPair(
             n, [&] { EnterCriticalSection(&cs); }, [&] { LeaveCriticalSection(&cs); });
       }},
      {"SRWLOCK exclusive",
       [&] {
         return PerPair(
             n, [&] { AcquireSRWLockExclusive(&srw); }, [&] { ReleaseSRWLockExclusive(&srw); });
       }},
      {"std::mutex",
       [&] {
         return PerPair(
             n, [&] { mutex.lock(); }, [&] { mutex.unlock(); });
       }},
      {"compare-exchange + decrement",
       [&] {
         return PerPair(
             n, [&] { InterlockedCompareExchange(&floorWord, 1, 0); }, [&] { InterlockedDecrement(&floorWord); });
       }},
      {"CSingleWriteMultiRead reader",
       [&] {
         return PerPair(
             n / 4, [&] { rw.WaitToRead(); }, [&] { rw.Done(); });
       }},
      {"SRWLOCK shared",
       [&] {
         return PerPair(
             n, [&] { AcquireSRWLockShared(&srw); }, [&] { ReleaseSRWLockShared(&srw); });
       }},
  };
  const long waits = COptex::GetEventWaits(), sets = COptex::GetEventSets();
  Measure(single, rounds);
  const long quietWaits = COptex::GetEventWaits() - waits, quietSets = COptex::GetEventSets() - sets;

  const int m = 1000000;
  CRITICAL_SECTION csSpin;
  InitializeCriticalSectionAndSpinCount(&csSpin, 4000);
  std::vector<Candidate> contended = {
      {"COptex private",
       [&] {
         return Contended(
             m, [&] { priv.Enter(); }, [&] { priv.Leave(); });
       }},
      {"COptex named",
       [&] {
         return Contended(
             m, [&] { named.Enter(); }, [&] { named.Leave(); });
       }},
      {"CRITICAL_SECTION",
       [&] {
         return Contended(
             m, [&] { EnterCriticalSection(&cs); }, [&] { LeaveCriticalSection(&cs); });
       }},
      {"CRITICAL_SECTION spin 4000",
       [&] {
         return Contended(
             m, [&] { EnterCriticalSection(&csSpin); }, [&] { LeaveCriticalSection(&csSpin); });
       }},
      {"SRWLOCK exclusive",
       [&] {
         return Contended(
             m, [&] { AcquireSRWLockExclusive(&srw); }, [&] { ReleaseSRWLockExclusive(&srw); });
       }},
      {"std::mutex",
       [&] {
         return Contended(
             m, [&] { mutex.lock(); }, [&] { mutex.unlock(); });
       }},
  };
  const long waits2 = COptex::GetEventWaits(), sets2 = COptex::GetEventSets();
  Measure(contended, 3);
  const long busyWaits = COptex::GetEventWaits() - waits2, busySets = COptex::GetEventSets() - sets2;

  auto get = [](std::vector<Candidate>& v, const char* name) -> Candidate& {
    for (Candidate& c : v)
      if (c.name == name) return c;
    return v.front();
  };
  // The fastest platform lock is the baseline of the uncontended figures.
  const Candidate* fastest = &get(single, "CRITICAL_SECTION");
  for (const char* b : {"SRWLOCK exclusive", "std::mutex"})
    if (get(single, b).best < fastest->best) fastest = &get(single, b);

  std::printf("Uncontended, ns per enter+leave (best of %d rounds of %d)\n", rounds, n);
  std::printf("%-34s %9s   %-28s %9s   %7s   %s\n", "figure", "ns", "baseline", "ns", "ratio", "target");
  for (const char* f : {"COptex private", "COptex named"})
    Row(f, get(single, f).best, fastest->name.c_str(), fastest->best, "<= 1.10x");
  for (const char* f : {"CRITICAL_SECTION", "SRWLOCK exclusive", "std::mutex", "compare-exchange + decrement"})
    Row(f, get(single, f).best, fastest->name.c_str(), fastest->best, "(reference)");
  Row("CSingleWriteMultiRead reader", get(single, "CSingleWriteMultiRead reader").best, "SRWLOCK shared",
      get(single, "SRWLOCK shared").best, "(reference)");
  std::printf("Kernel calls by COptex in the uncontended rounds: %ld event waits, %ld event sets\n\n", quietWaits,
              quietSets);

  std::printf("Contended, 2 threads x %d tiny critical sections, ns per section (best of 3)\n", m);
  std::printf("%-34s %9s   %-28s %9s   %7s   %s\n", "figure", "ns", "baseline", "ns", "ratio", "target");
  const Candidate& cs0 = get(contended, "CRITICAL_SECTION");
  for (const char* f : {"COptex private", "COptex named"})
    Row(f, get(contended, f).best, cs0.name.c_str(), cs0.best, "<= 1.00x (throughput >= baseline)");
  for (const char* f : {"CRITICAL_SECTION spin 4000", "SRWLOCK exclusive", "std::mutex"})
    Row(f, get(contended, f).best, cs0.name.c_str(), cs0.best, "(reference)");
  std::printf("Kernel calls by COptex in the contended rounds: %ld event waits, %ld event sets\n", busyWaits, busySets);

  DeleteCriticalSection(&cs);
  DeleteCriticalSection(&csSpin);
  return 0;
}
