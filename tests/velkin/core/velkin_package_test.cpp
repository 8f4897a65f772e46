#include <gtest/gtest.h>

#include <windows.h>

#include <filesystem>
#include <set>
#include <string>
#include <system_error>
#include <vector>

#include "platform/ostrel/filelog.h"
#include "platform/vcl/vcl.h"
#include "velkin/core/velkin.h"
#include "velkin/gdi/gdi_temp.h"

namespace {

HMODULE Library() { return GetModuleHandleA("velkin.dll"); }

std::string Join(const std::vector<AnsiString>& names, std::size_t from = 0) {
  std::string s;
  for (std::size_t i = from; i < names.size(); ++i) s += (i > from ? " " : "") + names[i].str();
  return s;
}

TEST(CorePackage, DescriptorListsPackagesAndUnitsInStartUpOrder) {
  const TPackageInfo info = GetPackageInfo(Library());
  EXPECT_EQ("VCL50 OSTREL PELLUM VCLX50", Join(info.Requires));
  // 14 imported units, then the library's own 28 starting with the main unit.
  ASSERT_EQ(42u, info.Contains.size()) << Join(info.Contains);
  EXPECT_EQ(
      "Velkin Xmessagebox Gdi_temp H_bitmap Gdi_utils H_chobj Gdi_object Hinput Hoperation Vcl_utils H_cfield "
      "H_module H_thread Gdi_canvas H_abrush H_extdraw Tc_draw Tc_gsr Msg_str H_tcvt Hclasslist Hmleditor Brannock "
      "Himagelnk H_dblbuf Fmap H_dynarray Hsync",
      Join(info.Contains, 14));
  std::set<std::string> distinct;
  for (const auto& unit : info.Contains) distinct.insert(unit.str());
  EXPECT_EQ(42u, distinct.size()) << "a unit listed twice: " << Join(info.Contains);
}

TEST(CorePackage, UnitTableFollowsTheDescriptor) {
  const TPackageInfo info = GetPackageInfo(Library());
  int count = -1;
  const Sysinit::TUnitEntry* table = Velkin::GetUnitTable(&count);
  ASSERT_NE(nullptr, table);
  ASSERT_EQ(static_cast<int>(info.Contains.size()), count);
  for (int i = 0; i < count; ++i) {
    EXPECT_EQ(info.Contains[i].str(), table[i].Name) << "entry " << i;
    EXPECT_TRUE(table[i].Initialize && table[i].Finalize) << "entry " << i << " " << table[i].Name;
  }
}

struct Step {
  const char* call;
  int startUps;
  int shutDowns;
};

TEST(CorePackage, EntryPointsRunEachUnitOnce) {
  // Exported undecorated, as the package loader looks them up.
  auto initialize = reinterpret_cast<void (*)()>(GetProcAddress(Library(), "Initialize"));
  auto finalize = reinterpret_cast<void (*)()>(GetProcAddress(Library(), "Finalize"));
  ASSERT_TRUE(initialize && finalize);
  const int up0 = Gdi_temp::StartUpRuns(), down0 = Gdi_temp::ShutDownRuns();
  std::error_code error;
  const auto logSize = std::filesystem::file_size(FILELogPath(), error);

  // Gdi_temp's runs after each call, relative to the start.
  const Step steps[] = {
      {"Initialize", 1, 0}, {"Initialize", 1, 0}, {"Register", 1, 0}, {"Finalize", 1, 0},
      {"Finalize", 1, 1},   {"Initialize", 2, 1}, {"Finalize", 2, 2},
  };
  int index = 0;
  for (const Step& s : steps) {
    const std::string call = s.call;
    if (call == "Initialize") initialize();
    if (call == "Finalize") finalize();
    if (call == "Register") Velkin::Register();
    EXPECT_EQ(s.startUps, Gdi_temp::StartUpRuns() - up0) << "start-ups after step " << index << " " << call;
    EXPECT_EQ(s.shutDowns, Gdi_temp::ShutDownRuns() - down0) << "shut-downs after step " << index << " " << call;
    ++index;
  }
  // Neither the entry points nor Register log anything.
  EXPECT_EQ(logSize, std::filesystem::file_size(FILELogPath(), error));
}

TEST(CorePackage, LoadPackageStartsAndUnloadPackageStops) {
  const int up0 = Gdi_temp::StartUpRuns(), down0 = Gdi_temp::ShutDownRuns();
  void* package = LoadPackage("velkin.dll");
  EXPECT_EQ(Library(), package);
  EXPECT_EQ(1, Gdi_temp::StartUpRuns() - up0);
  EXPECT_EQ(0, Gdi_temp::ShutDownRuns() - down0);
  UnloadPackage(package);
  EXPECT_EQ(1, Gdi_temp::ShutDownRuns() - down0);
  // This program links the library: unloading the package must leave it mapped.
  EXPECT_NE(nullptr, GetModuleHandleA("velkin.dll"));
}

}  // namespace
