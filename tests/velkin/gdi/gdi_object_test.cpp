// The lazy create / select / restore / destroy protocol every GDI wrapper
// follows, and that no handle outlives its wrapper. What each kind's first
// handle holds is checked with the kind.
#include "velkin/gdi/gdi_object.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "platform/ostrel/owned_handle.h"
#include "platform/vcl/graphics/graphics.h"
#include "velkin/gdi/gdi_brush.h"
#include "velkin/gdi/gdi_dib.h"
#include "velkin/gdi/gdi_font.h"
#include "velkin/gdi/gdi_pen.h"
#include "velkin/gdi/gdi_region.h"

using namespace Graphics;

namespace {

std::string trace;  // protocol steps in order; "~" marks those run from a destructor
std::string Take() { return std::exchange(trace, std::string()); }

// A real pen object that logs each protocol step.
class CountingObject : public HGDIObject {
 public:
  ~CountingObject() override {
    inDestructor_ = true;
    ReleaseOnDestroy();
  }
  void Touch() { Changing(), Changed(); }

 protected:
  void* DoCreateHandle() override { return Log("create", CreatePen(PS_SOLID, 1, 0)); }
  void DoDestroyHandle(void* h) override { Log("destroy", DeleteObject(h)); }
  void* DoSelect(void* dc, void* h) override { return Log("select", SelectObject(static_cast<HDC>(dc), h)); }
  void DoRestore(void* dc, void* old) override { Log("restore", SelectObject(static_cast<HDC>(dc), old)); }

 private:
  template <class T>
  T Log(const char* step, T result) {
    trace += (trace.empty() ? "" : ",") + std::string(step) + (inDestructor_ ? "~" : "");
    return result;
  }
  bool inDestructor_ = false;
};

TEST(HGDIObject, SelectRestoreRefreshDelete) {
  const OwnedMemoryDC a(CreateCompatibleDC(nullptr)), b(CreateCompatibleDC(nullptr));
  HGDIOBJ stock = GetCurrentObject(a.get(), OBJ_PEN);
  auto* o = new CountingObject;
  o->Dirtied();
  o->Refresh();  // no handle: only clears the flags
  EXPECT_EQ("", Take()) << "Refresh without a handle: steps";
  EXPECT_FALSE(o->GetDirty()) << "Refresh without a handle: dirty";
  EXPECT_FALSE(o->GetModified()) << "Refresh without a handle: modified";

  o->Select(a.get());
  o->Select(a.get());  // same context, unchanged: nothing
  EXPECT_EQ("create,select", Take());
  EXPECT_EQ(o->GetHandle(), GetCurrentObject(a.get(), OBJ_PEN)) << "selected";
  EXPECT_EQ(stock, o->GetOldObject()) << "what the selection displaced";
  o->Select(b.get());
  EXPECT_EQ("restore,select", Take());
  EXPECT_EQ(stock, GetCurrentObject(a.get(), OBJ_PEN));

  // A change while selected: the old handle stays until the next Select.
  void* before = o->GetHandle();
  o->Touch();
  EXPECT_EQ(before, GetCurrentObject(b.get(), OBJ_PEN));
  o->Select(b.get());
  EXPECT_EQ("restore,destroy,create,select", Take());
  EXPECT_EQ(o->GetHandle(), GetCurrentObject(b.get(), OBJ_PEN));
  // GetHandle alone after a change also restores the selection first.
  o->Touch();
  o->GetHandle();
  EXPECT_EQ("restore,destroy,create", Take());
  EXPECT_EQ(stock, GetCurrentObject(b.get(), OBJ_PEN));

  o->Select(a.get());
  Take();
  o->Refresh();
  EXPECT_EQ("restore,destroy,create,select", Take());
  EXPECT_EQ(o->GetHandle(), GetCurrentObject(a.get(), OBJ_PEN)) << "re-selected after Refresh";
  EXPECT_FALSE(o->GetModified()) << "Refresh clears the changed flag";

  // delete releases from the before-destruction hook, not from a destructor.
  delete o;
  EXPECT_EQ("restore,destroy", Take());
  EXPECT_EQ(stock, GetCurrentObject(a.get(), OBJ_PEN));
}

// Every handle any wrapper creates, through any path of the protocol, is gone
// (GetObjectType == 0) once the wrappers are gone, and the contexts hold their
// original objects again.
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
      run(*std::make_unique<T>(args...));  // ends by delete
    } else {
      T o(args...);
      run(o);
    }
  }
}

TEST(HGDIObject, EveryWrapperKindReleasesEveryHandle) {
  const OwnedMemoryDC owned[] = {OwnedMemoryDC(CreateCompatibleDC(nullptr)),
                                 OwnedMemoryDC(CreateCompatibleDC(nullptr))};
  const HDC dcs[] = {owned[0].get(), owned[1].get()};
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
  }
}

}  // namespace
