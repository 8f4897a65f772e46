// Runtime packages and resource modules, against the fixture package and its
// French satellite.
#include <gtest/gtest.h>
#include <windows.h>

#include <fstream>
#include <string>
#include <vector>

#include "platform/vcl/vcl.h"
#include "tests/platform/vcl/fixtures/closure_target.h"

namespace {

// Through void (*)(), the generic function pointer type, to keep the cast well-formed.
template <class Fn>
Fn Export(HMODULE module, const char* name) {
  return reinterpret_cast<Fn>(reinterpret_cast<void (*)()>(GetProcAddress(module, name)));
}

std::vector<std::string> Strings(const std::vector<AnsiString>& v) {
  std::vector<std::string> out;
  for (const AnsiString& s : v) out.push_back(s.str());
  return out;
}

std::string PackageError(const char* name) {
  try {
    name ? UnloadPackage(LoadPackage(name)) : void(GetPackageInfo(GetModuleHandleA(nullptr)));
  } catch (EPackageError& e) {
    return e.Message.str();
  }
  return "(no exception)";
}

TEST(VclPackage, LoadRunsEntryPointsReadsTheDescriptorAndLoadsRequirementsFirst) {
  // The fixture counts how often its entry points ran; our own reference keeps
  // the counters readable after UnloadPackage.
  HMODULE pin = LoadLibraryA("vclfix_pkg.dll");
  ASSERT_NE(nullptr, pin) << "vclfix_pkg.dll beside the test";
  auto inits = Export<int (*)()>(pin, "InitializeCount"), finals = Export<int (*)()>(pin, "FinalizeCount");
  auto bind = Export<void (*)(ClosureTargetEvent*, ClosureTarget*)>(pin, "BindWhich");
  ASSERT_TRUE(inits && finals && bind);

  void* pkg = LoadPackage("vclfix_pkg.dll");
  ASSERT_EQ(static_cast<void*>(pin), pkg);
  EXPECT_EQ(1, inits());
  EXPECT_EQ(0, finals());
  const TPackageInfo info = GetPackageInfo(pkg);
  EXPECT_EQ((std::vector<std::string>{"VCL", "OSTREL"}), Strings(info.Requires));
  EXPECT_EQ((std::vector<std::string>{"Vclfix_pkg", "Second_unit"}), Strings(info.Contains));

  // A closure bound inside the package equals ours for the same object and method.
  ClosureTarget target, other;
  ClosureTargetEvent theirs, ours(&target, &ClosureTarget::Which);
  bind(&theirs, &target);
  EXPECT_EQ(6, theirs(5));
  EXPECT_TRUE(theirs == ours);
  bind(&theirs, &other);
  EXPECT_FALSE(theirs == ours);
  UnloadPackage(pkg);
  EXPECT_EQ(1, finals());

  // A package that requires it: started for each user (its units count
  // once), stopped when the last goes.
  void* first = LoadPackage("vclfix_req.dll");
  void* second = LoadPackage("vclfix_pkg.dll");  // required, and loaded on its own too
  EXPECT_EQ(3, inits());
  UnloadPackage(first);
  EXPECT_EQ(nullptr, GetModuleHandleA("vclfix_req.dll"));
  EXPECT_EQ(2, finals());
  EXPECT_EQ(pin, GetModuleHandleA("vclfix_pkg.dll")) << "still in use";
  UnloadPackage(second);
  EXPECT_EQ(3, finals());

  // A requirement that cannot be had names itself and leaves nothing loaded.
  EXPECT_EQ("Can't load package vclfix_badreq.dll.\nIt requires NOSUCHPKG, which cannot be loaded",
            PackageError("vclfix_badreq.dll"));
  EXPECT_EQ(nullptr, GetModuleHandleA("vclfix_badreq.dll"));
  EXPECT_EQ(4, finals()) << "the requirement it had started was stopped again";
  FreeLibrary(pin);
  EXPECT_EQ(nullptr, GetModuleHandleA("vclfix_pkg.dll")) << "every load given back";
}

TEST(VclPackage, NonPackagesAndMissingFilesRaise) {
  EXPECT_EQ("Can't load package vclfix_res.dll.\nIt is not a package", PackageError("vclfix_res.dll"));
  EXPECT_EQ(nullptr, GetModuleHandleA("vclfix_res.dll")) << "a rejected DLL stays loaded";

  const std::string missing = PackageError("no_such_package.dll");
  EXPECT_EQ(0u, missing.rfind("Can't load package no_such_package.dll.\n", 0)) << missing;
  EXPECT_NE(std::string::npos, missing.find("(126)")) << "the system's reason, ERROR_MOD_NOT_FOUND: " << missing;
  EXPECT_EQ("Module has no package descriptor", PackageError(nullptr)) << "GetPackageInfo of the test program";
}

constexpr int kShared = 100;   // in the package (English) and the satellite (French)
constexpr int kPackage = 101;  // only in the package
// In the satellite (a string block of its own): French with a Cyrillic letter, English.
constexpr int kUnwritable = 200;

TEST(VclResources, LoadStrSearchesRegisteredModulesNewestFirst) {
  HMODULE pkg = LoadLibraryA("vclfix_pkg.dll");
  HMODULE sat = LoadLibraryExA("vclfix_res.dll", nullptr, LOAD_LIBRARY_AS_DATAFILE);
  ASSERT_TRUE(pkg && sat);

  TLibModule own{.Instance = pkg}, local{.Instance = GetModuleHandleA(nullptr), .ResInstance = sat};
  RegisterModule(&own);
  EXPECT_EQ("Package string", LoadStr(kShared).str());

  RegisterModule(&local);
  RegisterModule(&local);  // twice must not make a loop
  EXPECT_EQ("Texte du satellite", LoadStr(kShared).str());
  EXPECT_EQ("Only in the package", LoadStr(kPackage).str()) << "falls through to the older module";
  EXPECT_EQ(sat, FindResourceHInstance(GetModuleHandleA(nullptr)));

  UnregisterModule(&local);
  EXPECT_EQ("Package string", LoadStr(kShared).str());
  UnregisterModule(&own);
  EXPECT_TRUE(LoadStr(kShared).IsEmpty());

  FreeLibrary(sat);
  FreeLibrary(pkg);
}

// Runs the probe program under a Unix locale and returns its line. Wine takes
// the UI language from the Unix locale of the process, which a child started
// through CreateProcess inherits from us whatever its environment block says,
// so the child is started as a Unix command: env sets LC_ALL, wine runs the
// probe. Such a child has no process handle; its output file appears by a
// rename when it is complete.
std::string RunProbe(const char* locale, const std::string& dir, int id = kShared) {
  char cwd[MAX_PATH];
  GetCurrentDirectoryA(MAX_PATH, cwd);
  const std::string out = dir + "\\probe.txt";  // app.dll itself need not exist
  std::string cmd = std::string("/usr/bin/env LC_ALL=") + locale + " LANGUAGE= wine \"" + cwd +
                    "\\vclfix_langprobe.exe\" \"" + dir + "\\app.dll\" " + std::to_string(id) + " \"" + out + "\"";
  DeleteFileA(out.c_str());
  STARTUPINFOA si{};
  si.cb = sizeof si;
  PROCESS_INFORMATION pi{};
  if (!CreateProcessA(nullptr, cmd.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &si, &pi))
    return "(cannot start: error " + std::to_string(GetLastError()) + ")";
  CloseHandle(pi.hThread);
  CloseHandle(pi.hProcess);
  // A generous limit so that a child that never writes cannot hang the test.
  for (int i = 0; i < 1200 && GetFileAttributesA(out.c_str()) == INVALID_FILE_ATTRIBUTES; ++i) Sleep(50);
  std::ifstream in(out);
  std::string line;
  std::getline(in, line);
  return line;
}

TEST(VclResources, SatelliteFollowsTheUiLanguageOfAChildProcess) {
  if (!GetProcAddress(GetModuleHandleA("ntdll.dll"), "wine_get_version"))
    GTEST_SKIP() << "the Unix locale decides the UI language only under Wine";
  char temp[MAX_PATH];
  GetTempPathA(MAX_PATH, temp);
  const std::string dir = std::string(temp) + "vclres" + std::to_string(GetCurrentProcessId());
  const std::vector<std::string> files = {dir + "\\app.FRA", dir + "\\app.RU", dir + "\\probe.txt"};
  for (const auto& f : files) DeleteFileA(f.c_str());
  CreateDirectoryA(dir.c_str(), nullptr);
  ASSERT_TRUE(CopyFileA("vclfix_res.dll", files[0].c_str(), FALSE));
  EXPECT_EQ("ui=040C found=1 text=Texte du satellite", RunProbe("fr_FR.UTF-8", dir)) << "three-letter name";
  EXPECT_EQ("ui=040C found=1 text=Retry", RunProbe("fr_FR.UTF-8", dir, kUnwritable))
      << "a text the code page cannot write gives way to the English one";
  EXPECT_EQ("ui=0419 found=0 text=", RunProbe("ru_RU.UTF-8", dir)) << "no Russian satellite yet";
  ASSERT_TRUE(CopyFileA("vclfix_res.dll", files[1].c_str(), FALSE));
  EXPECT_EQ("ui=0419 found=1 text=Texte du satellite", RunProbe("ru_RU.UTF-8", dir)) << "two-letter name";
  for (const auto& f : files) DeleteFileA(f.c_str());
  RemoveDirectoryA(dir.c_str());
}

}  // namespace
