#pragma once
// What the GDI wrapper tests share: a memory context of their own and a record
// of the change notifications a wrapper raises.
#include <windows.h>

#include <functional>
#include <string>

#include "velkin/core/h_chobj.h"

namespace gdi_fixtures {

struct MemoryDC {
  HDC dc = CreateCompatibleDC(nullptr);
  MemoryDC() = default;
  MemoryDC(const MemoryDC&) = delete;
  MemoryDC& operator=(const MemoryDC&) = delete;
  ~MemoryDC() { DeleteDC(dc); }
};

// The notifications an action raises: C = OnChanged, D = OnDirtied; OnChanging
// is counted apart, as it precedes every change.
struct Notes {
  std::string seen;
  int changing = 0;
  explicit Notes(HSizableObject& o) {
    o.SetOnChanging(System::TNotifyEvent(this, &Notes::OnChanging));
    o.SetOnChanged(System::TNotifyEvent(this, &Notes::OnChanged));
    o.SetOnDirtied(System::TNotifyEvent(this, &Notes::OnDirtied));
  }
  void OnChanging(System::TObject*) { ++changing; }
  void OnChanged(System::TObject*) { seen += 'C'; }
  void OnDirtied(System::TObject*) { seen += 'D'; }
  std::string operator()(const std::function<void()>& action) {
    seen.clear();
    changing = 0;
    action();
    return seen;
  }
};

}  // namespace gdi_fixtures
