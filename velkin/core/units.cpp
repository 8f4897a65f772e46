#include "velkin/core/units.h"

#include "platform/vcl/package.h"

#define VELKIN_UNIT_BODY(Unit)               \
  namespace Unit {                           \
  namespace {                                \
  Sysinit::TUnitCounter unitCounter;         \
  }                                          \
  void Initialize() { unitCounter.Start(); } \
  void Finalize() { unitCounter.Stop(); }    \
  }

VELKIN_UNIT_BODY(Xmessagebox)
VELKIN_UNIT_BODY(H_bitmap)
VELKIN_UNIT_BODY(Gdi_utils)
VELKIN_UNIT_BODY(H_chobj)
VELKIN_UNIT_BODY(Gdi_object)
VELKIN_UNIT_BODY(Hinput)
VELKIN_UNIT_BODY(Hoperation)
VELKIN_UNIT_BODY(Vcl_utils)
VELKIN_UNIT_BODY(H_cfield)
VELKIN_UNIT_BODY(H_module)
VELKIN_UNIT_BODY(H_thread)
VELKIN_UNIT_BODY(Gdi_canvas)
VELKIN_UNIT_BODY(H_abrush)
VELKIN_UNIT_BODY(H_extdraw)
VELKIN_UNIT_BODY(Tc_draw)
VELKIN_UNIT_BODY(Tc_gsr)
VELKIN_UNIT_BODY(Msg_str)
VELKIN_UNIT_BODY(H_tcvt)
VELKIN_UNIT_BODY(Hclasslist)
VELKIN_UNIT_BODY(Hmleditor)
VELKIN_UNIT_BODY(Brannock)
VELKIN_UNIT_BODY(Himagelnk)
VELKIN_UNIT_BODY(H_dblbuf)
VELKIN_UNIT_BODY(Fmap)
VELKIN_UNIT_BODY(H_dynarray)
VELKIN_UNIT_BODY(Hsync)
