#include "platform/pellum/units.h"

#include "platform/vcl/package.h"

// No start-up or shut-down work: the class factory, blits and directory dialog
// need none. The counters keep the shape every unit shares.
#define PELLUM_UNIT_BODY(Unit)               \
  namespace Unit {                           \
  namespace {                                \
  Sysinit::TUnitCounter unitCounter;         \
  }                                          \
  void Initialize() { unitCounter.Start(); } \
  void Finalize() { unitCounter.Stop(); }    \
  }

PELLUM_UNIT_BODY(Mktclass)
PELLUM_UNIT_BODY(Gdi_ext)
PELLUM_UNIT_BODY(Filectrl)
