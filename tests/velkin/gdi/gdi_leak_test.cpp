// No GDI handle leaks: every handle any wrapper creates, through any path of
// the protocol, is gone (GetObjectType == 0) once the wrappers are gone, and
// the contexts hold their original objects again.
#include <gtest/gtest.h>
#include <windows.h>

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
  void* DoCreateHandle() override { return created.emplace_back(T::DoCreateHandle()); }
  // A region selection keeps a copy of the previous clip: created too.
  void* DoSelect(void* dc, void* h) override {
    void* old = T::DoSelect(dc, h);
    if constexpr (std::is_base_of_v<HGDIRegion, T>) created.push_back(old);
    return old;
  }
};

void Change(HCustomGDIPen& o, int i) { i % 2 ? o.SetColor(Graphics::TColor(i & 0xFFFFFF)) : o.SetWidth(i % 7); }
void Change(HCustomGDIBrush& o, int i) { o.SetStyle(HFillStyle_Types(i % 9)); }
void Change(HCustomGDIFont& o, int i) { o.SetHeight(-(8 + i % 20)); }
void Change(HGDIRegion& o, int) { o.Dirtied(); }
void Change(HGDIDib32& o, int i) { o.SetWidth(1 + i % 16); }

// Each cycle selects, changes, re-selects, moves to another context, takes the
// handle, changes while selected and refreshes; the wrapper then ends by
// delete or by leaving the scope, alternately.
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
  HDC dcs[] = {CreateCompatibleDC(nullptr), CreateCompatibleDC(nullptr)};
  const int types[] = {OBJ_PEN, OBJ_BRUSH, OBJ_FONT, OBJ_BITMAP};
  HGDIOBJ original[2][4];
  for (int d = 0; d < 2; ++d)
    for (int k = 0; k < 4; ++k) original[d][k] = GetCurrentObject(dcs[d], types[k]);
  const int n = 2000;
  Cycles<Tracked<HGDIPen>>(dcs[0], dcs[1], n);
  Cycles<Tracked<HGDIBrush>>(dcs[0], dcs[1], n);
  Cycles<Tracked<HGDIFont>>(dcs[0], dcs[1], n);
  Cycles<Tracked<HGDIRegion>>(dcs[0], dcs[1], n, 0, 0, 9, 9);
  Cycles<Tracked<HGDIDib32>>(dcs[0], dcs[1], n, 4, 4);

  // Null-style brushes and pens come back as stock objects, never deleted.
  int live = 0, checked = 0;
  for (void* h : created) {
    if (!h || h == GetStockObject(NULL_BRUSH) || h == GetStockObject(NULL_PEN)) continue;
    ++checked;
    if (GetObjectType(h) != 0 && ++live == 1) ADD_FAILURE() << "handle " << h << " alive, type " << GetObjectType(h);
  }
  EXPECT_EQ(0, live) << "of " << checked << " handles created";
  EXPECT_GT(checked, 5 * n * 3) << "each cycle creates several handles";
  for (int d = 0; d < 2; ++d) {
    for (int k = 0; k < 4; ++k) EXPECT_EQ(original[d][k], GetCurrentObject(dcs[d], types[k])) << "type " << types[k];
    SelectClipRgn(dcs[d], nullptr);  // region selections leave the empty clip behind, as documented
    DeleteDC(dcs[d]);
  }
}

}  // namespace
