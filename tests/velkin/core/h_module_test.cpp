#include "velkin/core/h_module.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdlib>
#include <string>

#include "platform/ostrel/oslib.h"

namespace {

// The fixture DLLs count their loads and unloads in the environment.
int Counter(const char* name) {
  char value[32] = "0";
  GetEnvironmentVariableA(name, value, sizeof value);
  return std::atoi(value);
}

bool Loaded(const char* name) { return GetModuleHandleA(name) != nullptr; }

std::string ModulePath(HMODULE module) {
  char path[MAX_PATH * 2];
  DWORD n = GetModuleFileNameA(module, path, sizeof path);
  return std::string(path, n);
}

class RefusingModule : public HModule {
 public:
  void* seen = nullptr;
  int frees = 0;
  bool refuse = true;

 protected:
  const char* DoLoad(void* handle) override {
    seen = handle;
    return refuse ? "refused by test" : nullptr;
  }
  void DoFree() override { ++frees; }
};

TEST(KernelHModule, LoadsByNameCopiesByPathAndFreesEachReference) {
  ASSERT_FALSE(Loaded("kmod_plain.dll"));
  const int attaches = Counter("KMOD_PLAIN_ATTACH"), detaches = Counter("KMOD_PLAIN_DETACH");
  {
    HModule a;
    EXPECT_FALSE(a.GetAssigned());
    const char* error = a.Assign("kmod_plain.dll");
    ASSERT_EQ(nullptr, error) << error;
    EXPECT_TRUE(a.GetAssigned());
    EXPECT_EQ(GetModuleHandleA("kmod_plain.dll"), a.GetHandle());
    EXPECT_STREQ("kmod_plain.dll", a.GetName().Text());

    HModule b(a);  // a reference of its own
    EXPECT_EQ(a.GetHandle(), b.GetHandle());
    HModule c;
    c = b;
    EXPECT_EQ(a.GetHandle(), c.GetHandle());
    a.Free();
    b.Free();
    EXPECT_FALSE(a.GetAssigned());
    EXPECT_STREQ("kmod_plain.dll", a.GetName().Text()) << "Free keeps the name";
    EXPECT_TRUE(Loaded("kmod_plain.dll")) << "c still holds a reference";
    EXPECT_EQ(attaches + 1, Counter("KMOD_PLAIN_ATTACH"));
  }  // c's destructor frees the last reference
  EXPECT_FALSE(Loaded("kmod_plain.dll"));
  EXPECT_EQ(detaches + 1, Counter("KMOD_PLAIN_DETACH"));

  // An empty holder copies to an empty holder.
  HModule empty;
  HModule copy(empty);
  EXPECT_FALSE(copy.GetAssigned());
}

TEST(KernelHModule, FallsBackToTheStartupDirectoryAndReportsMissingModules) {
  // A process that keeps the application directory out of its DLL search
  // finds the module only through the holder's own second try.
  ASSERT_TRUE(SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_SYSTEM32));
  HMODULE direct = LoadLibraryA("kmod_sub\\kmod_startup.dll");
  EXPECT_EQ(nullptr, direct) << "the search should not find it by itself";
  if (direct) FreeLibrary(direct);

  HModule m;
  const char* error = m.Assign("kmod_sub\\kmod_startup.dll");
  EXPECT_EQ(nullptr, error) << error;
  EXPECT_TRUE(m.GetAssigned());
  EXPECT_EQ(std::string(GetStartupDir()) + "kmod_sub\\kmod_startup.dll", m.GetName().Text());
  EXPECT_TRUE(Loaded("kmod_startup.dll"));

  // A failed Assign still lets go of what was held, and leaves the holder empty.
  error = m.Assign("kmod_sub\\kmod_missing.dll");
  ASSERT_NE(nullptr, error);
  const std::string text = error;
  EXPECT_NE(std::string::npos, text.find("(126)")) << "error text: " << text;
  EXPECT_FALSE(m.GetAssigned());
  EXPECT_FALSE(Loaded("kmod_startup.dll"));

  error = m.Assign("");
  EXPECT_NE(nullptr, error);
  EXPECT_FALSE(m.GetAssigned());
  SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_DEFAULT_DIRS);
}

TEST(KernelHModule, DoLoadVetoLeavesTheReferenceCountAlone) {
  HMODULE own = LoadLibraryA("kmod_plain.dll");
  ASSERT_NE(nullptr, own);
  RefusingModule m;
  const char* result = m.Assign("kmod_plain.dll");
  EXPECT_STREQ("refused by test", result);
  EXPECT_EQ(static_cast<void*>(own), m.seen) << "DoLoad sees the loaded module";
  EXPECT_FALSE(m.GetAssigned());
  EXPECT_EQ(0, m.frees) << "a refused module is not DoFree'd";
  FreeLibrary(own);
  EXPECT_FALSE(Loaded("kmod_plain.dll")) << "the refused load left a reference behind";

  m.refuse = false;
  EXPECT_EQ(nullptr, m.Assign("kmod_plain.dll"));
  m.Free();
  m.Free();
  EXPECT_EQ(1, m.frees);
  EXPECT_FALSE(Loaded("kmod_plain.dll"));
}

TEST(KernelHModule, AssigningItsOwnHandleReloadsByPath) {
  HModule m;
  ASSERT_EQ(nullptr, m.Assign("kmod_plain.dll"));
  const std::string path = ModulePath(static_cast<HMODULE>(m.GetHandle()));
  const int attaches = Counter("KMOD_PLAIN_ATTACH"), detaches = Counter("KMOD_PLAIN_DETACH");
  const char* error = m.Assign(m.GetHandle());
  EXPECT_EQ(nullptr, error) << error;
  EXPECT_TRUE(m.GetAssigned());
  EXPECT_EQ(path, m.GetName().Text());
  // It held the only reference: unloaded and loaded again in between.
  EXPECT_EQ(detaches + 1, Counter("KMOD_PLAIN_DETACH"));
  EXPECT_EQ(attaches + 1, Counter("KMOD_PLAIN_ATTACH"));

  // A null handle is refused with the string-table text, and changes nothing.
  error = m.Assign(static_cast<void*>(nullptr));
  EXPECT_STREQ("Invalid module handle", error);
  EXPECT_TRUE(m.GetAssigned());
}

}  // namespace
