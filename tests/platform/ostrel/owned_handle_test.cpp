// Owners of operating-system handles: every kind closes its handle exactly
// once, with its own release function, through moves, release and reset;
// observed through the system (is the object still there?) and the live counts.
#include <gtest/gtest.h>
#include <windows.h>

#include <functional>
#include <string>
#include <type_traits>

#include "platform/ostrel/owned_handle.h"

namespace {

static_assert(!std::is_copy_constructible_v<OwnedPen> && !std::is_copy_assignable_v<OwnedPen>);
static_assert(std::is_nothrow_move_constructible_v<OwnedPen> && std::is_nothrow_move_assignable_v<OwnedPen>);
static_assert(!std::is_convertible_v<OwnedPen, HPEN> && !std::is_convertible_v<HPEN, OwnedPen>);
static_assert(!std::is_copy_constructible_v<OwnedWindowDC> && !std::is_convertible_v<OwnedWindowDC, HDC>);

bool KernelAlive(void* h) {
  DWORD flags = 0;
  return GetHandleInformation(h, &flags) != 0;
}

HANDLE TempFile() {
  char dir[MAX_PATH], path[MAX_PATH];
  GetTempPathA(MAX_PATH, dir);
  GetTempFileNameA(dir, "own", 0, path);
  return CreateFileA(path, GENERIC_READ | GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_FLAG_DELETE_ON_CLOSE, nullptr);
}

HANDLE sharedMapping = nullptr;  // what the view rows map
const char* const kLibraries[] = {"msimg32.dll", "dciman32.dll"};

struct KindRow {
  const char* name;
  std::function<void(const KindRow&)> check;  // CheckKind for the row's owner type
  OwnedKind_Types kind;
  std::function<void*()> make;
  std::function<bool(void*)> alive;
};

// Moves, self-assignment, release, reset and Close on one kind of owner.
template <class Owned>
void CheckKind(const KindRow& row) {
  using Raw = typename Owned::Type;
  const std::string at = std::string("kind ") + row.name + ", ";
  const long before = OwnedHandleCount(row.kind);
  const Raw first = static_cast<Raw>(row.make());
  ASSERT_TRUE(row.alive(first)) << at << "made";
  {
    Owned a(first);
    EXPECT_EQ(before + 1, OwnedHandleCount(row.kind)) << at << "count while owned";
    Owned b(std::move(a));
    Owned c;
    c = std::move(b);
    Owned& same = c;
    c = std::move(same);
    c.reset(first);
    EXPECT_FALSE(a) << at << "moved-from";
    EXPECT_EQ(first, c.get()) << at << "after moves";
    EXPECT_TRUE(row.alive(first)) << at << "alive after moves, self-assignment and reset to itself";
    EXPECT_EQ(before + 1, OwnedHandleCount(row.kind)) << at << "count after moves";
  }
  EXPECT_FALSE(row.alive(first)) << at << "closed when the last owner went";
  EXPECT_EQ(before, OwnedHandleCount(row.kind)) << at << "count after close";

  Owned r(static_cast<Raw>(row.make()));
  const Raw second = r.get();
  r.reset(static_cast<Raw>(row.make()));
  const Raw third = r.get();
  EXPECT_FALSE(row.alive(second)) << at << "reset closes the old one";
  EXPECT_TRUE(row.alive(third)) << at << "reset keeps the new one";
  const Raw handed = r.release();
  EXPECT_FALSE(r) << at << "after release";
  EXPECT_EQ(before, OwnedHandleCount(row.kind)) << at << "count after release";
  r.reset();
  EXPECT_TRUE(row.alive(handed)) << at << "release does not close";
  Owned::Close(handed);
  EXPECT_FALSE(row.alive(handed)) << at << "Close";
}

TEST(OwnedHandle, EveryKindClosesExactlyOnceWithItsOwnFunction) {
  sharedMapping = CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, 4096, nullptr);
  ASSERT_NE(nullptr, sharedMapping);
  for (const char* library : kLibraries)
    ASSERT_EQ(nullptr, GetModuleHandleA(library)) << "the module row needs libraries nobody else holds";
  static BYTE mask[32], image[32];
  const auto gdi = [](DWORD type) { return [type](void* h) { return GetObjectType(h) == type; }; };
  // clang-format off
  const KindRow rows[] = {
      {"pen", CheckKind<OwnedPen>, OK_GdiObject, [] { return CreatePen(PS_SOLID, 1, 0); }, gdi(OBJ_PEN)},
      {"brush", CheckKind<OwnedBrush>, OK_GdiObject, [] { return CreateSolidBrush(0); }, gdi(OBJ_BRUSH)},
      {"font", CheckKind<OwnedFont>, OK_GdiObject, [] { return CreateFontA(12, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, ""); }, gdi(OBJ_FONT)},
      {"bitmap", CheckKind<OwnedBitmap>, OK_GdiObject, [] { return CreateBitmap(4, 4, 1, 1, nullptr); }, gdi(OBJ_BITMAP)},
      {"region", CheckKind<OwnedRegion>, OK_GdiObject, [] { return CreateRectRgn(0, 0, 5, 5); }, gdi(OBJ_REGION)},
      {"any GDI object", CheckKind<OwnedGdiObject>, OK_GdiObject, [] { return CreateRectRgn(0, 0, 5, 5); }, gdi(OBJ_REGION)},
      {"memory DC", CheckKind<OwnedMemoryDC>, OK_MemoryDC, [] { return CreateCompatibleDC(nullptr); }, gdi(OBJ_MEMDC)},
      {"window", CheckKind<OwnedWindow>, OK_Window, [] { return CreateWindowExA(0, "STATIC", "", WS_POPUP, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr); },
       [](void* h) { return IsWindow(static_cast<HWND>(h)) != 0; }},
      {"menu", CheckKind<OwnedMenu>, OK_Menu, [] { return CreateMenu(); }, [](void* h) { return IsMenu(static_cast<HMENU>(h)) != 0; }},
      {"icon", CheckKind<OwnedIcon>, OK_Icon, [] { return CreateIcon(nullptr, 16, 16, 1, 1, mask, image); },
       [](void* h) {
         ICONINFO info{};
         const bool alive = GetIconInfo(static_cast<HICON>(h), &info) != 0;
         const OwnedBitmap mask(info.hbmMask), color(info.hbmColor);  // copies made for the caller
         return alive;
       }},
      {"event", CheckKind<OwnedKernelHandle>, OK_Kernel, [] { return CreateEventA(nullptr, FALSE, FALSE, nullptr); }, KernelAlive},
      {"file", CheckKind<OwnedFile>, OK_File, TempFile, KernelAlive},
      {"view", CheckKind<OwnedView>, OK_View, [] { return MapViewOfFile(sharedMapping, FILE_MAP_WRITE, 0, 0, 0); },
       [](void* p) {
         MEMORY_BASIC_INFORMATION info{};
         return VirtualQuery(p, &info, sizeof info) && info.Type == MEM_MAPPED;
       }},
      // Loading one library twice gives the same handle: take turns with two.
      {"module", CheckKind<OwnedModule>, OK_Module, [] { static int turn = 0; return LoadLibraryA(kLibraries[turn++ % 2]); },
       [](void* h) { return h && (GetModuleHandleA(kLibraries[0]) == h || GetModuleHandleA(kLibraries[1]) == h); }},
  };
  // clang-format on
  for (const KindRow& row : rows) row.check(row);
  CloseHandle(sharedMapping);
}

TEST(OwnedHandle, NullValuesAreNotHandles) {
  const long files = OwnedHandleCount(OK_File), kernel = OwnedHandleCount(OK_Kernel);
  // CreateFile fails with INVALID_HANDLE_VALUE, which the file kind holds as "none".
  OwnedFile missing(CreateFileA("Z:\\no\\such\\file.txt", GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
  EXPECT_FALSE(missing);
  EXPECT_EQ(INVALID_HANDLE_VALUE, missing.get());
  EXPECT_EQ(INVALID_HANDLE_VALUE, OwnedFile().get());
  OwnedKernelHandle none(nullptr);
  EXPECT_FALSE(none);
  EXPECT_EQ(files, OwnedHandleCount(OK_File));
  EXPECT_EQ(kernel, OwnedHandleCount(OK_Kernel));
  // CloseHandle(nullptr) would fail and set the last error.
  SetLastError(12345);
  OwnedFile::Close(INVALID_HANDLE_VALUE);
  OwnedKernelHandle::Close(nullptr);
  none.reset();
  EXPECT_EQ(12345u, GetLastError()) << "a null value reached CloseHandle";
}

TEST(OwnedHandle, WindowAndPaintDCsGoBackToTheirWindow) {
  OwnedWindow window(CreateWindowExA(0, "STATIC", "", WS_POPUP, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr));
  ASSERT_TRUE(window);
  const long before = OwnedHandleCount(OK_WindowDC);
  HDC dc = nullptr;
  {
    OwnedWindowDC first(window.get());
    dc = first.get();
    ASSERT_NE(nullptr, dc);
    EXPECT_EQ(window.get(), first.window());
    EXPECT_EQ(window.get(), WindowFromDC(dc)) << "borrowed from the window";
    OwnedWindowDC second(std::move(first));
    EXPECT_FALSE(first);
    EXPECT_EQ(window.get(), WindowFromDC(dc)) << "still borrowed after the move";
    EXPECT_EQ(before + 1, OwnedHandleCount(OK_WindowDC));
  }
  EXPECT_EQ(nullptr, WindowFromDC(dc)) << "given back";
  EXPECT_EQ(0, ReleaseDC(window.get(), dc)) << "given back once only, by the owner";
  EXPECT_EQ(before, OwnedHandleCount(OK_WindowDC));

  // A paint context validates the window and goes back even when painting fails.
  OwnedWindow shown(
      CreateWindowExA(0, "STATIC", "", WS_POPUP | WS_VISIBLE, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr));
  InvalidateRect(shown.get(), nullptr, FALSE);
  ASSERT_TRUE(GetUpdateRect(shown.get(), nullptr, FALSE));
  HDC painted = nullptr;
  try {
    const OwnedPaintDC paint(shown.get());
    painted = paint.get();
    EXPECT_EQ(WindowFromDC(painted), shown.get());
    EXPECT_EQ(9, paint.area().right);
    EXPECT_EQ(before + 1, OwnedHandleCount(OK_WindowDC));
    throw 1;
  } catch (int) {
  }
  EXPECT_FALSE(GetUpdateRect(shown.get(), nullptr, FALSE)) << "validated";
  EXPECT_EQ(nullptr, WindowFromDC(painted)) << "paint context given back";
  EXPECT_EQ(before, OwnedHandleCount(OK_WindowDC));

  OwnedWindowDC screen(nullptr);
  ASSERT_TRUE(screen);
  HDC borrowed = screen.get();
  screen.reset(window.get(), GetDC(window.get()));
  EXPECT_EQ(0, ReleaseDC(nullptr, borrowed)) << "the screen's context went back at reset";
  EXPECT_EQ(window.get(), WindowFromDC(screen.get()));
}

}  // namespace
