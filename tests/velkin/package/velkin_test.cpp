// The library as a package: descriptor, unit table, entry points run once,
// and the one load log line.
#include "velkin/package/velkin.h"

#include <gtest/gtest.h>
#include <process.h>
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <numeric>
#include <set>
#include <string>
#include <system_error>
#include <vector>

#include "platform/ostrel/oslib.h"
#include "platform/vcl/vcl.h"
#include "velkin/gdi/gdi_temp.h"

namespace {

namespace fs = std::filesystem;

HMODULE Library() { return GetModuleHandleA("velkin.dll"); }

std::string Join(const std::vector<AnsiString>& names, std::size_t from = 0) {
  std::string s;
  for (std::size_t i = from; i < names.size(); ++i) s += (i > from ? " " : "") + names[i].str();
  return s;
}

TEST(Velkin, DescriptorAndUnitTableListUnitsInStartUpOrder) {
  const TPackageInfo info = GetPackageInfo(Library());
  EXPECT_EQ("VCL50 OSTREL PELLUM VCLX50", Join(info.Requires));
  // 14 imported units, then the library's own 28 starting with the main unit.
  ASSERT_EQ(42u, info.Contains.size()) << Join(info.Contains);
  EXPECT_EQ(
      "Velkin Xmessagebox Gdi_temp H_bitmap Gdi_utils H_chobj Gdi_object Hinput Hoperation Vcl_utils H_cfield "
      "H_module H_thread Gdi_canvas H_abrush H_extdraw Tc_draw Tc_gsr Msg_str H_tcvt Hclasslist Hmleditor Brannock "
      "Himagelnk H_dblbuf Fmap H_dynarray Hsync",
      Join(info.Contains, 14));

  int count = -1;
  const Sysinit::TUnitEntry* table = Velkin::GetUnitTable(&count);
  std::vector<AnsiString> names;
  for (int i = 0; i < count; ++i) {
    names.push_back(table[i].Name);
    EXPECT_TRUE(table[i].Initialize && table[i].Finalize) << "entry " << i << " " << table[i].Name;
  }
  EXPECT_EQ(Join(info.Contains), Join(names));
  EXPECT_EQ(42u, std::set<AnsiString>(names.begin(), names.end()).size()) << "a unit listed twice: " << Join(names);
}

TEST(Velkin, EntryPointsRunEachUnitOnce) {
  // Exported undecorated, as the package loader looks them up.
  auto initialize = reinterpret_cast<void (*)()>(GetProcAddress(Library(), "Initialize"));
  auto finalize = reinterpret_cast<void (*)()>(GetProcAddress(Library(), "Finalize"));
  ASSERT_TRUE(initialize && finalize);
  const int up0 = Gdi_temp::StartUpRuns(), down0 = Gdi_temp::ShutDownRuns();

  // Each call, then Gdi_temp's start-ups and shut-downs since the start.
  const struct {
    std::string call;
    int startUps, shutDowns;
  } steps[] = {{"Initialize", 1, 0}, {"Initialize", 1, 0},  {"Register", 1, 0},     {"Finalize", 1, 0},
               {"Finalize", 1, 1},   {"LoadPackage", 2, 1}, {"UnloadPackage", 2, 2}};
  void* package = nullptr;
  for (int i = 0; i < 7; ++i) {
    const std::string& call = steps[i].call;
    if (call == "Initialize") initialize();
    if (call == "Finalize") finalize();
    if (call == "Register") Velkin::Register();
    if (call == "LoadPackage") package = LoadPackage("velkin.dll");
    if (call == "UnloadPackage") UnloadPackage(Library());
    EXPECT_EQ(steps[i].startUps, Gdi_temp::StartUpRuns() - up0) << "step " << i << " " << call << ", start-ups";
    EXPECT_EQ(steps[i].shutDowns, Gdi_temp::ShutDownRuns() - down0) << "step " << i << " " << call << ", shut-downs";
  }
  EXPECT_EQ(Library(), package);
  // This program links the library: unloading the package must leave it mapped.
  EXPECT_NE(nullptr, Library());
}

// A fresh folder under the user's temp folder, removed with its contents.
struct TempFolder {
  fs::path path;
  explicit TempFolder(const fs::path& p) : path(p) { fs::create_directories(p); }
  ~TempFolder() { fs::remove_all(path, ignored); }
  std::error_code ignored;
};

std::vector<std::string> ReadLines(const fs::path& file) {
  std::ifstream in(file);
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);) lines.push_back(line.substr(0, line.find_last_not_of('\r') + 1));
  return lines;
}

std::string Quoted(const std::vector<std::string>& lines) {
  return std::accumulate(lines.begin(), lines.end(), std::string(),
                         [](auto s, auto& l) { return s + "\n  [" + l + "]"; });
}

// The host, a UTF-8 program, runs from a folder of its own, as an application
// would: one with a short name, and one whose name takes more bytes in UTF-8
// than a path of MAX_PATH characters may have (but fewer characters).
TEST(Velkin, LoadLogHasOneLineForTheHostNoneForThreads) {
  const fs::path bin = GetStartupDir();
  const std::string pid = std::to_string(GetCurrentProcessId());
  std::u8string greek;
  for (int i = 0; i < 140; ++i) greek += u8"\u03a9";
  for (const fs::path& name : {fs::path("load_" + pid), fs::path(u8"load_" + greek + u8"_") += pid}) {
    TempFolder folder(bin / name);
    for (const char* dll : {"velkin.dll", "vcl.dll", "ostrel.dll", "pellum.dll"})
      fs::copy_file(bin / dll, folder.path / dll);
    const fs::path host = folder.path / "host.exe", report = folder.path / "host.txt";
    const auto utf8 = [](const fs::path& p) {
      return std::string(reinterpret_cast<const char*>(p.u8string().c_str()));
    };
    SCOPED_TRACE(utf8(host));
    fs::copy_file(bin / "velkin_package_load_host.exe", host);

    ASSERT_EQ(0, _wspawnl(_P_WAIT, host.c_str(), L"host", (L"\"" + report.wstring() + L"\"").c_str(), nullptr));
    const std::vector<std::string> facts = ReadLines(report);
    ASSERT_EQ(2u, facts.size()) << Quoted(facts);
    char expected[64];
    std::snprintf(expected, sizeof expected, "VELK(%08X) Loaded by: [",
                  static_cast<unsigned>(std::strtoull(facts[0].c_str(), nullptr, 16) & 0xFFFFFFFFu));
    const std::string line = std::string(expected) + utf8(host) + "]";

    // Exactly one line: thread attach and detach wrote nothing.
    const std::vector<std::string> log =
        ReadLines(fs::path(std::u8string(reinterpret_cast<const char8_t*>(facts[1].c_str()))));
    ASSERT_EQ(1u, log.size()) << facts[1] << Quoted(log);
    // What precedes the text (a time stamp) is the log's own business.
    EXPECT_TRUE(log[0].ends_with(line)) << "whole line: " << log[0] << "\nexpected it to end with: " << line;
  }
}

}  // namespace
