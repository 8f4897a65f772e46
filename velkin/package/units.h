#pragma once
/// \file
/// The library's units and their start-up routines.
#include "velkin/velkin_api.h"

/// Start-up and shut-down routines of the library's units that have no work at
/// these points: their objects come into being on first use. Gdi_temp's are in
/// velkin/gdi/gdi_temp.h, the main unit's in velkin/package/velkin.h. Each pair is
/// once-only: the first start and the matching last stop count, however many
/// packages run them.
#define VELKIN_UNIT_ROUTINES(Unit) \
  namespace Unit {                 \
  VELKIN_API void Initialize();    \
  VELKIN_API void Finalize();      \
  }

VELKIN_UNIT_ROUTINES(Xmessagebox)
VELKIN_UNIT_ROUTINES(H_bitmap)
VELKIN_UNIT_ROUTINES(Gdi_utils)
VELKIN_UNIT_ROUTINES(H_chobj)
VELKIN_UNIT_ROUTINES(Gdi_object)
VELKIN_UNIT_ROUTINES(Hinput)
VELKIN_UNIT_ROUTINES(Hoperation)
VELKIN_UNIT_ROUTINES(Vcl_utils)
VELKIN_UNIT_ROUTINES(H_cfield)
VELKIN_UNIT_ROUTINES(H_module)
VELKIN_UNIT_ROUTINES(H_thread)
VELKIN_UNIT_ROUTINES(Gdi_canvas)
VELKIN_UNIT_ROUTINES(H_abrush)
VELKIN_UNIT_ROUTINES(H_extdraw)
VELKIN_UNIT_ROUTINES(Tc_draw)
VELKIN_UNIT_ROUTINES(Tc_gsr)
VELKIN_UNIT_ROUTINES(Msg_str)
VELKIN_UNIT_ROUTINES(H_tcvt)
VELKIN_UNIT_ROUTINES(Hclasslist)
VELKIN_UNIT_ROUTINES(Hmleditor)
VELKIN_UNIT_ROUTINES(Brannock)
VELKIN_UNIT_ROUTINES(Himagelnk)
VELKIN_UNIT_ROUTINES(H_dblbuf)
VELKIN_UNIT_ROUTINES(Fmap)
VELKIN_UNIT_ROUTINES(H_dynarray)
VELKIN_UNIT_ROUTINES(Hsync)

#undef VELKIN_UNIT_ROUTINES
