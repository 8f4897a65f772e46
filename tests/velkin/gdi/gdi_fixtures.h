#pragma once
// What the GDI wrapper tests share: rectangles and points in failure
// messages and a record of the change notifications a wrapper raises.
#include <windows.h>

#include <functional>
#include <ostream>
#include <string>

#include "platform/ostrel/mygeom.h"
#include "velkin/core/h_chobj.h"

inline std::ostream& operator<<(std::ostream& os, const MyRect& r) {
  return os << "(" << r.left << "," << r.top << ")-(" << r.right << "," << r.bottom << ")";
}
inline std::ostream& operator<<(std::ostream& os, const MyPoint& p) { return os << "(" << p.x << "," << p.y << ")"; }

namespace gdi_fixtures {

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
