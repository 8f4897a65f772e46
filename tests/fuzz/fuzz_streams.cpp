// fuzz_streams --corpus DIR [--inputs N] [--seed S] [--save DIR]
//
// Feeds form streams to every reader of them: read into a form, read into a
// new root, binary to text, text to binary, and the form compiler's path (text
// to binary, then read into the form whose design it is, as a form reads its
// resource). First the corpus's files as they are (those in seeds/ must read
// on every path), then N inputs made from them by mutation. Counts crashes
// (structured exceptions, a terminate), hangs (an input running over 2 s),
// errors of a type the path does not document and leaks (components kept by
// a failed read, forms, windows and the handles the framework tracks), prints
// the counts and fails on any. --save writes each failing input to DIR.
#include <windows.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include "platform/ostrel/owned_handle.h"
#include "platform/vcl/core/class_registry.h"
#include "platform/vcl/core/filer.h"
#include "platform/vcl/core/object_text.h"
#include "platform/vcl/forms/application.h"
#include "platform/vcl/forms/forms.h"
#include "platform/vcl/stdctrls/ext_panels.h"
#include "platform/vcl/stdctrls/std_buttons.h"
#include "platform/vcl/stdctrls/std_edits.h"
#include "tests/fuzz/mutations.h"
#include "tests/platform/vcl/test_helpers.h"

// The form the corpus designs: fields, a handler, values of kinds the
// standard classes do not publish.
class TFuzzForm : public Forms::TForm {
  VCL_CLASS();

 public:
  using TForm::TForm;
  Extctrls::TPanel* Panel1 = nullptr;
  Stdctrls::TButton* OkButton = nullptr;
  Stdctrls::TEdit* NameEdit = nullptr;
  void OkClick(System::TObject*) {}
  double GetRatio() const { return ratio_; }
  void SetRatio(double value) { ratio_ = value; }
  System::TDateTime GetDue() const { return due_; }
  void SetDue(System::TDateTime value) { due_ = value; }

 private:
  double ratio_ = 0;
  System::TDateTime due_;
};
VCL_COMPONENT_IMPL(TFuzzForm, Forms::TForm, VCL_FIELD(Panel1), VCL_FIELD(OkButton), VCL_FIELD(NameEdit),
                   VCL_METHOD(OkClick, System::TNotifyEvent), VCL_PROPERTY(Ratio), VCL_PROPERTY(Due))

namespace {

using namespace Classes;
using fuzz::Sample;
using vcl_test::Convert;
using vcl_test::ThreadWindows;

constexpr ULONGLONG kHangMs = 2000;
constexpr int kGiveUp = 20;  // crashes and hangs after which the run stops

// ---- the paths, on the worker thread ----

// What one input did on its paths.
struct Findings {
  int read = 0, refused = 0;
  std::string undefined;  // errors of a type the path does not document
  std::string leaked;     // what a path or the whole input left behind
};

TComponent* Read(const std::string& bytes, TComponent* root, TComponent* owner) {
  TMemoryStream s;
  s.WriteBuffer(bytes.data(), static_cast<long>(bytes.size()));
  s.SetPosition(0);
  TReader reader(&s);
  return reader.ReadRootComponent(root, owner);
}

bool ReadErrors(const Sysutils::Exception& e) {
  return dynamic_cast<const EReadError*>(&e) || dynamic_cast<const EClassNotFound*>(&e);
}
bool ConversionErrors(const Sysutils::Exception& e) { return dynamic_cast<const EReadError*>(&e); }
bool ParserErrors(const Sysutils::Exception& e) { return dynamic_cast<const EParserError*>(&e); }

// Runs one path; true when it read the input. An error that is not among
// the path's own is noted.
template <class Run>
bool Path(const char* name, Run&& run, bool (*documented)(const Sysutils::Exception&), Findings& f) {
  std::string error;
  try {
    run();
    ++f.read;
    return true;
  } catch (const Sysutils::Exception& e) {
    if (documented(e)) {
      ++f.refused;
      return false;
    }
    error = std::string(e.ClassName().c_str()) + " \"" + e.Message.c_str() + "\"";
  } catch (const std::exception& e) {
    error = std::string("std::exception \"") + e.what() + "\"";
  } catch (...) {
    error = "an exception of unknown type";
  }
  f.undefined += std::string(name) + ": " + error + "; ";
  return false;
}

void IntoForm(const char* name, const std::string& bytes, Findings& f) {
  auto* form = new TFuzzForm(nullptr);
  if (!Path(
          name, [&] { Read(bytes, form, nullptr); }, ReadErrors, f) &&
      (form->GetComponentCount() || form->GetControlCount() || form->OkButton || form->Panel1 || form->NameEdit ||
       form->GetComponentState().Contains(csLoading)))
    f.leaked += std::string(name) + ": the form kept what the failed read made; ";
  delete form;
}

void RunPaths(const std::string& input, TComponent* holder, Findings& f) {
  if (input.compare(0, 4, "TPF0") == 0) {
    IntoForm("read into a form", input, f);
    TComponent* root = nullptr;
    Path(
        "read into a new root", [&] { root = Read(input, nullptr, holder); }, ReadErrors, f);
    delete root;
    if (holder->GetComponentCount()) f.leaked += "read into a new root: a root was left; ";
    while (holder->GetComponentCount()) delete holder->GetComponent(0);
    Path(
        "binary to text", [&] { Convert(&ObjectBinaryToText, input); }, ConversionErrors, f);
  } else {
    std::string compiled;
    if (Path(
            "text to binary", [&] { compiled = Convert(&ObjectTextToBinary, input); }, ParserErrors, f))
      IntoForm("compiled and read into its form", compiled, f);
  }
}

// What the framework holds that a read could leave behind.
struct Counts {
  int windows = 0, forms = 0;
  long handles[OK_Count] = {};
};

Counts Now() {
  Counts c;
  c.windows = ThreadWindows();
  c.forms = Forms::Screen->GetFormCount();
  for (int k = 0; k < OK_Count; ++k) c.handles[k] = OwnedHandleCount(static_cast<OwnedKind_Types>(k));
  return c;
}

std::string Difference(const Counts& before, const Counts& after) {
  static const char* const kinds[OK_Count] = {"GDI objects", "memory DCs", "window DCs",     "owned windows",
                                              "menus",       "icons",      "kernel handles", "files",
                                              "views",       "modules",    "memory blocks"};
  std::string d;
  const auto note = [&](const char* what, long a, long b) {
    if (a != b) d += std::string(what) + " " + std::to_string(a) + " -> " + std::to_string(b) + ", ";
  };
  note("windows", before.windows, after.windows);
  note("forms", before.forms, after.forms);
  for (int k = 0; k < OK_Count; ++k) note(kinds[k], before.handles[k], after.handles[k]);
  return d;
}

void DrainMessages() {
  MSG msg;
  while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) DispatchMessageA(&msg);
}

// ---- the worker and its watchdog ----

struct Shared {
  HANDLE start = nullptr, done = nullptr;  // auto-reset events
  const std::string* input = nullptr;      // null: the worker ends
  Findings findings;
  std::atomic<ULONGLONG> started{0};  // when the run going on began
  std::atomic<DWORD> workerId{0};
  std::atomic<DWORD> crash{0};  // the code of the first fatal exception of the input
} g;

bool Fatal(DWORD code) { return (code & 0xF0000000u) == 0xC0000000u; }

// Sees every exception first: a fatal one on the worker is a crash even if
// something catches it on its way up.
LONG CALLBACK FirstChance(EXCEPTION_POINTERS* e) {
  const DWORD code = e->ExceptionRecord->ExceptionCode;
  DWORD none = 0;
  if (Fatal(code) && GetCurrentThreadId() == g.workerId) g.crash.compare_exchange_strong(none, code);
  return EXCEPTION_CONTINUE_SEARCH;
}

[[noreturn]] void WorkerDies(DWORD code) {
  DWORD none = 0;
  g.crash.compare_exchange_strong(none, code);
  ExitThread(code);
}

LONG WINAPI Unhandled(EXCEPTION_POINTERS* e) {
  if (GetCurrentThreadId() == g.workerId) WorkerDies(e->ExceptionRecord->ExceptionCode);
  std::fprintf(stderr, "fuzz_streams: the harness itself crashed (exception %08lX)\n",
               e->ExceptionRecord->ExceptionCode);
  std::fflush(stderr);
  TerminateProcess(GetCurrentProcess(), 3);
  return EXCEPTION_EXECUTE_HANDLER;
}

constexpr DWORD kTerminated = 0xE0000001;  // std::terminate or abort on the worker

[[noreturn]] void Terminated() {
  if (GetCurrentThreadId() == g.workerId) WorkerDies(kTerminated);
  std::fprintf(stderr, "fuzz_streams: the harness itself terminated\n");
  std::_Exit(3);
}

DWORD WINAPI Worker(void*) {
  TComponent holder(nullptr);
  // Runs the input's paths; what they left behind ("" for nothing).
  const auto run = [&](Findings& f) {
    g.started = GetTickCount64();
    const Counts before = Now();
    RunPaths(*g.input, &holder, f);
    DrainMessages();
    return Difference(before, Now());
  };
  for (;;) {
    WaitForSingleObject(g.start, INFINITE);
    if (!g.input) return 0;
    Findings f, again;
    // The first of a kind may make what lives for the process: a leak
    // leaves something behind the second time too.
    if (!run(f).empty())
      if (const std::string left = run(again); !left.empty()) f.leaked += "left behind: " + left;
    g.findings = std::move(f);
    SetEvent(g.done);
  }
}

class Runner {
 public:
  Runner() {
    g.start = CreateEventA(nullptr, FALSE, FALSE, nullptr);
    g.done = CreateEventA(nullptr, FALSE, FALSE, nullptr);
    AddVectoredExceptionHandler(1, FirstChance);
    SetUnhandledExceptionFilter(Unhandled);
    std::set_terminate(Terminated);
    std::signal(SIGABRT, [](int) { Terminated(); });
    StartWorker();
  }
  ~Runner() {
    g.input = nullptr;
    SetEvent(g.start);
    WaitForSingleObject(thread_, 5000);
    CloseHandle(thread_);
  }

  enum Result { kDone, kCrash, kHang };
  // Runs input on the worker; a crash or hang costs the worker, and a new one
  // takes its place.
  Result Run(const std::string& input, Findings& findings, std::string& what) {
    g.input = &input;
    g.crash = 0;
    g.started = GetTickCount64();
    SetEvent(g.start);
    for (;;) {
      const HANDLE waits[] = {g.done, thread_};
      const DWORD w = MsgWaitForMultipleObjects(2, waits, FALSE, 100, QS_ALLINPUT);
      if (w == WAIT_OBJECT_0) {
        findings = std::move(g.findings);
        if (!g.crash) return kDone;
        what = Code(g.crash);
        return kCrash;  // caught on its way up, but a crash all the same
      }
      if (w == WAIT_OBJECT_0 + 1) {
        what = Code(g.crash);
        Restart();
        return kCrash;
      }
      if (w == WAIT_OBJECT_0 + 2) {
        DrainMessages();
        continue;
      }
      if (GetTickCount64() - g.started > kHangMs) {
        what = g.crash ? "stopped in " + Code(g.crash) : "over " + std::to_string(kHangMs / 1000) + " s";
        TerminateThread(thread_, 1);
        Restart();
        return kHang;
      }
    }
  }

 private:
  static std::string Code(DWORD code) {
    if (code == kTerminated) return "std::terminate or abort";
    char text[32];
    std::snprintf(text, sizeof text, "exception %08lX", code);
    return text;
  }
  void StartWorker() {
    DWORD id = 0;
    thread_ = CreateThread(nullptr, 0, Worker, nullptr, 0, &id);
    g.workerId = id;
  }
  void Restart() {
    WaitForSingleObject(thread_, 1000);
    CloseHandle(thread_);
    StartWorker();
  }
  HANDLE thread_ = nullptr;
};

// ---- the run ----

std::string ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

// The files of dir/seeds (valid ones) and dir/regress, the texts among the
// seeds also compiled, so that every seed has a binary form to damage.
std::vector<Sample> LoadCorpus(const std::string& dir) {
  std::vector<Sample> corpus;
  for (const char* folder : {"seeds", "regress"}) {
    std::vector<std::string> names;
    WIN32_FIND_DATAA found;
    const HANDLE search = FindFirstFileA((dir + "/" + folder + "/*").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) continue;
    do {
      if (!(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)) names.push_back(found.cFileName);
    } while (FindNextFileA(search, &found));
    FindClose(search);
    std::sort(names.begin(), names.end());
    for (const auto& n : names) {
      Sample s{std::string(folder) + "/" + n, ReadFile(dir + "/" + folder + "/" + n), std::string(folder) == "seeds"};
      if (s.valid && !s.Binary()) {
        try {
          corpus.push_back({s.name + " compiled", Convert(&ObjectTextToBinary, s.bytes), true});
        } catch (const Sysutils::Exception& e) {
          std::fprintf(stderr, "fuzz_streams: %s does not compile: %s\n", s.name.c_str(), e.Message.c_str());
          corpus.push_back({s.name + " (does not compile)", "", false});
        }
      }
      corpus.push_back(std::move(s));
    }
  }
  return corpus;
}

struct Totals {
  int inputs = 0, crashes = 0, hangs = 0, undefined = 0, leaks = 0, broken = 0, read = 0, refused = 0;
  int printed = 0;
};

void Report(Totals& t, const std::string& input, const std::string& how, const char* kind, const std::string& what,
            const std::string& saveDir) {
  if (t.printed++ < 40) std::printf("  %s: %s: %s\n", how.c_str(), kind, what.c_str());
  if (!saveDir.empty()) {
    const std::string path =
        saveDir + "/" + std::to_string(t.inputs) + "-" + kind + (input.compare(0, 4, "TPF0") == 0 ? ".bin" : ".txt");
    if (FILE* f = std::fopen(path.c_str(), "wb")) {
      std::fwrite(input.data(), 1, input.size(), f);
      std::fclose(f);
    }
  }
}

void RunOne(Runner& runner, Totals& t, const std::string& input, const std::string& how, bool mustRead,
            const std::string& saveDir) {
  ++t.inputs;
  Findings f;
  std::string what;
  const auto note = [&](int& count, bool found, const char* kind, const std::string& text) {
    if (found) ++count, Report(t, input, how, kind, text, saveDir);
  };
  const Runner::Result result = runner.Run(input, f, what);
  note(t.crashes, result == Runner::kCrash, "crash", what);
  note(t.hangs, result == Runner::kHang, "hang", what);
  if (result != Runner::kDone) return;
  t.read += f.read;
  t.refused += f.refused;
  note(t.undefined, !f.undefined.empty(), "undefined error", f.undefined);
  note(t.leaks, !f.leaked.empty(), "leak", f.leaked);
  note(t.broken, mustRead && f.refused, "a seed no longer reads", "refused on " + std::to_string(f.refused) + " paths");
}

}  // namespace

int main(int argc, char** argv) {
  std::map<std::string, std::string> options{{"--seed", "1"}};
  for (int i = 1; i + 1 < argc; i += 2) options[argv[i]] = argv[i + 1];
  const std::string corpusDir = options["--corpus"], saveDir = options["--save"];
  const int inputs = std::atoi(options["--inputs"].c_str());
  const unsigned long long seed = std::strtoull(options["--seed"].c_str(), nullptr, 10);
  const std::vector<Sample> corpus = corpusDir.empty() ? std::vector<Sample>() : LoadCorpus(corpusDir);
  if (corpus.empty() || argc % 2 == 0) {
    std::fprintf(stderr, "usage: fuzz_streams --corpus DIR [--inputs N] [--seed S] [--save DIR]\n");
    return 2;
  }
  RegisterClasses({TFuzzForm::StaticClass()});
  Forms::Application->GetHandle();  // the owner of the forms read, made here and not by the worker

  const auto began = std::chrono::steady_clock::now();
  Totals t;
  {
    Runner runner;
    for (const Sample& s : corpus) {
      RunOne(runner, t, s.bytes, s.name, s.valid, saveDir);
      if (t.crashes + t.hangs >= kGiveUp) break;
    }
    for (int i = 0; i < inputs && t.crashes + t.hangs < kGiveUp; ++i) {
      std::string how;
      const std::string input = fuzz::Mutate(corpus, seed, i, how);
      RunOne(runner, t, input, "input " + std::to_string(i) + " (" + how + ")", false, saveDir);
    }
  }
  const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - began).count();
  const bool failed = t.crashes || t.hangs || t.undefined || t.leaks || t.broken;
  std::printf(
      "fuzz_streams: %d inputs (%zu from the corpus, %d made with seed %llu) in %.1f s: %d crashes, %d hangs, "
      "%d undefined error types, %d leaks%s; paths read %d times, refused with their own error %d times%s\n",
      t.inputs, corpus.size(), t.inputs - static_cast<int>(std::min<size_t>(corpus.size(), t.inputs)), seed, seconds,
      t.crashes, t.hangs, t.undefined, t.leaks,
      t.broken ? (", " + std::to_string(t.broken) + " seeds that no longer read").c_str() : "", t.read, t.refused,
      t.crashes + t.hangs >= kGiveUp ? " (stopped early)" : "");
  std::fflush(stdout);
  return failed ? 1 : 0;
}
