// Costs of COptex and CSingleWriteMultiRead beside the platform's locks,
// measured in the same run. The locks take turns so that a slow moment hits
// them all alike. Uncontended figures are the best of several rounds; the
// contended ones, which swing far more on a shared machine, are judged by the
// median of burst-by-burst ratios to the baseline.
// Usage: bench_locks [contended turns [sections per thread and burst]]
#include <windows.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
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

// The contended figures come from two worker threads that run many short
// bursts of sections. Every lock runs one burst in turn, in an order that
// rotates, so that the locks meet the machine in the same state; each burst
// starts and ends on a barrier, so that both threads are on a processor when
// its clock starts. On a shared machine a thread is often taken off its
// processor, and the other then has the lock to itself or waits for a holder
// that does not run: such a burst measures the machine, not the lock, so only
// bursts in which both threads worked over nearly the whole time without a
// long pause count. The verdict compares each lock with the baseline burst by
// burst (the two bursts ran moments apart) and takes the median of those
// ratios. The section itself is tiny; between sections a thread may do
// private work, so that the lock is sometimes free when the other asks.
struct Burst {
  double ns = 0;        // per critical section, over both threads
  double overlap = 0;   // share of the burst in which both threads were working
  double handoffs = 0;  // owner changes per 1000 sections
  double gap = 0;       // longest time a thread took for 32 sections, ns
  long waits = 0;       // COptex event waits
};

// A burst counts when both threads were working for at least this share of it,
// and neither was taken off its processor: 32 sections never take this long
// otherwise, not even with one sleep on a kernel event (tens of microseconds).
constexpr double kMinOverlap = 0.9;
constexpr double kMaxGap = 2e5;

bool Kept(const Burst& b) { return b.overlap >= kMinOverlap && b.gap <= kMaxGap; }

// Private work between two sections: a short dependent chain the compiler keeps.
inline unsigned Outside(unsigned x, int steps) {
  for (int i = 0; i < steps; ++i) {
    x = x * 1664525u + 1013904223u;
    __asm__ volatile("" : "+r"(x));
  }
  return x;
}

// What one thread sees of one burst.
struct Half {
  double start = 0, end = 0, gap = 0;
  long handoffs = 0;
};

// Shared by the two threads within a burst, on a line of its own.
struct alignas(64) Section {
  long counter = 0;
  int last = -1;
};

// One thread's part of a burst: n sections, each with outside steps after it.
template <class Enter, class Leave>
Half RunHalf(int me, int n, int outside, unsigned& x, Section& shared, Enter enter, Leave leave) {
  Half h;
  h.start = Now();
  double previous = h.start;
  for (int i = 0; i < n; ++i) {
    if (i % 32 == 31) {
      const double now = Now();
      h.gap = std::max(h.gap, now - previous);
      previous = now;
    }
    enter();
    shared.counter = shared.counter + 1;
    if (shared.last != me) {
      shared.last = me;
      ++h.handoffs;
    }
    leave();
    x = Outside(x, outside);
  }
  h.end = Now();
  h.gap = std::max(h.gap, h.end - previous);
  return h;
}

struct ContendedCandidate {
  using Runner = std::function<Half(int me, int n, int outside, unsigned& x, Section& shared)>;
  ContendedCandidate(std::string n, Runner r) : name(std::move(n)), run(std::move(r)) {}
  std::string name;
  Runner run;
  std::vector<Burst> bursts;  // in the order they ran, of all rounds
};

// Both threads wait here until the other arrives; the count only grows, by 2 per meeting.
void Meet(std::atomic<long>& arrived, long target) {
  arrived.fetch_add(1);
  for (int spins = 0; arrived.load() < target;)
    if (++spins > 100000) SwitchToThread();  // the other thread is not running: let it
}

// One turn: a fresh pair of threads runs one burst of every lock. Threads that
// have spun for long lose the scheduler's favour on a loaded machine and are
// seldom on two processors at once; fresh ones keep more bursts usable.
void ContendedTurn(std::vector<ContendedCandidate>& all, int n, int outside, int turn) {
  const size_t kinds = all.size();
  std::vector<Half> halves[2] = {std::vector<Half>(kinds), std::vector<Half>(kinds)};
  std::vector<long> waits(kinds);
  alignas(64) std::atomic<long> arrived{0};
  Section section;
  long lost = 0;
  auto work = [&](int me) {
    unsigned x = me + 1;
    for (size_t j = 0; j < kinds; ++j) {
      const size_t kind = (j + turn) % kinds;
      Meet(arrived, 6 * static_cast<long>(j) + 2);
      const long before = me == 0 ? COptex::GetEventWaits() : 0;
      if (me == 0) section = Section{};
      Meet(arrived, 6 * static_cast<long>(j) + 4);
      halves[me][j] = all[kind].run(me, n, outside, x, section);
      Meet(arrived, 6 * static_cast<long>(j) + 6);
      if (me == 0) {
        waits[j] = COptex::GetEventWaits() - before;
        if (section.counter != 2L * n) ++lost;
      }
    }
    if (x == 0) std::printf(" ");  // keeps the private work alive
  };
  std::thread a(work, 0), b(work, 1);
  a.join();
  b.join();
  if (lost) std::printf("!! lost updates in %ld bursts\n", lost);
  for (size_t j = 0; j < kinds; ++j) {
    const Half &h0 = halves[0][j], &h1 = halves[1][j];
    Burst r;
    const double first = std::min(h0.start, h1.start), last = std::max(h0.end, h1.end);
    r.ns = (last - first) / (2.0 * n);
    r.overlap = std::max(0.0, std::min(h0.end, h1.end) - std::max(h0.start, h1.start)) / (last - first);
    r.handoffs = 1000.0 * static_cast<double>(h0.handoffs + h1.handoffs) / (2.0 * n);
    r.gap = std::max(h0.gap, h1.gap);
    r.waits = waits[j];
    all[(j + turn) % kinds].bursts.push_back(r);
  }
}

double Median(std::vector<double> v) {
  if (v.empty()) return 0;
  std::sort(v.begin(), v.end());
  const size_t h = v.size() / 2;
  return v.size() % 2 ? v[h] : (v[h - 1] + v[h]) / 2;
}

void ReportContended(const std::vector<ContendedCandidate>& all, const char* baseline, int n, const char* title) {
  const ContendedCandidate* base = &all.front();
  for (const ContendedCandidate& c : all)
    if (c.name == baseline) base = &c;
  std::printf("%s\n", title);
  std::printf("%-27s %8s %8s %8s %7s %11s %8s %7s %8s   %s\n", "figure", "median", "best", "paired", "pairs", "bursts",
              "handoffs", "waits", "all", "target");
  std::printf("%-27s %8s %8s %8s %7s %11s %8s %7s %8s\n", "", "ns", "ns", "ratio", "kept", "kept", "/1000", "/1000",
              "median");
  for (const ContendedCandidate& c : all) {
    std::vector<double> ns, allNs, handoffs, ratios;
    long waits = 0;
    for (size_t k = 0; k < c.bursts.size(); ++k) {
      const Burst& b = c.bursts[k];
      allNs.push_back(b.ns);
      waits += b.waits;
      if (!Kept(b)) continue;
      ns.push_back(b.ns);
      handoffs.push_back(b.handoffs);
      // The baseline's burst of the same turn ran moments before or after this one.
      if (k < base->bursts.size() && Kept(base->bursts[k])) ratios.push_back(b.ns / base->bursts[k].ns);
    }
    const bool optex = c.name.rfind("COptex", 0) == 0;
    char waitText[16] = "-", count[24], ratio[16] = "-";
    if (optex)
      std::snprintf(waitText, sizeof waitText, "%.2f",
                    1000.0 * static_cast<double>(waits) / (2.0 * n * static_cast<double>(c.bursts.size())));
    std::snprintf(count, sizeof count, "%zu/%zu", ns.size(), c.bursts.size());
    if (!ratios.empty()) std::snprintf(ratio, sizeof ratio, "%.2fx", Median(ratios));
    const char* target = &c == base ? "(baseline)" : "(reference)";
    if (c.name == "COptex private" || c.name == "COptex named") target = "<= 1.00x (throughput >= baseline)";
    if (ns.empty()) target = "no burst with both threads at work";
    std::printf("%-27s %8.2f %8.2f %8s %7zu %11s %8.0f %7s %8.2f   %s\n", c.name.c_str(), Median(ns),
                ns.empty() ? 0.0 : *std::min_element(ns.begin(), ns.end()), ratio, ratios.size(), count,
                Median(handoffs), waitText, Median(allNs), target);
  }
}

// The host's load average, when the program runs under a compatibility layer
// that shows the host's files (drive Z:); a loaded machine makes the contended
// figures swing, so they are printed beside it.
void PrintLoad(const char* when) {
  if (FILE* f = std::fopen("Z:\\proc\\loadavg", "r")) {
    char line[128] = "";
    if (std::fgets(line, sizeof line, f)) std::printf("Host load average %s: %s", when, line);
    std::fclose(f);
  }
}

void Row(const char* figure, double value, const char* baseline, double base, const char* target) {
  std::printf("%-34s %9.2f   %-28s %9.2f   %6.2fx   %s\n", figure, value, baseline, base, value / base, target);
}

}  // namespace

int main(int argc, char** argv) {
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

  PrintLoad("before the contended rounds");
  // Contended: rounds of bursts of every lock, interleaved burst by burst.
  int turns = 400, m = 1000;
  if (argc > 1) turns = std::max(1, std::atoi(argv[1]));
  if (argc > 2) m = std::max(100, std::atoi(argv[2]));
  CRITICAL_SECTION csSpin;
  InitializeCriticalSectionAndSpinCount(&csSpin, 4000);
  // Optexes with other spin counts show how much the default owes to spinning
  // and what falling back to the event costs.
  COptex privSpin0(0ul), privSpin100(100ul), privSpin20k(20000ul);
  std::vector<ContendedCandidate> contended = {
      {"COptex private",
       [&](int me, int n, int outside, unsigned& x, Section& shared) {
         return RunHalf(
             me, n, outside, x, shared, [&] { priv.Enter(); }, [&] { priv.Leave(); });
       }},
      {"COptex named",
       [&](int me, int n, int outside, unsigned& x, Section& shared) {
         return RunHalf(
             me, n, outside, x, shared, [&] { named.Enter(); }, [&] { named.Leave(); });
       }},
      {"CRITICAL_SECTION",
       [&](int me, int n, int outside, unsigned& x, Section& shared) {
         return RunHalf(
             me, n, outside, x, shared, [&] { EnterCriticalSection(&cs); }, [&] { LeaveCriticalSection(&cs); });
       }},
      {"CRITICAL_SECTION spin 4000",
       [&](int me, int n, int outside, unsigned& x, Section& shared) {
         return RunHalf(
             me, n, outside, x, shared, [&] { EnterCriticalSection(&csSpin); }, [&] { LeaveCriticalSection(&csSpin); });
       }},
      {"COptex private, spin 100",
       [&](int me, int n, int outside, unsigned& x, Section& shared) {
         return RunHalf(
             me, n, outside, x, shared, [&] { privSpin100.Enter(); }, [&] { privSpin100.Leave(); });
       }},
      {"COptex private, spin 20000",
       [&](int me, int n, int outside, unsigned& x, Section& shared) {
         return RunHalf(
             me, n, outside, x, shared, [&] { privSpin20k.Enter(); }, [&] { privSpin20k.Leave(); });
       }},
      {"COptex private, spin 0",
       [&](int me, int n, int outside, unsigned& x, Section& shared) {
         return RunHalf(
             me, n, outside, x, shared, [&] { privSpin0.Enter(); }, [&] { privSpin0.Leave(); });
       }},
      {"SRWLOCK exclusive",
       [&](int me, int n, int outside, unsigned& x, Section& shared) {
         return RunHalf(
             me, n, outside, x, shared, [&] { AcquireSRWLockExclusive(&srw); }, [&] { ReleaseSRWLockExclusive(&srw); });
       }},
      {"std::mutex",
       [&](int me, int n, int outside, unsigned& x, Section& shared) {
         return RunHalf(
             me, n, outside, x, shared, [&] { mutex.lock(); }, [&] { mutex.unlock(); });
       }},
  };
  // Nothing between sections, then some private work between them.
  for (int outside : {0, 40}) {
    for (ContendedCandidate& c : contended) c.bursts.clear();
    for (int t = 0; t < turns; ++t) ContendedTurn(contended, m, outside, t);
    char title[200];
    std::snprintf(title, sizeof title,
                  "Contended, 2 threads: %d turns of one burst per lock (order rotating), %d sections per "
                  "thread and burst, %d steps of private work between sections",
                  turns, m, outside);
    ReportContended(contended, "CRITICAL_SECTION", m, title);
    std::printf("\n");
  }
  PrintLoad("after the contended rounds");
  std::printf(
      "Figures are over the kept bursts: those in which both threads worked for at least %.0f%% of the time\n"
      "and no 32 sections of either took over %.0f us (a thread taken off its processor).\n"
      "paired ratio: median over turns in which both this lock's and the baseline's burst were kept of their ratio.\n"
      "handoffs: owner changes per 1000 sections (median); waits: COptex sleeps on its event per 1000 sections;\n"
      "all median: over every burst, kept or not (shows how much the machine's load weighs, not the lock).\n",
      100 * kMinOverlap, kMaxGap / 1000);

  DeleteCriticalSection(&cs);
  DeleteCriticalSection(&csSpin);
  return 0;
}
