// The control utilities measured in one run, each beside what a program
// would write by hand:
//  - HControlField SetText/GetText on an edit against the edit's own
//    SetText/GetText (target: at most 1.1x);
//  - HDynamicArray placing 200 template panels into a scroll box against
//    SetBounds/SetParent by hand (target: at most 1.5x);
//  - HDynamicArray::Locate over 10,000 sorted records, ns per lookup, beside
//    std::lower_bound over the same keys.
#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "bench/bench_clock.h"
#include "platform/vcl/forms/application.h"
#include "platform/vcl/stdctrls/ext_panels.h"
#include "platform/vcl/stdctrls/scroll_box.h"
#include "velkin/controls/h_cfield.h"
#include "velkin/controls/h_dynarray.h"

namespace {

constexpr int kRounds = 7;

void Row(const char* what, double value, const char* baseline, double base, const char* unit, const char* target) {
  std::printf("%-44s %9.2f %s   %-34s %9.2f %s   ratio %5.2fx   %s\n", what, value, unit, baseline, base, unit,
              value / base, target);
}

// Text through the field against the edit itself; every write a new text.
void FieldText() {
  Forms::TForm form(nullptr);
  auto* edit = new Stdctrls::TEdit(&form);
  edit->SetParent(&form);
  form.Show();
  HControlField field;
  field.SetAccept("TCustomEdit");
  field.SetControl(edit);
  std::vector<System::AnsiString> texts;
  for (int i = 0; i < 64; ++i) texts.push_back(("value " + std::to_string(i * 7919)).c_str());
  const int n = 4000;
  size_t sink = 0;
  double viaField = 1e30, direct = 1e30;
  for (int round = 0; round < kRounds; ++round) {
    double start = Now();
    for (int i = 0; i < n; ++i) {
      field.SetText(texts[i % texts.size()]);
      sink += field.GetText().Length();
    }
    viaField = std::min(viaField, (Now() - start) * 1e6 / n);
    start = Now();
    for (int i = 0; i < n; ++i) {
      edit->SetText(texts[i % texts.size()]);
      sink += edit->GetText().Length();
    }
    direct = std::min(direct, (Now() - start) * 1e6 / n);
  }
  field.SetControl(nullptr);
  Row("HControlField SetText + GetText (edit)", viaField, "TEdit SetText + GetText", direct, "us", "<= 1.10x");
  if (sink == 0) std::printf("(no text)\n");
}

// Template forms of one panel each, in the scroll box's form.
struct Templates {
  explicit Templates(Forms::TForm* owner) {
    for (int i = 0; i < 200; ++i) {
      auto* form = new Forms::TForm(owner);
      auto* panel = new Extctrls::TPanel(form);
      panel->SetParent(form);
      panel->SetBounds(4, 4, 280, 30);
      forms.push_back(form);
    }
  }
  std::vector<Forms::TForm*> forms;
};

void Placement() {
  Forms::TForm host(nullptr);
  host.SetBounds(0, 0, 400, 500);
  auto* box = new Forms::TScrollBox(&host);
  box->SetParent(&host);
  box->SetAlign(Controls::alClient);
  host.Show();
  Templates templates(&host);
  double array = 1e30, byHand = 1e30;
  for (int round = 0; round < kRounds; ++round) {
    HDynamicArray rows(nullptr, 0);
    double start = Now();
    for (Forms::TForm* f : templates.forms) rows.NewControl(f, f, box, Controls::alTop, 0, 0);
    array = std::min(array, (Now() - start) * 1e3);
    rows.DeleteAll();

    // By hand: the same moves, knowing where the last panel went, each laid
    // out once.
    start = Now();
    int top = 0;
    for (Forms::TForm* f : templates.forms) {
      Controls::TControl* panel = f->GetControl(0);
      box->DisableAlign();
      panel->SetAlign(Controls::alNone);
      panel->SetBounds(0, top, panel->GetWidth(), panel->GetHeight());
      panel->SetParent(box);
      panel->SetAlign(Controls::alTop);
      box->EnableAlign();
      top += panel->GetHeight() + 1;
    }
    byHand = std::min(byHand, (Now() - start) * 1e3);
    for (Forms::TForm* f : templates.forms) {
      Controls::TControl* panel = box->GetControl(0);
      panel->SetParent(f);
      panel->SetAlign(Controls::alNone);
      panel->SetBounds(4, 4, 280, 30);
    }
  }
  Row("HDynamicArray::NewControl, 200 panels", array, "SetBounds + SetParent by hand", byHand, "ms", "<= 1.50x");
}

void Lookup() {
  const int count = 10000;
  HDynamicArray sorted(&HDynamicArray::idNumberCmp, 0);
  std::vector<int> keys;
  for (int i = 0; i < count; ++i) {
    HDynamicControl r{};
    r.Data = reinterpret_cast<void*>(static_cast<intptr_t>(i * 3));
    sorted.Add(r);
    keys.push_back(i * 3);
  }
  const int lookups = 200000;
  long long found = 0;
  double locate = 1e30, lowerBound = 1e30;
  for (int round = 0; round < kRounds; ++round) {
    double start = Now();
    for (int i = 0; i < lookups; ++i)
      found += sorted.Locate(reinterpret_cast<void*>(static_cast<intptr_t>((i * 7919) % (count * 3))));
    locate = std::min(locate, (Now() - start) * 1e9 / lookups);
    start = Now();
    for (int i = 0; i < lookups; ++i) {
      const int key = (i * 7919) % (count * 3);
      const auto at = std::lower_bound(keys.begin(), keys.end(), key);
      found += at != keys.end() && *at == key ? at - keys.begin() : -1;
    }
    lowerBound = std::min(lowerBound, (Now() - start) * 1e9 / lookups);
  }
  Row("HDynamicArray::Locate, 10,000 records", locate, "std::lower_bound over the keys", lowerBound, "ns",
      "(ns per lookup)");
  if (found == 0) std::printf("(nothing found)\n");
}

}  // namespace

int main() {
  Forms::Application->Initialize();
  std::printf("Control utilities (best of %d rounds)\n\n", kRounds);
  FieldText();
  Placement();
  Lookup();
  return 0;
}
