#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "platform/vcl/vcl.h"
#include "tests/platform/vcl/fixtures/closure_target.h"

namespace {

// The fixture package counts how often its entry points ran; holding an extra
// reference keeps its counters readable after UnloadPackage.
struct PackageProbe {
  HMODULE pin = LoadLibraryA("vclfix_pkg.dll");
  int Count(const char* name) const {
    // Through void (*)(), the generic function pointer type, to keep the cast well-formed.
    auto fn = reinterpret_cast<int (*)()>(reinterpret_cast<void (*)()>(GetProcAddress(pin, name)));
    return fn ? fn() : -1;
  }
  ~PackageProbe() {
    if (pin) FreeLibrary(pin);
  }
};

std::vector<std::string> Strings(const std::vector<AnsiString>& v) {
  std::vector<std::string> out;
  for (const AnsiString& s : v) out.push_back(s.str());
  return out;
}

std::string PackageError(const char* name) {
  try {
    void* h = LoadPackage(name);
    UnloadPackage(h);
  } catch (EPackageError& e) {
    return e.Message.str();
  }
  return "(no exception)";
}

TEST(VclPackage, LoadRunsEntryPointsAndReadsTheDescriptor) {
  PackageProbe probe;
  ASSERT_NE(nullptr, probe.pin) << "vclfix_pkg.dll beside the test";
  EXPECT_EQ(0, probe.Count("InitializeCount"));

  void* pkg = LoadPackage("vclfix_pkg.dll");
  ASSERT_EQ(static_cast<void*>(probe.pin), pkg);
  EXPECT_EQ(1, probe.Count("InitializeCount"));
  EXPECT_EQ(0, probe.Count("FinalizeCount"));

  const TPackageInfo info = GetPackageInfo(pkg);
  EXPECT_EQ((std::vector<std::string>{"VCL", "OSTREL"}), Strings(info.Requires));
  EXPECT_EQ((std::vector<std::string>{"Vclfix_pkg", "Second_unit"}), Strings(info.Contains));

  UnloadPackage(pkg);
  EXPECT_EQ(1, probe.Count("InitializeCount"));
  EXPECT_EQ(1, probe.Count("FinalizeCount"));
  UnloadPackage(nullptr);  // nothing to do, no crash

  // Each load holds one reference: after the unload only the probe's remains.
  FreeLibrary(probe.pin);
  probe.pin = nullptr;
  EXPECT_EQ(nullptr, GetModuleHandleA("vclfix_pkg.dll")) << "UnloadPackage left the DLL loaded";
}

TEST(VclPackage, NonPackagesAndMissingFilesRaise) {
  EXPECT_EQ("Can't load package vclfix_res.dll.\nIt is not a package", PackageError("vclfix_res.dll"));
  EXPECT_EQ(nullptr, GetModuleHandleA("vclfix_res.dll")) << "a rejected DLL stays loaded";

  const std::string missing = PackageError("no_such_package.dll");
  EXPECT_EQ(0u, missing.rfind("Can't load package no_such_package.dll.\n", 0)) << missing;
  EXPECT_NE(std::string::npos, missing.find("(126)")) << "the system's reason, ERROR_MOD_NOT_FOUND: " << missing;

  for (void* module : {static_cast<void*>(GetModuleHandleA(nullptr)), static_cast<void*>(nullptr)}) {
    try {
      GetPackageInfo(module);
      ADD_FAILURE() << "no exception for module " << module;
    } catch (EPackageError& e) {
      EXPECT_STREQ("Module has no package descriptor", e.Message.c_str());
    }
  }
}

TEST(VclPackage, ClosureBoundInAPackageEqualsOurs) {
  PackageProbe probe;
  ASSERT_NE(nullptr, probe.pin);
  using Bind = void (*)(ClosureTargetEvent*, ClosureTarget*);
  auto bind = reinterpret_cast<Bind>(reinterpret_cast<void (*)()>(GetProcAddress(probe.pin, "BindWhich")));
  ASSERT_NE(nullptr, bind);
  ClosureTarget target, other;
  ClosureTargetEvent theirs, ours(&target, &ClosureTarget::Which);
  bind(&theirs, &target);
  EXPECT_TRUE(theirs.IsSet());
  EXPECT_EQ(6, theirs(5));
  EXPECT_TRUE(theirs == ours) << "same object and method, bound in two modules";
  bind(&theirs, &other);
  EXPECT_FALSE(theirs == ours);
}

std::vector<std::string> unitLog;
Sysinit::TUnitCounter counterA, counterB;
void StartA() {
  unitLog.push_back("start A");
  if (counterA.Start()) unitLog.push_back("work A");
}
void StopA() {
  unitLog.push_back("stop A");
  if (counterA.Stop()) unitLog.push_back("unwork A");
}
void StartB() {
  unitLog.push_back("start B");
  if (counterB.Start()) unitLog.push_back("work B");
}
void StopB() {
  unitLog.push_back("stop B");
  if (counterB.Stop()) unitLog.push_back("unwork B");
}

TEST(VclPackage, UnitTablesRunInOrderAndWorkOnce) {
  const Sysinit::TUnitEntry units[] = {{"A", StartA, StopA}, {"Gap", nullptr, nullptr}, {"B", StartB, StopB}};
  Sysinit::InitializeUnits(units, 3);
  Sysinit::InitializeUnits(units, 3);
  EXPECT_EQ(-2, counterA.Value());
  Sysinit::FinalizeUnits(units, 3);
  Sysinit::FinalizeUnits(units, 3);
  EXPECT_EQ((std::vector<std::string>{"start A", "work A", "start B", "work B", "start A", "start B", "stop B",
                                      "stop A", "stop B", "unwork B", "stop A", "unwork A"}),
            unitLog);
  EXPECT_EQ(0, counterA.Value());
  EXPECT_EQ(0, counterB.Value());
}

}  // namespace
