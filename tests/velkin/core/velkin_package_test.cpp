#include <gtest/gtest.h>
#include <process.h>
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <system_error>
#include <vector>

#include "platform/ostrel/filelog.h"
#include "platform/ostrel/oslib.h"
#include "platform/vcl/vcl.h"
#include "velkin/core/velkin.h"
#include "velkin/gdi/gdi_temp.h"

namespace {

namespace fs = std::filesystem;

HMODULE Library() { return GetModuleHandleA("velkin.dll"); }

std::string Join(const std::vector<AnsiString>& names, std::size_t from = 0) {
  std::string s;
  for (std::size_t i = from; i < names.size(); ++i) s += (i > from ? " " : "") + names[i].str();
  return s;
}

TEST(CorePackage, DescriptorAndUnitTableListUnitsInStartUpOrder) {
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
  ASSERT_EQ(42, count);
  std::string names;
  std::set<std::string> distinct;
  for (int i = 0; i < count; ++i) {
    names += (i ? " " : "") + std::string(table[i].Name);
    distinct.insert(table[i].Name);
    EXPECT_TRUE(table[i].Initialize && table[i].Finalize) << "entry " << i << " " << table[i].Name;
  }
  EXPECT_EQ(Join(info.Contains), names);
  EXPECT_EQ(42u, distinct.size()) << "a unit listed twice: " << names;
}

TEST(CorePackage, EntryPointsRunEachUnitOnce) {
  // Exported undecorated, as the package loader looks them up.
  auto initialize = reinterpret_cast<void (*)()>(GetProcAddress(Library(), "Initialize"));
  auto finalize = reinterpret_cast<void (*)()>(GetProcAddress(Library(), "Finalize"));
  ASSERT_TRUE(initialize && finalize);
  const int up0 = Gdi_temp::StartUpRuns(), down0 = Gdi_temp::ShutDownRuns();
  std::error_code error;
  const auto logSize = fs::file_size(FILELogPath(), error);

  // Gdi_temp's runs after each call, relative to the start.
  const struct {
    std::string call;
    int startUps, shutDowns;
  } steps[] = {{"Initialize", 1, 0}, {"Initialize", 1, 0},  {"Register", 1, 0},     {"Finalize", 1, 0},
               {"Finalize", 1, 1},   {"LoadPackage", 2, 1}, {"UnloadPackage", 2, 2}};
  void* package = nullptr;
  for (const auto& s : steps) {
    if (s.call == "Initialize") initialize();
    if (s.call == "Finalize") finalize();
    if (s.call == "Register") Velkin::Register();
    if (s.call == "LoadPackage") package = LoadPackage("velkin.dll");
    if (s.call == "UnloadPackage") UnloadPackage(Library());
    EXPECT_EQ(s.startUps, Gdi_temp::StartUpRuns() - up0) << "start-ups after step " << &s - steps << " " << s.call;
    EXPECT_EQ(s.shutDowns, Gdi_temp::ShutDownRuns() - down0) << "shut-downs after step " << &s - steps << " " << s.call;
  }
  EXPECT_EQ(Library(), package);
  // This program links the library: unloading the package must leave it mapped.
  EXPECT_NE(nullptr, Library());
  // Neither the entry points nor Register log anything.
  EXPECT_EQ(logSize, fs::file_size(FILELogPath(), error));
}

// A fresh folder under the user's temp folder, removed with its contents.
struct TempFolder {
  fs::path path;
  TempFolder() {
    // The long form: that is how a program started from here sees its path.
    char temp[MAX_PATH + 1] = "";
    GetLongPathNameA(fs::temp_directory_path().string().c_str(), temp, sizeof temp);
    fs::create_directories(path = fs::path(temp) / ("velkin_load_" + std::to_string(GetCurrentProcessId())));
  }
  ~TempFolder() {
    std::error_code ignored;
    fs::remove_all(path, ignored);
  }
};

std::vector<std::string> ReadLines(const fs::path& file) {
  std::ifstream in(file);
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);) lines.push_back(line.substr(0, line.find_last_not_of('\r') + 1));
  return lines;
}

std::string Quoted(const std::vector<std::string>& lines) {
  std::string s;
  for (const auto& l : lines) s += "\n  [" + l + "]";
  return s;
}

TEST(CoreLoadLog, OneLineForTheHostNoneForThreadsAndSatelliteStrings) {
  // The host runs from a folder of its own, as an application would, with a
  // satellite beside the library named after the UI language ("velkin.ENU"
  // under English).
  char language[16] = {};
  ASSERT_NE(0, GetLocaleInfoA(MAKELCID(GetUserDefaultUILanguage(), SORT_DEFAULT), LOCALE_SABBREVLANGNAME, language,
                              sizeof language));
  const TempFolder folder;
  const fs::path bin = GetStartupDir();
  for (const char* dll : {"velkin.dll", "vcl.dll", "ostrel.dll", "pellum.dll"})
    fs::copy_file(bin / dll, folder.path / dll);
  fs::copy_file(bin / "velkin_core_satellite.dll", folder.path / (std::string("velkin.") + language));
  const std::string host = (folder.path / "host.exe").string(), report = (folder.path / "host.txt").string();
  fs::copy_file(bin / "velkin_core_load_host.exe", host);

  ASSERT_EQ(0, _spawnl(_P_WAIT, host.c_str(), "host", ("\"" + report + "\"").c_str(), nullptr)) << host;
  const std::vector<std::string> facts = ReadLines(report);
  ASSERT_EQ(4u, facts.size()) << Quoted(facts);
  char expected[64];
  std::snprintf(expected, sizeof expected, "VELK(%08X) Loaded by: [",
                static_cast<unsigned>(std::strtoull(facts[0].c_str(), nullptr, 16) & 0xFFFFFFFFu));
  const std::string line = std::string(expected) + host + "]";

  // Exactly one line: thread attach and detach wrote nothing.
  const std::vector<std::string> log = ReadLines(facts[1]);
  ASSERT_EQ(1u, log.size()) << facts[1] << Quoted(log);
  // What precedes the text (a time stamp) is the log's own business.
  ASSERT_GE(log[0].size(), line.size());
  EXPECT_EQ(line, log[0].substr(log[0].size() - line.size())) << "whole line: " << log[0];

  // "Satellite: invalid module handle"; what the satellite lacks is not taken
  // from the library's own tables.
  EXPECT_EQ("536174656C6C6974653A20696E76616C6964206D6F64756C652068616E646C65", facts[2]);
  EXPECT_EQ("", facts[3]);
}

}  // namespace
