#include "platform/vcl/units.h"

#include "platform/vcl/core/package.h"

// None of these units has start-up or shut-down work yet: their objects come
// into being on first use. The counters keep the shape every unit shares.
SYSINIT_EMPTY_UNIT(System)
SYSINIT_EMPTY_UNIT(Sysinit)
SYSINIT_EMPTY_UNIT(Sysutils)
SYSINIT_EMPTY_UNIT(Classes)
SYSINIT_EMPTY_UNIT(Graphics)
SYSINIT_EMPTY_UNIT(Controls)
SYSINIT_EMPTY_UNIT(Forms)
SYSINIT_EMPTY_UNIT(Stdctrls)
SYSINIT_EMPTY_UNIT(Extctrls)
SYSINIT_EMPTY_UNIT(Comctrls)
