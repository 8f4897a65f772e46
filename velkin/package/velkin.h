#pragma once
#include "platform/vcl/core/package.h"
#include "velkin/velkin_api.h"

/// \file
/// The package's main unit: entry points, unit table and registration hook.

/// Package entry points, exported undecorated for the package loader
/// (Sysutils::LoadPackage / UnloadPackage). Initialize runs every unit's start-up
/// routine in table order, imported units first; Finalize runs the shut-down
/// routines in reverse.
///@{
extern "C" VELKIN_API void Initialize();
extern "C" VELKIN_API void Finalize();
///@}

namespace Velkin {

///@{
/// The main unit's own start-up and shut-down routines (once-only, no work).
VELKIN_API void Initialize();
VELKIN_API void Finalize();
///@}

/// Design-time registration hook a package loader looks for. Does nothing: the
/// library registers no components.
VELKIN_API void Register();

/// The unit table in start-up order: the imported units, then the library's own
/// 28 units, in the order the package descriptor lists them. Static data, valid
/// while the library is loaded.
VELKIN_API const Sysinit::TUnitEntry* GetUnitTable(int* count);

}  // namespace Velkin
