#include "velkin/gdi/gdi_temp.h"

#include <windows.h>

#include <cstdint>
#include <string>

#include "platform/vcl/core/package.h"
#include "platform/vcl/core/sysutils.h"

HTempItem::~HTempItem() = default;

HTemp_CompatibleDC::HTemp_CompatibleDC(void* referenceDC) : owned_(CreateCompatibleDC(static_cast<HDC>(referenceDC))) {
  dc_ = owned_.get();
}

HTemp_CompatibleDC::~HTemp_CompatibleDC() = default;

HTemp_WindowDC::HTemp_WindowDC(void* window)
    : owned_(static_cast<HWND>(window), GetWindowDC(static_cast<HWND>(window))) {
  dc_ = owned_.get();
}

HTemp_WindowDC::~HTemp_WindowDC() = default;

HTempHolder::~HTempHolder() { delete item_; }

HTempPool::~HTempPool() {
  // Entries go in the order they were added.
  for (auto& holder : holders_) holder.reset();
}

HTempItem* HTempPool::Get(const System::AnsiString& name, HTempCreator creator, unsigned long data) {
  for (const auto& holder : holders_)
    if (holder->GetName() == name) return holder->GetItem();
  if (!creator) return nullptr;
  auto holder = std::make_unique<HTempHolder>(name, creator(data));
  if (!holder->GetItem()) return nullptr;
  holders_.push_back(std::move(holder));
  return holders_.back()->GetItem();
}

HTempPool* TempPool = nullptr;

void HTempRaiseNotFound(const System::AnsiString& name, HTempCreator creator, unsigned long data) {
  // The words are the library's message text, misspellings included.
  const auto proc = reinterpret_cast<uintptr_t>(creator);
  throw Sysutils::Exception("Can not retrive temprorary item named: [" + name +
                            "] by: Proc:" + System::AnsiString(std::to_string(proc)) +
                            "Data: " + System::AnsiString(std::to_string(data)));
}

HTempItem* HTempCreateCompatibleDC(unsigned long data) {
  // GDI handles fit in 32 bits and are sign-extended on 64-bit Windows.
  return new HTemp_CompatibleDC(reinterpret_cast<void*>(static_cast<intptr_t>(static_cast<int32_t>(data))));
}

namespace Gdi_temp {
namespace {
Sysinit::TUnitCounter counter;
int startUps = 0;
int shutDowns = 0;
bool startedByFirstUse = false;
}  // namespace

void Initialize() {
  if (!counter.Start()) return;
  ++startUps;
  TempPool = new HTempPool;
}

void Finalize() {
  if (!counter.Stop()) return;
  ++shutDowns;
  delete TempPool;
  TempPool = nullptr;
}

void FinalizeFirstUse() {
  if (!startedByFirstUse) return;
  startedByFirstUse = false;
  Finalize();
}

int StartUpRuns() { return startUps; }
int ShutDownRuns() { return shutDowns; }
}  // namespace Gdi_temp

HTempPool* HTempCurrentPool() {
  if (!TempPool && !Gdi_temp::startedByFirstUse) {
    Gdi_temp::startedByFirstUse = true;
    Gdi_temp::Initialize();
  }
  return TempPool;
}
