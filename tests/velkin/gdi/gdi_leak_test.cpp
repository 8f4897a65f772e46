// No GDI handle leaks: every handle any wrapper creates, through any path of
// the protocol, is gone (GetObjectType == 0) once the wrappers are gone, and
// the contexts hold their original objects again.
#include <gtest/gtest.h>
#include <windows.h>

#include <set>
#include <type_traits>
#include <vector>

#include "velkin/gdi/gdi_brush.h"
#include "velkin/gdi/gdi_dib.h"
#include "velkin/gdi/gdi_font.h"
#include "velkin/gdi/gdi_pen.h"
#include "velkin/gdi/gdi_region.h"

namespace {

std::vector<void*> created;

// Records every handle the wrapper makes, then behaves as the wrapper does.
template <class T>
class Tracked : public T {
 public:
  using T::T;

 protected:
  void* DoCreateHandle() override {
    void* h = T::DoCreateHandle();
    created.push_back(h);
    return h;
  }
  // A region selection keeps a copy of the previous clip: created too.
  void* DoSelect(void* dc, void* h) override {
    void* old = T::DoSelect(dc, h);
    if constexpr (std::is_base_of_v<HGDIRegion, T>) created.push_back(old);
    return old;
  }
};

void Change(HCustomGDIPen& o, int i) {
  if (i % 2)
    o.SetColor(Graphics::TColor(i & 0xFFFFFF));
  else
    o.SetWidth(i % 7);
}
void Change(HCustomGDIBrush& o, int i) { o.SetStyle(HFillStyle_Types(i % 9)); }
void Change(HCustomGDIFont& o, int i) { o.SetHeight(-(8 + i % 20)); }
void Change(HGDIRegion& o, int) { o.Dirtied(); }
void Change(HGDIDib32& o, int i) { o.SetWidth(1 + i % 16); }

// One cycle: select, change, re-select, move to another context, GetHandle,
// change while selected, Refresh; ended by delete or by leaving the scope.
template <class T, class... Args>
void Cycles(HDC a, HDC b, int count, Args... args) {
  for (int i = 0; i < count; ++i) {
    auto run = [&](T& o) {
      o.Select(a);
      Change(o, i);
      o.Select(a);
      o.Select(b);
      Change(o, i + 1);
      o.GetHandle();
      o.Select(b);
      Change(o, i + 2);
      o.Refresh();
    };
    if (i % 2) {
      T* o = new T(args...);
      run(*o);
      delete o;
    } else {
      T o(args...);
      run(o);
    }
  }
}

TEST(GdiLeaks, EveryWrapperKindReleasesEveryHandle) {
  HDC a = CreateCompatibleDC(nullptr), b = CreateCompatibleDC(nullptr);
  const int types[] = {OBJ_PEN, OBJ_BRUSH, OBJ_FONT, OBJ_BITMAP};
  HGDIOBJ originalA[4], originalB[4];
  for (int k = 0; k < 4; ++k) {
    originalA[k] = GetCurrentObject(a, types[k]);
    originalB[k] = GetCurrentObject(b, types[k]);
  }
  created.clear();
  const int n = 2000;
  Cycles<Tracked<HGDIPen>>(a, b, n);
  Cycles<Tracked<HGDIBrush>>(a, b, n);
  Cycles<Tracked<HGDIFont>>(a, b, n);
  Cycles<Tracked<HGDIRegion>>(a, b, n, 0, 0, 9, 9);
  Cycles<Tracked<HGDIDib32>>(a, b, n, 4, 4);

  // Null-style brushes come back as the stock object, which is never deleted.
  const std::set<void*> stock{GetStockObject(NULL_BRUSH), GetStockObject(NULL_PEN)};
  int live = 0, checked = 0;
  for (void* h : created) {
    if (!h || stock.count(h)) continue;
    ++checked;
    if (GetObjectType(h) != 0 && ++live <= 5)
      ADD_FAILURE() << "handle " << h << " still alive, type " << GetObjectType(h);
  }
  EXPECT_EQ(0, live) << "of " << checked << " handles created";
  EXPECT_GT(checked, 5 * n * 3) << "each cycle creates several handles";
  for (int k = 0; k < 4; ++k) {
    EXPECT_EQ(originalA[k], GetCurrentObject(a, types[k])) << "object type " << types[k];
    EXPECT_EQ(originalB[k], GetCurrentObject(b, types[k])) << "object type " << types[k];
  }
  // Region selections leave the empty clip behind, as documented; reset it.
  SelectClipRgn(a, nullptr);
  SelectClipRgn(b, nullptr);
  DeleteDC(a);
  DeleteDC(b);
}

}  // namespace
