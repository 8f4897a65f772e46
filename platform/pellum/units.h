#pragma once
/// \file
/// The helper package's units and their start-up routines.
#include "platform/pellum/pellum_api.h"

/// Start-up and shut-down routines of the second package's units, entered in the
/// unit tables of the packages that import them. Once-only, as every unit's.
#define PELLUM_UNIT_ROUTINES(Unit) \
  namespace Unit {                 \
  PELLUM_API void Initialize();    \
  PELLUM_API void Finalize();      \
  }

PELLUM_UNIT_ROUTINES(Mktclass)
PELLUM_UNIT_ROUTINES(Gdi_ext)
PELLUM_UNIT_ROUTINES(Filectrl)

#undef PELLUM_UNIT_ROUTINES
