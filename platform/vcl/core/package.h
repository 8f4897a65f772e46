#pragma once
/// \file
/// Runtime packages: loading, descriptors and unit start-up.
#include <vector>

#include "platform/vcl/core/sysutils.h"
#include "platform/vcl/core/vcl_api.h"

/// Runtime packages: DLLs that carry a package descriptor and the entry points
/// Initialize and Finalize.
namespace Sysutils {

/// The package descriptor, resource RCDATA "PACKAGEINFO": text lines
/// "requires NAME" (the packages it needs, in order) and "contains NAME" (its
/// units, in start-up order); other lines are ignored.
struct TPackageInfo {
  std::vector<AnsiString> Requires;
  std::vector<AnsiString> Contains;
};

/// Reads the descriptor of a loaded module; raises EPackageError when the
/// module has none.
VCL_API TPackageInfo GetPackageInfo(void* module);

/// Loads a package and runs its Initialize, after loading the packages its
/// descriptor requires (each started first, once however many require it; a
/// required DLL that is no package is only loaded). A requirement NAME is
/// NAME.dll beside the package or where the system finds it; the framework's
/// package names VCL50 and VCLX50 are vcl.dll. Raises EPackageError
/// "Can't load package <name>.\n<reason>" when the DLL or a requirement cannot
/// be loaded or it is not a package, leaving nothing loaded.
VCL_API void* LoadPackage(const AnsiString& name);

/// Runs the package's Finalize and unloads it, then what it required.
VCL_API void UnloadPackage(void* module);

}  // namespace Sysutils

namespace Sysinit {

/// One unit of a package: its start-up and shut-down routines.
struct TUnitEntry {
  const char* Name;
  void (*Initialize)();
  void (*Finalize)();
};

/// Once-only start counter of a unit: the work runs on the first start and on
/// the matching last stop, however often a unit is started.
class TUnitCounter {
 public:
  bool Start() { return --count_ == -1; }
  bool Stop() { return ++count_ == 0; }
  int Value() const { return count_; }

 private:
  int count_ = 0;
};

/// Defines Unit::Initialize/Finalize for a unit without start-up or shut-down
/// work: only its once-only counter moves.
#define SYSINIT_EMPTY_UNIT(Unit)             \
  namespace Unit {                           \
  namespace {                                \
  ::Sysinit::TUnitCounter unitCounter;       \
  }                                          \
  void Initialize() { unitCounter.Start(); } \
  void Finalize() { unitCounter.Stop(); }    \
  }

///@{
/// Runs every unit's Initialize first to last / every Finalize last to first.
VCL_API void InitializeUnits(const TUnitEntry* units, int count);
VCL_API void FinalizeUnits(const TUnitEntry* units, int count);
///@}

}  // namespace Sysinit
