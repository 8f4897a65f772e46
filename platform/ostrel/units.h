#pragma once
/// \file
/// The base package's units and their start-up routines.
#include "platform/ostrel/ostrel_api.h"

/// Start-up and shut-down routines of the base package's unit, entered in the
/// unit tables of the packages that import it. Once-only: only the first start
/// and the matching last stop count, however many packages run them.
namespace Ostrel {
///@{
/// The unit's start-up / shut-down routine.
OSTREL_API void Initialize();
OSTREL_API void Finalize();
///@}
}  // namespace Ostrel
