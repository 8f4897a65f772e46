// Component streaming measured in one run:
//  - a form of 100 controls read from its resource, shown and freed, against
//    the same form made in code (target: at most 1.3x);
//  - WriteComponent and ReadComponent of that form in memory, in MB/s.
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <string>

#include "bench/bench_clock.h"
#include "bench/bench_controls.h"
#include "platform/vcl/core/filer.h"
#include "platform/vcl/forms/application.h"
#include "platform/vcl/stdctrls/std_buttons.h"
#include "platform/vcl/stdctrls/std_edits.h"
#include "platform/vcl/stdctrls/std_label.h"

// The designed form: its 100 controls come from the resource.
class TBenchForm : public Forms::TForm {
  VCL_CLASS();

 public:
  explicit TBenchForm(Classes::TComponent* owner) : TForm(owner) { ReadDesign(); }
};
VCL_COMPONENT_IMPL(TBenchForm, Forms::TForm)

namespace {

constexpr int kControls = 100;

// The same form as the resource describes, made control by control.
Forms::TForm* CodeForm() {
  auto* form = new Forms::TForm(nullptr);
  form->SetName("BenchForm");
  form->SetText("Streaming bench");
  form->SetClientWidth(620);
  form->SetClientHeight(540);
  for (int i = 0; i < kControls; ++i) {
    Controls::TControl* c = NewControl(form, i % 4);
    c->SetName(("Control" + std::to_string(i)).c_str());
    c->SetParent(form);
    c->SetBounds(10 + (i % 5) * 120, 10 + (i / 5) * 26, 110, 23);
    c->SetText(("Control " + std::to_string(i)).c_str());
    if (auto* w = dynamic_cast<Controls::TWinControl*>(c)) w->SetTabOrder(i / 4);
  }
  return form;
}

void ShowAndFree(Forms::TForm* form) {
  form->Show();
  Forms::Application->ProcessMessages();
  delete form;
}

}  // namespace

int main() {
  Forms::Application->Initialize();
  ShowAndFree(new TBenchForm(nullptr));  // classes and the shared font are made once
  ShowAndFree(CodeForm());
  const int rounds = 20;
  double read = 1e30, code = 1e30;
  for (int round = 0; round < 7; ++round) {
    double start = Now();
    for (int i = 0; i < rounds; ++i) ShowAndFree(new TBenchForm(nullptr));
    read = std::min(read, (Now() - start) * 1e6 / rounds);
    start = Now();
    for (int i = 0; i < rounds; ++i) ShowAndFree(CodeForm());
    code = std::min(code, (Now() - start) * 1e6 / rounds);
  }

  // Throughput, no windows: the form written and read back in memory.
  Forms::TForm* source = CodeForm();
  Classes::TMemoryStream stream;
  stream.WriteComponent(source);
  const double bytes = static_cast<double>(stream.GetSize());
  const int passes = 200;
  double write = 1e30, readBack = 1e30;
  for (int round = 0; round < 7; ++round) {
    double start = Now();
    for (int i = 0; i < passes; ++i) {
      stream.Clear();
      stream.WriteComponent(source);
    }
    write = std::min(write, Now() - start);
    start = Now();
    for (int i = 0; i < passes; ++i) {
      Forms::TForm target(nullptr);
      stream.SetPosition(0);
      stream.ReadComponent(&target);
    }
    readBack = std::min(readBack, Now() - start);
  }
  delete source;

  std::printf("Component streaming (best of 7 alternating rounds)\n\n");
  std::printf("%-40s %10.0f us   %-34s %10.0f us   ratio %5.2fx   %s\n", "form, 100 controls read from resource", read,
              "the same form made in code", code, read / code, "<= 1.30x");
  std::printf("%-40s %10.1f MB/s (%.0f-byte stream)\n", "WriteComponent", bytes * passes / write / 1e6, bytes);
  std::printf("%-40s %10.1f MB/s\n", "ReadComponent (objects, no windows)", bytes * passes / readBack / 1e6);
  return 0;
}
