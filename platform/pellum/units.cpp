#include "platform/pellum/units.h"

#include "platform/vcl/core/package.h"

// No start-up or shut-down work: the class factory, blits and directory dialog
// need none. The counters keep the shape every unit shares.
SYSINIT_EMPTY_UNIT(Mktclass)
SYSINIT_EMPTY_UNIT(Gdi_ext)
SYSINIT_EMPTY_UNIT(Filectrl)
