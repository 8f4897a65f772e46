#pragma once
/// \file
/// The framework's units and their start-up routines.
#include "platform/vcl/core/vcl_api.h"

/// Start-up and shut-down routines of the framework's units, entered in the unit
/// tables of the packages that import them. vcl.dll holds the units of both
/// framework packages a library names in its descriptor (VCL50 and VCLX50).
/// Each pair is once-only (Sysinit::TUnitCounter): the first start and the
/// matching last stop do the work, however many packages run them.
#define VCL_UNIT_ROUTINES(Unit) \
  namespace Unit {              \
  VCL_API void Initialize();    \
  VCL_API void Finalize();      \
  }

VCL_UNIT_ROUTINES(System)
VCL_UNIT_ROUTINES(Sysinit)
VCL_UNIT_ROUTINES(Sysutils)
VCL_UNIT_ROUTINES(Classes)
VCL_UNIT_ROUTINES(Graphics)
VCL_UNIT_ROUTINES(Controls)
VCL_UNIT_ROUTINES(Forms)
VCL_UNIT_ROUTINES(Stdctrls)
VCL_UNIT_ROUTINES(Extctrls)
VCL_UNIT_ROUTINES(Comctrls)

#undef VCL_UNIT_ROUTINES
