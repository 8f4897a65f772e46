// The lazy create / select / restore / destroy protocol, observed through a
// counting subclass and through what GDI reports for the context.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "velkin/gdi/gdi_object.h"
#include "velkin/gdi/gdi_region.h"

namespace {

// A real pen object whose protocol steps are logged in order.
class CountingObject : public HGDIObject {
 public:
  ~CountingObject() override { ReleaseOnDestroy(); }
  void Touch() {
    Changing();
    Changed();
  }
  std::vector<std::string> log;
  int creates = 0, selects = 0, restores = 0, destroys = 0;
  std::vector<void*> created;

 protected:
  void* DoCreateHandle() override {
    ++creates;
    log.push_back("create");
    void* h = CreatePen(PS_SOLID, 1, RGB(0, 0, 0));
    created.push_back(h);
    return h;
  }
  void DoDestroyHandle(void* h) override {
    ++destroys;
    log.push_back("destroy");
    DeleteObject(static_cast<HGDIOBJ>(h));
  }
  void* DoSelect(void* dc, void* h) override {
    ++selects;
    log.push_back("select");
    return SelectObject(static_cast<HDC>(dc), static_cast<HGDIOBJ>(h));
  }
  void DoRestore(void* dc, void* old) override {
    ++restores;
    log.push_back("restore");
    SelectObject(static_cast<HDC>(dc), static_cast<HGDIOBJ>(old));
  }
};

std::string Join(const std::vector<std::string>& v) {
  std::string s;
  for (const auto& x : v) s += (s.empty() ? "" : ",") + x;
  return s;
}

struct MemoryDC {
  HDC dc = CreateCompatibleDC(nullptr);
  ~MemoryDC() { DeleteDC(dc); }
};

TEST(GdiObject, SelectRestoreProtocol) {
  MemoryDC a, b;
  HGDIOBJ stockA = GetCurrentObject(a.dc, OBJ_PEN);
  CountingObject o;

  o.Select(a.dc);
  o.Select(a.dc);  // same context, unchanged: nothing
  EXPECT_EQ(1, o.creates);
  EXPECT_EQ(1, o.selects);
  EXPECT_EQ(o.GetHandle(), GetCurrentObject(a.dc, OBJ_PEN));
  EXPECT_EQ(stockA, o.GetOldObject());

  // Another context: restore the first, then select.
  o.log.clear();
  o.Select(b.dc);
  EXPECT_EQ("restore,select", Join(o.log));
  EXPECT_EQ(stockA, GetCurrentObject(a.dc, OBJ_PEN));
  EXPECT_EQ(o.GetHandle(), GetCurrentObject(b.dc, OBJ_PEN));
  EXPECT_EQ(b.dc, o.GetSelectedDC());

  // A change while selected: the old handle stays until the next Select,
  // which restores, destroys, re-creates and re-selects.
  void* before = o.created.back();
  o.log.clear();
  o.Touch();
  EXPECT_EQ("", Join(o.log));
  EXPECT_EQ(before, GetCurrentObject(b.dc, OBJ_PEN));
  o.Select(b.dc);
  EXPECT_EQ("restore,destroy,create,select", Join(o.log));
  EXPECT_EQ(0u, GetObjectType(before)) << "old handle not deleted";
  EXPECT_EQ(o.created.back(), GetCurrentObject(b.dc, OBJ_PEN));

  // GetHandle alone after a change also restores the selection first.
  o.log.clear();
  o.Touch();
  o.GetHandle();
  EXPECT_EQ("restore,destroy,create", Join(o.log));
  EXPECT_FALSE(o.GetSelected());
  EXPECT_NE(o.created.back(), GetCurrentObject(b.dc, OBJ_PEN));

  // Invalid context: nothing.
  o.log.clear();
  o.Select(nullptr);
  EXPECT_EQ("", Join(o.log));
}

TEST(GdiObject, RefreshAndDestruction) {
  MemoryDC a;
  HGDIOBJ stock = GetCurrentObject(a.dc, OBJ_PEN);
  auto* o = new CountingObject;

  o->Refresh();  // no handle: only clears the flags
  EXPECT_EQ(0, o->creates);
  EXPECT_FALSE(o->GetDirty());

  o->Select(a.dc);
  o->log.clear();
  o->Refresh();
  EXPECT_EQ("restore,destroy,create,select", Join(o->log));
  EXPECT_TRUE(o->GetSelected());
  EXPECT_EQ(o->created.back(), GetCurrentObject(a.dc, OBJ_PEN));
  EXPECT_FALSE(o->GetModified());

  // delete: the context is restored before the handle is deleted, and both
  // run while the object is whole (the overrides are reached).
  std::vector<void*> created = o->created;
  delete o;
  EXPECT_EQ(stock, GetCurrentObject(a.dc, OBJ_PEN));
  for (void* h : created) EXPECT_EQ(0u, GetObjectType(h)) << h;

  // A stack object selected into a context is released by its destructor.
  void* handle = nullptr;
  {
    CountingObject s;
    s.Select(a.dc);
    handle = s.GetHandle();
    EXPECT_EQ(handle, GetCurrentObject(a.dc, OBJ_PEN));
  }
  EXPECT_EQ(stock, GetCurrentObject(a.dc, OBJ_PEN));
  EXPECT_EQ(0u, GetObjectType(handle));
}

// delete reaches the most derived overrides: the counts are seen by the
// subclass itself.
TEST(GdiObject, DeleteRunsOverridesBeforeDestructors) {
  struct Probe : CountingObject {
    int* restoresOut;
    int* destroysOut;
    Probe(int* r, int* d) : restoresOut(r), destroysOut(d) {}
    void DoRestore(void* dc, void* old) override {
      ++*restoresOut;
      CountingObject::DoRestore(dc, old);
    }
    void DoDestroyHandle(void* h) override {
      ++*destroysOut;
      CountingObject::DoDestroyHandle(h);
    }
  };
  MemoryDC a;
  int restores = 0, destroys = 0;
  auto* p = new Probe(&restores, &destroys);
  p->Select(a.dc);
  delete p;
  EXPECT_EQ(1, restores);
  EXPECT_EQ(1, destroys);
}

TEST(GdiObject, CheckFunctionsTestOnlyForZero) {
  bool (*const checks[])(void*) = {GDICheckDC,  GDICheckPen,    GDICheckBrush,    GDICheckFont,  GDICheckPal,
                                   GDICheckRgn, GDICheckBitmap, GDICheckMetafile, GDICheckObject};
  for (auto check : checks) {
    EXPECT_FALSE(check(nullptr));
    EXPECT_TRUE(check(reinterpret_cast<void*>(0x1234)));  // no type check with GDI
  }
}

// The class records chain through the handle template, from any module.
TEST(GdiObject, ClassChain) {
  CountingObject o;
  EXPECT_TRUE(o.InheritsFrom(HGDIHandleObject::StaticClass()));
  EXPECT_TRUE(o.InheritsFrom(HSizableObject::StaticClass()));
  EXPECT_STREQ("HHandleObject", HGDIObject::StaticClass()->ClassParent()->ClassName());
  EXPECT_STREQ("HSizableObject", HGDIHandleObject::StaticClass()->ClassParent()->ClassName());
}

RECT ClipBox(HDC dc, int* kind) {
  RECT r{};
  *kind = GetClipBox(dc, &r);
  return r;
}

TEST(GdiRegion, SelectAndRestoreClip) {
  HGDIRegion region(0, 0, 9, 9);
  EXPECT_EQ((MyRect{0, 0, 10, 10}), region.GetRect());
  RECT box{};
  ASSERT_NE(0, GetRgnBox(static_cast<HRGN>(region.GetHandle()), &box));
  EXPECT_EQ(0, box.left);
  EXPECT_EQ(10, box.right);
  EXPECT_EQ(10, box.bottom);
  EXPECT_TRUE(region.Check(region.GetHandle()));

  // A 50x50 bitmap in a memory DC, unclipped.
  HDC dc = CreateCompatibleDC(nullptr);
  HBITMAP bmp = CreateCompatibleBitmap(dc, 50, 50);
  HGDIOBJ oldBmp = SelectObject(dc, bmp);
  int kind = 0;
  RECT r = ClipBox(dc, &kind);
  EXPECT_EQ(50, r.right);

  region.Select(dc);
  r = ClipBox(dc, &kind);
  EXPECT_EQ(SIMPLEREGION, kind);
  EXPECT_EQ(10, r.right);
  EXPECT_EQ(10, r.bottom);

  // Restoring on a context that had no clip selects the empty region.
  region.Restore();
  r = ClipBox(dc, &kind);
  EXPECT_EQ(NULLREGION, kind) << "clip box " << r.left << "," << r.top << "," << r.right << "," << r.bottom;

  // A context with a clip gets that clip back.
  HRGN outer = CreateRectRgn(5, 5, 40, 30);
  SelectClipRgn(dc, outer);
  DeleteObject(outer);
  HGDIRegion inner(MyRect{20, 20, 24, 24});
  inner.Select(dc);
  r = ClipBox(dc, &kind);
  EXPECT_EQ(20, r.left);
  EXPECT_EQ(25, r.right);
  void* saved = inner.GetOldObject();
  inner.Restore();
  EXPECT_EQ(0u, GetObjectType(saved)) << "saved clip copy not deleted";
  r = ClipBox(dc, &kind);
  EXPECT_EQ(5, r.left);
  EXPECT_EQ(40, r.right);
  EXPECT_EQ(30, r.bottom);

  SelectObject(dc, oldBmp);
  DeleteObject(bmp);
  DeleteDC(dc);
}

}  // namespace
