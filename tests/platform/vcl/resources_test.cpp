#include <gtest/gtest.h>
#include <windows.h>

#include <cstdio>
#include <cstring>
#include <string>

#include "platform/vcl/vcl.h"

namespace {

constexpr int kShared = 100;   // in the package (English) and the satellite (French)
constexpr int kPackage = 101;  // only in the package

TEST(VclResources, LoadStrSearchesRegisteredModulesNewestFirst) {
  HMODULE pkg = LoadLibraryA("vclfix_pkg.dll");
  HMODULE sat = LoadLibraryExA("vclfix_res.dll", nullptr, LOAD_LIBRARY_AS_DATAFILE);
  ASSERT_NE(nullptr, pkg);
  ASSERT_NE(nullptr, sat);
  EXPECT_TRUE(LoadStr(kPackage).IsEmpty()) << "nothing registered yet";

  TLibModule own, local;
  own.Instance = pkg;
  RegisterModule(&own);
  EXPECT_EQ("Package string", LoadStr(kShared).str());
  EXPECT_EQ(pkg, FindResourceHInstance(pkg));

  local.Instance = GetModuleHandleA(nullptr);
  local.ResInstance = sat;
  RegisterModule(&local);
  RegisterModule(&local);  // twice must not make a loop
  EXPECT_EQ("Texte du satellite", LoadStr(kShared).str());
  EXPECT_EQ("Only in the package", LoadStr(kPackage).str()) << "falls through to the older module";
  EXPECT_EQ(sat, FindResourceHInstance(GetModuleHandleA(nullptr)));
  EXPECT_TRUE(LoadStr(9999).IsEmpty());

  UnregisterModule(&local);
  EXPECT_EQ("Package string", LoadStr(kShared).str());
  UnregisterModule(&local);  // not registered: nothing happens
  UnregisterModule(&own);
  EXPECT_TRUE(LoadStr(kShared).IsEmpty());
  EXPECT_EQ(static_cast<void*>(pkg), FindResourceHInstance(pkg)) << "unregistered: the instance itself";

  FreeLibrary(sat);
  FreeLibrary(pkg);
}

bool UnderWine() { return GetProcAddress(GetModuleHandleA("ntdll.dll"), "wine_get_version") != nullptr; }

std::string Beside(const char* file) {
  char exe[MAX_PATH];
  const DWORD n = GetModuleFileNameA(nullptr, exe, MAX_PATH);
  std::string dir(exe, n);
  return dir.substr(0, dir.find_last_of('\\') + 1) + file;
}

std::string ReadLine(const std::string& path) {
  std::string out;
  if (FILE* f = std::fopen(path.c_str(), "rb")) {
    char buf[512];
    if (std::fgets(buf, sizeof buf, f)) out = buf;
    std::fclose(f);
  }
  while (!out.empty() && (out.back() == '\n' || out.back() == '\r')) out.pop_back();
  return out;
}

// Runs the probe program under a Unix locale and returns its line. Wine takes
// the UI language from the Unix locale of the process, which a child started
// through CreateProcess inherits from us whatever its environment block says,
// so the child is started as a Unix command: env sets LC_ALL, wine runs the
// probe. Such a child has no process handle; its output file appears by a
// rename when it is complete.
std::string RunProbe(const char* locale, const std::string& modulePath, const std::string& outFile) {
  DeleteFileA(outFile.c_str());
  std::string cmd = std::string("/usr/bin/env LC_ALL=") + locale + " LANGUAGE= wine \"" +
                    Beside("vclfix_langprobe.exe") + "\" \"" + modulePath + "\" " + std::to_string(kShared) + " \"" +
                    outFile + "\"";
  STARTUPINFOA si{};
  si.cb = sizeof si;
  PROCESS_INFORMATION pi{};
  if (!CreateProcessA(nullptr, cmd.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &si, &pi))
    return "(cannot start: error " + std::to_string(GetLastError()) + ")";
  if (pi.hThread) CloseHandle(pi.hThread);
  if (pi.hProcess) CloseHandle(pi.hProcess);
  // A generous limit so that a child that never writes cannot hang the test.
  for (int i = 0; i < 1200 && GetFileAttributesA(outFile.c_str()) == INVALID_FILE_ATTRIBUTES; ++i) Sleep(50);
  return ReadLine(outFile);
}

// A fresh folder in the temporary directory, removed with its files.
struct TempDir {
  std::string path;
  TempDir() {
    char temp[MAX_PATH];
    GetTempPathA(MAX_PATH, temp);
    path = std::string(temp) + "vclres" + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(GetTickCount());
    CreateDirectoryA(path.c_str(), nullptr);
  }
  ~TempDir() {
    WIN32_FIND_DATAA fd;
    HANDLE h = FindFirstFileA((path + "\\*").c_str(), &fd);
    if (h != INVALID_HANDLE_VALUE) {
      do {
        if (!(fd.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)) DeleteFileA((path + "\\" + fd.cFileName).c_str());
      } while (FindNextFileA(h, &fd));
      FindClose(h);
    }
    RemoveDirectoryA(path.c_str());
  }
};

TEST(VclResources, SatelliteNamedAfterTheUiLanguage) {
  TempDir dir;
  const std::string app = dir.path + "\\app.dll";  // only its name is used: the file need not exist
  char abbr[16] = {};
  ASSERT_NE(
      0, GetLocaleInfoA(MAKELCID(GetUserDefaultUILanguage(), SORT_DEFAULT), LOCALE_SABBREVLANGNAME, abbr, sizeof abbr));
  const std::string three = dir.path + "\\app." + abbr;
  const std::string two = dir.path + "\\app." + std::string(abbr, 2);

  EXPECT_EQ(nullptr, LoadResourceModule(app.c_str())) << "no satellite yet";
  for (const std::string& name : {three, two}) {
    ASSERT_TRUE(CopyFileA("vclfix_res.dll", name.c_str(), FALSE)) << name;
    void* res = LoadResourceModule(app.c_str());
    ASSERT_NE(nullptr, res) << name;
    TLibModule module;
    module.Instance = GetModuleHandleA(nullptr);
    module.ResInstance = res;
    RegisterModule(&module);
    EXPECT_EQ("Texte du satellite", LoadStr(kShared).str()) << name;
    UnregisterModule(&module);
    FreeLibrary(static_cast<HMODULE>(res));
    DeleteFileA(name.c_str());
  }
  EXPECT_EQ(nullptr, LoadResourceModule(nullptr));
  EXPECT_EQ(nullptr, LoadResourceModule(""));
}

TEST(VclResources, SatelliteFollowsTheLocaleOfAChildProcess) {
  if (!UnderWine()) GTEST_SKIP() << "the Unix locale decides the UI language only under Wine";
  TempDir dir;
  const std::string app = dir.path + "\\app.dll";
  const std::string out = dir.path + "\\probe.txt";
  ASSERT_TRUE(CopyFileA("vclfix_res.dll", (dir.path + "\\app.FRA").c_str(), FALSE));

  EXPECT_EQ("ui=040C found=1 text=Texte du satellite", RunProbe("fr_FR.UTF-8", app, out)) << "three-letter name";
  EXPECT_EQ("ui=0419 found=0 text=", RunProbe("ru_RU.UTF-8", app, out)) << "no Russian satellite yet";
  ASSERT_TRUE(CopyFileA("vclfix_res.dll", (dir.path + "\\app.RU").c_str(), FALSE));
  EXPECT_EQ("ui=0419 found=1 text=Texte du satellite", RunProbe("ru_RU.UTF-8", app, out)) << "two-letter name";
}

}  // namespace
