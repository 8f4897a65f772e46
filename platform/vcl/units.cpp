#include "platform/vcl/units.h"

#include "platform/vcl/package.h"

// None of these units has start-up or shut-down work yet: their objects come
// into being on first use. The counters keep the shape every unit shares.
#define VCL_UNIT_BODY(Unit)                  \
  namespace Unit {                           \
  namespace {                                \
  Sysinit::TUnitCounter unitCounter;         \
  }                                          \
  void Initialize() { unitCounter.Start(); } \
  void Finalize() { unitCounter.Stop(); }    \
  }

VCL_UNIT_BODY(System)
VCL_UNIT_BODY(Sysinit)
VCL_UNIT_BODY(Sysutils)
VCL_UNIT_BODY(Classes)
VCL_UNIT_BODY(Graphics)
VCL_UNIT_BODY(Controls)
VCL_UNIT_BODY(Forms)
VCL_UNIT_BODY(Stdctrls)
VCL_UNIT_BODY(Extctrls)
VCL_UNIT_BODY(Comctrls)
