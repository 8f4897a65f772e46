// How the framework's costs grow with size, measured in one run. Each row
// times one operation at N = 10, 100, 1,000 and 5,000 beside a plain baseline
// doing the same work, and prints the exponent between the last two sizes,
// log(t5000/t1000)/log 5: 1 is linear, 2 quadratic. Every exponent of the
// framework's figures is to be at most 1.2; some rows have limits of their
// own. A size whose run would take too long is skipped, which misses the
// row's target. Exits with 1 when a target is missed, after printing all.
#include <windows.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <random>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "bench/bench_clock.h"
#include "bench/bench_controls.h"
#include "platform/ostrel/myarray.h"
#include "platform/ostrel/owned_handle.h"
#include "platform/vcl/core/component.h"
#include "platform/vcl/core/streams.h"
#include "platform/vcl/core/string_list.h"
#include "platform/vcl/forms/application.h"
#include "platform/vcl/stdctrls/ext_panels.h"
#include "platform/vcl/stdctrls/std_buttons.h"
#include "platform/vcl/stdctrls/std_edits.h"
#include "platform/vcl/stdctrls/std_label.h"

// The designed form of the last row: its controls come from the resource the
// build generates (see CMakeLists.txt).
class TScaleForm : public Forms::TForm {
  VCL_CLASS();

 public:
  explicit TScaleForm(Classes::TComponent* owner) : TForm(owner) { ReadDesign(); }
};
VCL_COMPONENT_IMPL(TScaleForm, Forms::TForm)

namespace {

constexpr int kSizeCount = 4;
constexpr std::array<int, kSizeCount> kSizes = {10, 100, 1000, 5000};
constexpr double kMaxExponent = 1.2;
// A side of a row stops growing after a size whose run took longer than
// kBudget, or before one that the growth seen so far says would take longer
// than kExpectedLimit.
constexpr double kBudget = 10.0;
constexpr double kExpectedLimit = 40.0;
// Runs at one size: at least kMinRuns and until kSizeWall seconds were spent,
// but no more once kLongWall was, and never more than kMaxRuns.
constexpr int kMinRuns = 3;
constexpr int kMaxRuns = 200;
constexpr double kSizeWall = 0.4;
constexpr double kLongWall = 3.0;

bool missedAny = false;

// Keeps the compiler from dropping work whose result nobody reads.
void Keep(const void* p) { asm volatile("" : : "g"(p) : "memory"); }

// Repeats a small size so that one run is long enough to time well.
int Repeats(int n, int work) { return std::max(1, work / n); }

// Handles what is queued, bounded so that a window that keeps posting cannot
// hang the run.
void Pump() {
  MSG msg;
  for (int i = 0; i < 200000 && PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE); ++i) {
    TranslateMessage(&msg);
    DispatchMessageA(&msg);
  }
}

double Exponent(double t1, double t2, double sizeRatio) { return std::log(t2 / t1) / std::log(sizeRatio); }

std::string Format(const char* format, double value) {
  char text[64];
  std::snprintf(text, sizeof text, format, value);
  return text;
}

// Three significant digits and a unit.
std::string Duration(double seconds) {
  static const struct {
    double scale;
    const char* unit;
  } kUnits[] = {{1e9, "ns"}, {1e6, "us"}, {1e3, "ms"}, {1, "s"}};
  for (const auto& u : kUnits) {
    const double v = seconds * u.scale;
    if (v < 999.5 || u.scale == 1) return Format(v < 9.995 ? "%.2f" : v < 99.95 ? "%.1f" : "%.0f", v) + " " + u.unit;
  }
  return "";
}

std::string Times(double ratio) { return Format(ratio < 9.995 ? "%.2fx" : ratio < 99.95 ? "%.1fx" : "%.0fx", ratio); }

std::string Thousands(long n) {
  std::string digits = std::to_string(n), text;
  for (size_t i = 0; i < digits.size(); ++i) {
    if (i > 0 && (digits.size() - i) % 3 == 0) text += ',';
    text += digits[i];
  }
  return text;
}

// One figure per size, in seconds; negative where the size was not measured.
using Figures = std::array<double, kSizeCount>;
constexpr Figures kNone = {-1, -1, -1, -1};

// One run at size n: sets one figure (seconds) per series and returns how
// many times it did the work, which the figures are already divided by.
using Probe = std::function<int(int n, double* figures)>;

// What one side of a row measured.
struct Side {
  explicit Side(Probe p) : probe(std::move(p)) {}
  Probe probe;
  std::vector<Figures> best;  // the best run of each series
  Figures runWall = kNone;    // the shortest run at each size, set-up included, per repeat
};

// Whether a side goes on to size n after the first i sizes, by what they
// cost it.
bool WithinBudget(const Side& side, int i, int n) {
  if (i == 0) return true;
  const double last = side.runWall[i - 1];
  if (last < 0 || last > kBudget) return false;
  double growth = 1;
  if (i >= 2 && side.runWall[i - 2] > 0)
    growth = std::max(1.0, Exponent(side.runWall[i - 2], last, double(kSizes[i - 1]) / kSizes[i - 2]));
  return last * std::pow(double(n) / kSizes[i - 1], growth) <= kExpectedLimit;
}

// Measures both sides at every size and keeps the best run of each of the
// series they fill. The runs go in passes over the sizes, the two sides in
// turn, so that a burst of load from elsewhere does not fall on one size or
// one side alone.
void Measure(Side& fw, Side& base, int series) {
  Side* sides[2] = {&fw, &base};
  for (Side* s : sides) s->best.assign(series, kNone);
  struct Progress {
    int runs = 0;
    double wall = 0;
    bool done = false;
  };
  Progress progress[2][kSizeCount];
  std::vector<double> figures(series);
  for (bool more = true; more;) {
    more = false;
    for (int i = 0; i < kSizeCount; ++i) {
      for (int k = 0; k < 2; ++k) {
        Side& s = *sides[k];
        Progress& p = progress[k][i];
        if (p.done) continue;
        if (p.runs == 0 && !WithinBudget(s, i, kSizes[i])) {
          p.done = true;
          continue;
        }
        const double start = Now();
        const int repeats = s.probe(kSizes[i], figures.data());
        const double took = Now() - start;
        for (int j = 0; j < series; ++j)
          if (s.best[j][i] < 0 || figures[j] < s.best[j][i]) s.best[j][i] = figures[j];
        if (s.runWall[i] < 0 || took / repeats < s.runWall[i]) s.runWall[i] = took / repeats;
        p.wall += took;
        ++p.runs;
        p.done = p.runs >= kMaxRuns || p.wall >= kLongWall || (p.runs >= kMinRuns && p.wall >= kSizeWall);
        more = more || !p.done;
      }
    }
  }
}

constexpr int kLabelWidth = 46;

// A table: its lines, then the verdict from the misses found.
struct Table {
  Table(std::string t, std::string goal) : title(std::move(t)), target(std::move(goal)) {}
  std::string title, target;
  std::vector<std::string> misses;

  void Header() const {
    std::printf("%s\n   target: %s\n   %-*s", title.c_str(), target.c_str(), kLabelWidth, "");
    for (int n : kSizes) std::printf("%12s", ("N=" + Thousands(n)).c_str());
    std::printf("%10s\n", "exponent");
  }
  // A line of figures, each printed by show; the exponent of the last two.
  void Line(const std::string& label, const Figures& f, const std::function<std::string(double)>& show,
            bool exponent = true) const {
    std::printf("   %-*s", kLabelWidth, label.c_str());
    for (double v : f) std::printf("%12s", v < 0 ? "skipped" : show(v).c_str());
    if (!exponent)
      std::printf("\n");
    else if (f[2] > 0 && f[3] > 0)
      std::printf("%10.2f\n", Exponent(f[2], f[3], 5));
    else
      std::printf("%10s\n", "-");
  }
  // The framework's figures: printed, and their exponent checked.
  void Framework(const std::string& label, const Figures& f, const std::function<std::string(double)>& show) {
    Line(label, f, show);
    if (f[2] > 0 && f[3] > 0) {
      const double e = Exponent(f[2], f[3], 5);
      if (!(e <= kMaxExponent))
        misses.push_back("exponent " + Format("%.2f", e) + " > " + Format("%.2f", kMaxExponent));
      return;
    }
    const int skipped = static_cast<int>(std::find_if(f.begin(), f.end(), [](double v) { return v <= 0; }) - f.begin());
    std::string miss =
        "N=" + Thousands(kSizes[skipped]) + (skipped + 1 < kSizeCount ? " and up" : "") + " skipped (over budget)";
    if (skipped >= 2)
      miss += Format(", exponent %.2f",
                     Exponent(f[skipped - 2], f[skipped - 1], double(kSizes[skipped - 1]) / kSizes[skipped - 2])) +
              " from N=" + Thousands(kSizes[skipped - 2]) + " to " + Thousands(kSizes[skipped - 1]);
    misses.push_back(miss);
  }
  void Ratio(const Figures& fw, const Figures& base) const {
    std::printf("   %-*s", kLabelWidth, "ratio");
    for (int i = 0; i < kSizeCount; ++i)
      std::printf("%12s", fw[i] > 0 && base[i] > 0 ? Times(fw[i] / base[i]).c_str() : "-");
    std::printf("\n");
  }
  // Checks a limit at every size: ok(i) says whether size i meets it.
  void AtEverySize(const std::string& what, const Figures& fw, const std::function<bool(int)>& ok) {
    for (int i = 0; i < kSizeCount; ++i) {
      if (fw[i] < 0) {
        misses.push_back(what + ": N=" + Thousands(kSizes[i]) + " skipped (over budget)");
        return;
      }
      if (!ok(i)) {
        misses.push_back(what + ": missed at N=" + Thousands(kSizes[i]));
        return;
      }
    }
  }
  void Verdict() {
    if (misses.empty()) {
      std::printf("   -> target met\n\n");
    } else {
      std::printf("   -> MISSED:");
      for (size_t i = 0; i < misses.size(); ++i) std::printf("%s %s", i ? ";" : "", misses[i].c_str());
      std::printf("\n\n");
      missedAny = true;
    }
    std::fflush(stdout);
  }
};

// The usual table: the framework's figures, the baseline's and their ratio.
void Report(Table& t, const std::string& fwLabel, const Figures& fw, const std::string& baseLabel,
            const Figures& base) {
  t.Header();
  t.Framework(fwLabel, fw, Duration);
  t.Line("baseline: " + baseLabel, base, Duration);
  t.Ratio(fw, base);
}

// Runs a row that measures one series a side and prints its usual table.
void SimpleRow(const std::string& title, const std::string& fwLabel, Probe fw, const std::string& baseLabel,
               Probe base) {
  Side f{fw}, b{base};
  Measure(f, b, 1);
  Table t{title, "exponent <= 1.20"};
  Report(t, fwLabel, f.best[0], baseLabel, b.best[0]);
  t.Verdict();
}

// The grid the designed form uses: ten controls a row.
int GridLeft(int i) { return 10 + (i % 10) * 120; }
int GridTop(int i) { return 10 + (i / 10) * 26; }

// A hidden form of n named controls with texts: labels, edits, buttons and
// check boxes in turn, as the designed form of the last row has them.
Forms::TForm* NamedForm(int n) {
  auto* form = new Forms::TForm(nullptr);
  form->SetName("ScaleForm");
  form->SetText("Scale bench");
  form->SetClientWidth(1210);
  form->SetClientHeight(700);
  for (int i = 0; i < n; ++i) {
    Controls::TControl* c = NewControl(form, i % 4);
    c->SetName("Control" + std::to_string(i));
    c->SetParent(form);
    c->SetBounds(GridLeft(i), GridTop(i), 110, 23);
    c->SetText("Control " + std::to_string(i));
  }
  return form;
}

// A hidden form of n unnamed edits, buttons and check boxes in a grid.
Forms::TForm* GridForm(int n) {
  auto* form = new Forms::TForm(nullptr);
  form->SetBounds(0, 0, 640, 480);
  for (int i = 0; i < n; ++i) {
    Controls::TWinControl* c = NewWindowedControl(form, i);
    c->SetParent(form);
    c->SetBounds(GridLeft(i), GridTop(i), 110, 23);
    c->SetText("Control");
  }
  return form;
}

// The same windows made plainly: a top-level window and n child windows.
OwnedWindow PlainGrid(int n) {
  static const ATOM frame = [] {
    WNDCLASSA wc{};
    wc.lpfnWndProc = &DefWindowProcA;
    wc.hInstance = GetModuleHandleA(nullptr);
    wc.hbrBackground = reinterpret_cast<HBRUSH>(static_cast<INT_PTR>(COLOR_BTNFACE + 1));
    wc.lpszClassName = "ScalePlainForm";
    return RegisterClassA(&wc);
  }();
  (void)frame;
  static const char* const kClasses[] = {"EDIT", "BUTTON", "BUTTON"};
  static const DWORD kStyles[] = {WS_TABSTOP | ES_AUTOHSCROLL, WS_TABSTOP | BS_PUSHBUTTON, WS_TABSTOP | BS_3STATE};
  OwnedWindow form(CreateWindowExA(0, "ScalePlainForm", "", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, 0, 0, 640, 480,
                                   nullptr, nullptr, GetModuleHandleA(nullptr), nullptr));
  for (int i = 0; i < n; ++i) {
    HWND c = CreateWindowExA(i % 3 == 0 ? WS_EX_CLIENTEDGE : 0, kClasses[i % 3], "Control",
                             WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | kStyles[i % 3], GridLeft(i), GridTop(i), 110, 23,
                             form.get(), nullptr, GetModuleHandleA(nullptr), nullptr);
    SendMessageA(c, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)), FALSE);
  }
  return form;
}

std::string ItemName(int i) { return "Item" + std::to_string(i); }

// What rows make once per size (a T made from n) and keep while they run.
template <class T>
class PerSize {
 public:
  T& Of(int n) { return made_.try_emplace(n, n).first->second; }

 private:
  std::map<int, T> made_;
};

// An owner of n components named Item0, Item1, ...
struct NamedOwner {
  explicit NamedOwner(int n) : owner(std::make_unique<Classes::TComponent>(nullptr)) {
    for (int i = 0; i < n; ++i) (new Classes::TComponent(owner.get()))->SetName(ItemName(i));
  }
  std::unique_ptr<Classes::TComponent> owner;
};
using NamedOwners = PerSize<NamedOwner>;

// Lookups go to these places, spread evenly over a list of n.
std::vector<int> LookupPlaces(int n) {
  constexpr int kPlaces = 64;
  std::vector<int> places;
  for (int k = 0; k < kPlaces; ++k) places.push_back(static_cast<int>((2L * k + 1) * n / (2 * kPlaces)));
  return places;
}

void OwnedComponents() {
  SimpleRow(
      "1. N components owned by one owner: made, then the owner freed", "owned, freed with their owner",
      [](int n, double* out) {
        const int reps = Repeats(n, 2000);
        const double start = Now();
        for (int r = 0; r < reps; ++r) {
          auto* owner = new Classes::TComponent(nullptr);
          for (int i = 0; i < n; ++i) new Classes::TComponent(owner);
          delete owner;
        }
        out[0] = (Now() - start) / reps;
        return reps;
      },
      "unowned, made and freed",
      [](int n, double* out) {
        std::vector<Classes::TComponent*> list(n);
        const int reps = Repeats(n, 2000);
        const double start = Now();
        for (int r = 0; r < reps; ++r) {
          for (auto& c : list) c = new Classes::TComponent(nullptr);
          for (int i = n - 1; i >= 0; --i) delete list[i];
        }
        out[0] = (Now() - start) / reps;
        return reps;
      });
}

void AddDelete(NamedOwners& owners) {
  constexpr int kPairs = 1000;
  SimpleRow(
      "2. One add and one delete in an owner of N components, per add+delete", "new component of the owner, deleted",
      [&](int n, double* out) {
        Classes::TComponent* owner = owners.Of(n).owner.get();
        const double start = Now();
        for (int k = 0; k < kPairs; ++k) {
          auto* c = new Classes::TComponent(owner);
          delete c;
        }
        out[0] = (Now() - start) / kPairs;
        return 1;
      },
      "new unowned component, deleted",
      [](int, double* out) {
        const double start = Now();
        for (int k = 0; k < kPairs; ++k) {
          auto* c = new Classes::TComponent(nullptr);
          delete c;
        }
        out[0] = (Now() - start) / kPairs;
        return 1;
      });
}

// n panels into a hidden form, aligned to the top or placed where alignment
// would put them; then the form freed.
int Panels(int n, bool aligned, double* out) {
  constexpr int kHeight = 20;
  const int reps = Repeats(n, 200);
  const double start = Now();
  for (int r = 0; r < reps; ++r) {
    auto* form = new Forms::TForm(nullptr);
    form->SetBounds(0, 0, 640, 480);
    const int width = form->GetClientWidth();
    for (int i = 0; i < n; ++i) {
      auto* panel = new Extctrls::TPanel(form);
      if (aligned) {
        panel->SetHeight(kHeight);
        panel->SetAlign(Controls::alTop);
      } else {
        panel->SetBounds(0, i * kHeight, width, kHeight);
      }
      panel->SetParent(form);
    }
    delete form;
  }
  out[0] = (Now() - start) / reps;
  return reps;
}

void AlignedPanels() {
  SimpleRow(
      "3. N alTop panels put into a hidden form, then the form freed", "alTop panels",
      [](int n, double* out) { return Panels(n, true, out); }, "panels placed by SetBounds",
      [](int n, double* out) { return Panels(n, false, out); });
}

double ArrayAppends(int n, int reps) {
  const double start = Now();
  for (int r = 0; r < reps; ++r) {
    MyValArray<int> a;
    for (int i = 0; i < n; ++i) a.Add(i);
    Keep(a.Item(n - 1));
  }
  return (Now() - start) / reps;
}

double VectorAppends(int n, int reps) {
  const double start = Now();
  for (int r = 0; r < reps; ++r) {
    std::vector<int> v;
    for (int i = 0; i < n; ++i) v.push_back(i);
    Keep(v.data());
  }
  return (Now() - start) / reps;
}

void Appends() {
  Side f{[](int n, double* out) {
    const int reps = Repeats(n, 100000);
    out[0] = ArrayAppends(n, reps);
    return reps;
  }};
  Side b{[](int n, double* out) {
    const int reps = Repeats(n, 100000);
    out[0] = VectorAppends(n, reps);
    return reps;
  }};
  Measure(f, b, 1);
  Table t{"4. N appends to the base package's growable array (MyValArray<int>::Add)", "exponent <= 1.20"};
  Report(t, "MyValArray<int>::Add", f.best[0], "std::vector<int>::push_back", b.best[0]);

  // A size far past the others, where a fixed growth step shows most.
  constexpr int kLarge = 100000;
  double large = -1, largeBase = -1;
  if (WithinBudget(f, kSizeCount, kLarge)) {
    for (int round = 0; round < 5; ++round) {
      const double t1 = ArrayAppends(kLarge, 1), t2 = VectorAppends(kLarge, 1);
      large = large < 0 ? t1 : std::min(large, t1);
      largeBase = largeBase < 0 ? t2 : std::min(largeBase, t2);
    }
  }
  std::printf("   %-*s", kLabelWidth, "100,000 appends");
  if (large < 0) {
    std::printf("skipped (over budget)\n");
    t.misses.push_back("100,000 appends skipped (over budget)");
  } else {
    const double e = f.best[0][3] > 0 ? Exponent(f.best[0][3], large, double(kLarge) / kSizes[3]) : -1;
    std::printf("%s, baseline %s, ratio %s, exponent from N=5,000 %.2f\n", Duration(large).c_str(),
                Duration(largeBase).c_str(), Times(large / largeBase).c_str(), e);
    if (!(e >= 0 && e <= kMaxExponent))
      t.misses.push_back("exponent from 5,000 to 100,000 " + Format("%.2f", e) + " > " + Format("%.2f", kMaxExponent));
  }
  t.Verdict();
}

// A hidden form of n controls and its stream, written once.
struct WrittenForm {
  explicit WrittenForm(int n) : source(NamedForm(n)) { stream.WriteComponent(source.get()); }
  std::unique_ptr<Forms::TForm> source;
  Classes::TMemoryStream stream;
};

void ReadForm() {
  PerSize<WrittenForm> written;
  Side f{[&](int n, double* out) {
    WrittenForm& w = written.Of(n);
    const int reps = Repeats(n, 200);
    double total = 0;
    for (int r = 0; r < reps; ++r) {
      // A new, hidden root: the controls read into it make no windows.
      auto root = std::make_unique<Forms::TForm>(nullptr);
      const double start = Now();
      w.stream.SetPosition(0);
      w.stream.ReadComponent(root.get());
      total += Now() - start;
      if (root->GetControlCount() != n) throw std::runtime_error("the form read back has the wrong control count");
    }
    out[0] = total / reps;
    return reps;
  }};
  Side b{[&](int n, double* out) {
    WrittenForm& w = written.Of(n);
    const int reps = Repeats(n, 200);
    Classes::TMemoryStream stream;
    const double start = Now();
    for (int r = 0; r < reps; ++r) {
      stream.Clear();
      stream.WriteComponent(w.source.get());
    }
    out[0] = (Now() - start) / reps;
    return reps;
  }};
  Measure(f, b, 1);

  Figures bytes = kNone;
  for (int i = 0; i < kSizeCount; ++i)
    if (f.best[0][i] > 0 || b.best[0][i] > 0) bytes[i] = static_cast<double>(written.Of(kSizes[i]).stream.GetSize());
  constexpr double kMinRate = 30e6;
  Table t{"5. Reading a form of N controls, objects only (no windows), from memory",
          "exponent <= 1.20, reading >= 30 MB/s at every N"};
  Report(t, "ReadComponent", f.best[0], "WriteComponent of the same form", b.best[0]);
  auto rate = [&](const Figures& time) {
    Figures r = kNone;
    for (int i = 0; i < kSizeCount; ++i)
      if (time[i] > 0 && bytes[i] > 0) r[i] = bytes[i] / time[i];
    return r;
  };
  const Figures readRate = rate(f.best[0]), writeRate = rate(b.best[0]);
  auto mbs = [](double v) { return Format("%.1f MB/s", v / 1e6); };
  t.Line("reading", readRate, mbs, false);
  t.Line("baseline: writing", writeRate, mbs, false);
  t.Line("stream size", bytes, [](double v) { return Thousands(static_cast<long>(v)) + " B"; });
  t.AtEverySize("reading >= 30 MB/s", f.best[0], [&](int i) { return readRate[i] >= kMinRate; });
  t.Verdict();
}

template <class T>
int MakeAndFree(int n, double* out) {
  std::vector<T*> list(n);
  const int reps = Repeats(n, 2000);
  const double start = Now();
  for (int r = 0; r < reps; ++r) {
    for (auto& c : list) c = new T(nullptr);
    for (int i = n - 1; i >= 0; --i) delete list[i];
  }
  out[0] = (Now() - start) / reps / n;
  return reps;
}

void WindowlessControl() {
  Side f{&MakeAndFree<Stdctrls::TLabel>}, b{&MakeAndFree<Classes::TComponent>};
  Measure(f, b, 1);
  constexpr double kLimit = 5e-6;
  Table t{"6. A control without a window: N parent-less TLabels made and freed, per control",
          "exponent <= 1.20, <= 5 us per control at every N"};
  Report(t, "TLabel, per control", f.best[0], "TComponent, per component", b.best[0]);
  t.AtEverySize("<= 5 us", f.best[0], [&](int i) { return f.best[0][i] <= kLimit; });
  t.Verdict();
}

// The shown form's rows, measured on the same forms: built and shown, then
// resized a few times, then freed. Series: 0 resize, 1 free, 2 build.
enum { kResize, kFree, kBuild, kSessionSeries };
constexpr int kResizes = 4;

int FrameworkSession(int n, double* out) {
  double start = Now();
  Forms::TForm* form = GridForm(n);
  form->Show();
  Pump();
  out[kBuild] = Now() - start;
  out[kResize] = -1;
  for (int k = 0; k < kResizes; ++k) {
    start = Now();
    form->SetBounds(0, 0, k % 2 ? 640 : 700, k % 2 ? 480 : 520);
    Pump();
    const double took = Now() - start;
    if (out[kResize] < 0 || took < out[kResize]) out[kResize] = took;
  }
  start = Now();
  delete form;
  Pump();
  out[kFree] = Now() - start;
  return 1;
}

int PlainSession(int n, double* out) {
  double start = Now();
  OwnedWindow form = PlainGrid(n);
  ShowWindow(form.get(), SW_SHOW);
  SetForegroundWindow(form.get());
  Pump();
  out[kBuild] = Now() - start;
  out[kResize] = -1;
  for (int k = 0; k < kResizes; ++k) {
    start = Now();
    SetWindowPos(form.get(), nullptr, 0, 0, k % 2 ? 640 : 700, k % 2 ? 480 : 520, SWP_NOZORDER | SWP_NOACTIVATE);
    Pump();
    const double took = Now() - start;
    if (out[kResize] < 0 || took < out[kResize]) out[kResize] = took;
  }
  start = Now();
  form.reset();  // DestroyWindow
  Pump();
  out[kFree] = Now() - start;
  return 1;
}

// A row whose limit is a ratio to the baseline at every size.
void RatioRow(const std::string& title, double limit, const std::string& fwLabel, const Figures& fw,
              const std::string& baseLabel, const Figures& base) {
  Table t{title, "exponent <= 1.20, <= " + Format("%.1f", limit) + "x the baseline at every N"};
  Report(t, fwLabel, fw, baseLabel, base);
  t.AtEverySize("ratio <= " + Format("%.1fx", limit), fw,
                [&](int i) { return base[i] > 0 && fw[i] / base[i] <= limit; });
  t.Verdict();
}

// A string list of n and its plain copy, with keys to look up.
struct Lists {
  explicit Lists(int n) {
    for (int i = 0; i < n; ++i) {
      list.Add(ItemName(i));
      plain.push_back(ItemName(i));
    }
    for (int p : LookupPlaces(n)) {
      keys.push_back(ItemName(p));
      plainKeys.push_back(ItemName(p));
    }
  }
  Classes::TStringList list;
  std::vector<std::string> plain;
  std::vector<System::AnsiString> keys;
  std::vector<std::string> plainKeys;
};

// n strings in a shuffled order, a quarter of them repeats.
struct Additions {
  explicit Additions(int n) {
    std::vector<int> order(n);
    for (int i = 0; i < n; ++i) order[i] = i % std::max(1, n - n / 4);
    std::shuffle(order.begin(), order.end(), std::mt19937(12345));
    for (int i : order) {
      strings.push_back(ItemName(i));
      plain.push_back(ItemName(i));
    }
  }
  std::vector<System::AnsiString> strings;
  std::vector<std::string> plain;
};

void Lookups(NamedOwners& owners) {
  constexpr int kLookups = 512;
  PerSize<Lists> lists;
  auto plainFind = [&](int n, double* out) {
    const Lists& l = lists.Of(n);
    long found = 0;
    const double start = Now();
    for (int k = 0; k < kLookups; ++k) {
      const auto& key = l.plainKeys[k % l.plainKeys.size()];
      found += std::find(l.plain.begin(), l.plain.end(), key) - l.plain.begin();
    }
    out[0] = (Now() - start) / kLookups;
    Keep(&found);
    return 1;
  };
  SimpleRow(
      "9a. TStringList::IndexOf on an unsorted list of N, per lookup", "IndexOf",
      [&](int n, double* out) {
        const Lists& l = lists.Of(n);
        long found = 0;
        const double start = Now();
        for (int k = 0; k < kLookups; ++k) found += l.list.IndexOf(l.keys[k % l.keys.size()]);
        out[0] = (Now() - start) / kLookups;
        Keep(&found);
        return 1;
      },
      "std::find in a vector<std::string>", plainFind);
  SimpleRow(
      "9b. FindComponent on an owner of N components, per lookup", "FindComponent",
      [&](int n, double* out) {
        const Classes::TComponent* owner = owners.Of(n).owner.get();
        const Lists& l = lists.Of(n);
        long found = 0;
        const double start = Now();
        for (int k = 0; k < kLookups; ++k) found += owner->FindComponent(l.keys[k % l.keys.size()]) != nullptr;
        out[0] = (Now() - start) / kLookups;
        Keep(&found);
        return 1;
      },
      "std::find in a vector<std::string>", plainFind);

  PerSize<Additions> additions;
  SimpleRow(
      "9c. N strings added to a sorted TStringList (Duplicates dupIgnore), a quarter repeats",
      "sorted TStringList::Add",
      [&](int n, double* out) {
        const Additions& a = additions.Of(n);
        const int reps = Repeats(n, 1000);
        const double start = Now();
        for (int r = 0; r < reps; ++r) {
          Classes::TStringList list;
          list.SetSorted(true);
          list.SetDuplicates(Classes::dupIgnore);
          for (const auto& s : a.strings) list.Add(s);
          Keep(&list);
        }
        out[0] = (Now() - start) / reps;
        return reps;
      },
      "std::set<std::string>::insert",
      [&](int n, double* out) {
        const Additions& a = additions.Of(n);
        const int reps = Repeats(n, 1000);
        const double start = Now();
        for (int r = 0; r < reps; ++r) {
          std::set<std::string> set;
          for (const auto& s : a.plain) set.insert(s);
          Keep(&set);
        }
        out[0] = (Now() - start) / reps;
        return reps;
      });
}

// The designed form against the same form made in code, each shown once it
// is made; freeing is not timed.
void DesignedForm() {
  constexpr int kControls = SCALE_FORM_CONTROLS;
  auto timed = [](auto make) {
    const double start = Now();
    Forms::TForm* form = make();
    form->Show();
    Pump();
    const double took = Now() - start;
    if (form->GetControlCount() != kControls) throw std::runtime_error("the form has the wrong control count");
    delete form;
    Pump();
    return took;
  };
  auto designed = [] { return static_cast<Forms::TForm*>(new TScaleForm(nullptr)); };
  auto code = [] { return NamedForm(kControls); };
  double read = -1, made = -1;
  for (int round = 0; round < 5; ++round) {
    const double t1 = timed(designed), t2 = timed(code);
    read = read < 0 ? t1 : std::min(read, t1);
    made = made < 0 ? t2 : std::min(made, t2);
  }
  constexpr double kLimit = 1.3;
  Table t{"11. A form of " + Thousands(kControls) + " controls read from its resource and shown (best of 5)",
          "<= 1.30x the same form made in code and shown"};
  std::printf("%s\n   target: %s\n", t.title.c_str(), t.target.c_str());
  std::printf("   %-*s%12s\n", kLabelWidth, "read from its resource, shown", Duration(read).c_str());
  std::printf("   %-*s%12s\n", kLabelWidth, "baseline: made in code, shown", Duration(made).c_str());
  std::printf("   %-*s%12s\n", kLabelWidth, "ratio", Times(read / made).c_str());
  if (!(read / made <= kLimit)) t.misses.push_back("ratio " + Times(read / made) + " > " + Times(kLimit));
  t.Verdict();
}

// The rows named on the command line ("bench_scale 5 9"), or all of them.
std::vector<std::string> chosenRows;

bool Chosen(const std::string& name) {
  if (chosenRows.empty()) return true;
  for (const std::string& row : chosenRows)
    for (size_t at = 0; (at = name.find(row, at)) != std::string::npos; at += row.size()) {
      const size_t end = at + row.size();
      if ((at == 0 || name[at - 1] == ' ') && (end == name.size() || name[end] == ',')) return true;
    }
  return false;
}

// Runs a row; an error it raises misses its target and the next row runs.
void Row(const char* name, const std::function<void()>& row) {
  if (!Chosen(name)) return;
  try {
    row();
  } catch (const std::exception& e) {
    std::printf("%s: MISSED, it raised: %s\n\n", name, e.what());
    missedAny = true;
  }
}

}  // namespace

int main(int argc, char** argv) {
  chosenRows.assign(argv + 1, argv + argc);
  Forms::Application->Initialize();
  // Window classes and the shared font are made once before anything is timed.
  double warm[kSessionSeries];
  FrameworkSession(10, warm);
  PlainSession(10, warm);
  delete NamedForm(10);

  std::printf(
      "How costs grow with N (best of repeated runs at each size; exponent = log(t5000/t1000)/log 5;\n"
      "a size is skipped once a run took over %.0f s or is expected to take over %.0f s)\n\n",
      kBudget, kExpectedLimit);
  NamedOwners owners;  // rows 2 and 9 share them
  Row("1", OwnedComponents);
  Row("2", [&] { AddDelete(owners); });
  Row("3", AlignedPanels);
  Row("4", Appends);
  Row("5", ReadForm);
  Row("6", WindowlessControl);
  Side f{&FrameworkSession}, b{&PlainSession};
  Row("7, 8, 10", [&] { Measure(f, b, kSessionSeries); });
  Row("7", [&] {
    RatioRow("7. Resizing a shown form of N controls once (SetBounds, then messages pumped)", 3.0, "form SetBounds",
             f.best[kResize], "plain window, SetWindowPos", b.best[kResize]);
  });
  Row("8", [&] {
    RatioRow("8. Freeing a shown form of N controls (then messages pumped)", 1.5, "delete form", f.best[kFree],
             "DestroyWindow, same windows", b.best[kFree]);
  });
  Row("9", [&] { Lookups(owners); });
  Row("10", [&] {
    Table t{"10. Building and showing a form of N edits, buttons and check boxes (Show, messages pumped)",
            "exponent <= 1.20"};
    Report(t, "form made, shown", f.best[kBuild], "CreateWindowEx, same windows, shown", b.best[kBuild]);
    t.Verdict();
  });
  Row("11", DesignedForm);
  return missedAny ? 1 : 0;
}
