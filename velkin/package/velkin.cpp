#include "velkin/package/velkin.h"

#include <windows.h>

#include <cstdint>
#include <iterator>

#include "platform/ostrel/filelog.h"
#include "platform/ostrel/oslib.h"
#include "platform/ostrel/owned_handle.h"
#include "platform/ostrel/units.h"
#include "platform/pellum/units.h"
#include "platform/vcl/core/sysutils.h"
#include "platform/vcl/units.h"
#include "velkin/gdi/gdi_temp.h"
#include "velkin/package/units.h"

namespace Velkin {
namespace {
Sysinit::TUnitCounter unitCounter;
}  // namespace

void Initialize() { unitCounter.Start(); }
void Finalize() { unitCounter.Stop(); }
void Register() {}

}  // namespace Velkin

namespace {

#define UNIT(Name, Ns) \
  { Name, &Ns::Initialize, &Ns::Finalize }
#define OWN(Ns) UNIT(#Ns, Ns)

// Same order as the "contains" lines of PACKAGEINFO (velkin/resources/package.rc).
// The imported units come in the order of the packages that hold them, lowest
// first: ostrel, then vcl, then pellum.
const Sysinit::TUnitEntry unitTable[] = {
    UNIT("Ostrel", Ostrel),
    UNIT("System", System),
    UNIT("SysInit", Sysinit),
    UNIT("SysUtils", Sysutils),
    UNIT("Classes", Classes),
    UNIT("Graphics", Graphics),
    UNIT("Controls", Controls),
    UNIT("Forms", Forms),
    UNIT("StdCtrls", Stdctrls),
    UNIT("ExtCtrls", Extctrls),
    UNIT("ComCtrls", Comctrls),
    UNIT("Mktclass", Mktclass),
    UNIT("Gdi_ext", Gdi_ext),
    UNIT("Filectrl", Filectrl),
    OWN(Velkin),
    OWN(Xmessagebox),
    OWN(Gdi_temp),
    OWN(H_bitmap),
    OWN(Gdi_utils),
    OWN(H_chobj),
    OWN(Gdi_object),
    OWN(Hinput),
    OWN(Hoperation),
    OWN(Vcl_utils),
    OWN(H_cfield),
    OWN(H_module),
    OWN(H_thread),
    OWN(Gdi_canvas),
    OWN(H_abrush),
    OWN(H_extdraw),
    OWN(Tc_draw),
    OWN(Tc_gsr),
    OWN(Msg_str),
    OWN(H_tcvt),
    OWN(Hclasslist),
    OWN(Hmleditor),
    OWN(Brannock),
    OWN(Himagelnk),
    OWN(H_dblbuf),
    OWN(Fmap),
    OWN(H_dynarray),
    OWN(Hsync),
};

#undef OWN
#undef UNIT

constexpr int unitCount = static_cast<int>(std::size(unitTable));

// Registered with the framework for the library's lifetime, so LoadStr finds
// the library's string tables (or its language satellite's).
Sysutils::TLibModule libModule;
// The language satellite, when one was found beside the library.
OwnedModule satellite;

void ProcessAttach(HINSTANCE instance) {
  // Eight hex digits: the line carries the low 32 bits of the handle.
  FILELog("VELK(%08X) Loaded by: [%s]", static_cast<unsigned>(reinterpret_cast<std::uintptr_t>(GetHInstance())),
          ModuleFileName(nullptr).Text());

  const MyString own = ModuleFileName(instance);
  libModule.Instance = instance;
  satellite.reset(static_cast<HMODULE>(own.IsEmpty() ? nullptr : Sysutils::LoadResourceModule(own.Text())));
  libModule.ResInstance = satellite ? satellite.get() : instance;
  Sysutils::RegisterModule(&libModule);
}

void ProcessDetach() {
  Sysutils::UnregisterModule(&libModule);
  libModule.ResInstance = nullptr;
  satellite.reset();
}

}  // namespace

extern "C" void Initialize() { Sysinit::InitializeUnits(unitTable, unitCount); }
extern "C" void Finalize() { Sysinit::FinalizeUnits(unitTable, unitCount); }

namespace Velkin {
const Sysinit::TUnitEntry* GetUnitTable(int* count) {
  if (count) *count = unitCount;
  return unitTable;
}
}  // namespace Velkin

// Thread attach and detach do nothing; the load never fails.
extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID reserved) {
  if (reason == DLL_PROCESS_ATTACH) ProcessAttach(instance);
  // A pool started by first use goes with an unload; at process end the
  // system takes back its handles.
  if (reason == DLL_PROCESS_DETACH && !reserved) Gdi_temp::FinalizeFirstUse();
  if (reason == DLL_PROCESS_DETACH) ProcessDetach();
  return 1;
}
