// The module holder with real DLLs: references loaded, copied and freed, a
// refused load, the start-up directory fallback.
#include "velkin/core/h_module.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdlib>
#include <string>

#include "platform/ostrel/oslib.h"
#include "platform/vcl/vcl.h"

namespace {

int Counter(const char* name) {
  char value[32] = "0";
  GetEnvironmentVariableA(name, value, sizeof value);
  return std::atoi(value);
}

bool Loaded(const char* name) { return GetModuleHandleA(name) != nullptr; }

TEST(HModule, LoadsByNameCopiesAndFreesEachReference) {
  ASSERT_FALSE(Loaded("kmod_plain.dll"));
  const int attaches = Counter("KMOD_ATTACH"), detaches = Counter("KMOD_DETACH");
  {
    HModule a;
    const char* error = a.Assign("kmod_plain.dll");
    ASSERT_EQ(nullptr, error) << error;
    EXPECT_EQ(GetModuleHandleA("kmod_plain.dll"), a.GetHandle());
    EXPECT_STREQ("kmod_plain.dll", a.GetName().Text());
    HModule b(a);  // a reference of its own
    HModule c;
    c = b;
    EXPECT_EQ(a.GetHandle(), c.GetHandle());
    a.Free();
    b.Free();
    EXPECT_FALSE(a.GetAssigned());
    EXPECT_TRUE(Loaded("kmod_plain.dll")) << "c still holds a reference";

    // Assigning its own handle reloads by path: c held the only reference.
    char path[MAX_PATH * 2];
    const std::string fullPath(path, GetModuleFileNameA(static_cast<HMODULE>(c.GetHandle()), path, sizeof path));
    error = c.Assign(c.GetHandle());
    EXPECT_EQ(nullptr, error) << error;
    EXPECT_EQ(fullPath, c.GetName().Text());
    EXPECT_EQ(attaches + 2, Counter("KMOD_ATTACH"));
    EXPECT_EQ(detaches + 1, Counter("KMOD_DETACH"));
    EXPECT_NE(nullptr, c.Assign(static_cast<void*>(nullptr)));
    EXPECT_TRUE(c.GetAssigned()) << "a refused null handle changes nothing";
  }  // c's destructor frees the last reference
  EXPECT_FALSE(Loaded("kmod_plain.dll"));
  EXPECT_EQ(detaches + 2, Counter("KMOD_DETACH"));
}

class RefusingModule : public HModule {
 public:
  void* seen = nullptr;
  int frees = 0;

 protected:
  const char* DoLoad(void* handle) override { return seen = handle, "refused by test"; }
  void DoFree() override { ++frees; }
};

TEST(HModule, DoLoadVetoLeavesTheReferenceCountAlone) {
  HMODULE own = LoadLibraryA("kmod_plain.dll");
  ASSERT_NE(nullptr, own);
  RefusingModule m;
  EXPECT_STREQ("refused by test", m.Assign("kmod_plain.dll"));
  EXPECT_EQ(static_cast<void*>(own), m.seen) << "DoLoad sees the loaded module";
  EXPECT_FALSE(m.GetAssigned());
  EXPECT_EQ(0, m.frees) << "a refused module is not DoFree'd";
  FreeLibrary(own);
  EXPECT_FALSE(Loaded("kmod_plain.dll")) << "the refused load left a reference behind";
}

TEST(HModule, FallsBackToTheStartupDirectoryAndReportsMissingModules) {
  // With the application directory out of the DLL search, the module is
  // found only through the holder's own second try.
  ASSERT_TRUE(SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_SYSTEM32));
  EXPECT_EQ(nullptr, LoadLibraryA("kmod_sub\\kmod_startup.dll")) << "the search should not find it by itself";
  HModule m;
  const char* error = m.Assign("kmod_sub\\kmod_startup.dll");
  EXPECT_EQ(nullptr, error) << error;
  EXPECT_EQ(std::string(GetStartupDir()) + "kmod_sub\\kmod_startup.dll", m.GetName().Text());
  EXPECT_TRUE(Loaded("kmod_startup.dll"));

  // A failed Assign still lets go of what was held, and leaves the holder empty.
  error = m.Assign("kmod_sub\\kmod_missing.dll");
  ASSERT_NE(nullptr, error);
  EXPECT_NE(std::string::npos, std::string(error).find("(126)")) << "error text: " << error;
  EXPECT_FALSE(m.GetAssigned());
  EXPECT_FALSE(Loaded("kmod_startup.dll"));
  SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_DEFAULT_DIRS);
}

}  // namespace
