#pragma once
#include "velkin/velkin_api.h"

// Unit Gdi_temp: the temporary object pool's start-up and shut-down.
namespace Gdi_temp {
VELKIN_API void Initialize();
VELKIN_API void Finalize();
// How many times the unit's start-up / shut-down work actually ran.
VELKIN_API int StartUpRuns();
VELKIN_API int ShutDownRuns();
}  // namespace Gdi_temp
