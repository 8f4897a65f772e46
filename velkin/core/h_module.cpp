#include "velkin/core/h_module.h"

#include <windows.h>

#include <string>
#include <utility>

#include "platform/ostrel/ioerror.h"
#include "platform/ostrel/oslib.h"
#include "platform/vcl/core/sysutils.h"

VCL_CLASS_IMPL(HModule, System::TObject)

namespace {
constexpr int sInvalidModuleHandle = 1010;
thread_local System::AnsiString invalidHandleText;
}  // namespace

HModule::HModule(const HModule& other) : System::TObject(other) {
  if (!other.name_.IsEmpty()) Assign(other);
}

HModule& HModule::operator=(const HModule& other) {
  Assign(other);
  return *this;
}

HModule::~HModule() { Free(); }

const char* HModule::Assign(const char* name) {
  MyString local(name);  // name may point into our own name_
  Free();
  if (local.IsEmpty()) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return GetIOErrorS_CON(-2);
  }
  OwnedModule h(LoadLibraryA(local.Text()));
  if (!h) {
    local = MyString(GetStartupDir()) + local;
    h.reset(LoadLibraryA(local.Text()));
  }
  if (!h) return GetIOErrorS_CON(-2);

  // A refused module is freed again as h goes.
  if (const char* refused = DoLoad(h.get())) return refused;
  handle_ = std::move(h);
  name_ = local;
  return nullptr;
}

const char* HModule::Assign(void* handle) {
  if (!handle) {
    invalidHandleText = Sysutils::LoadStr(sInvalidModuleHandle);
    // Without the package's string table the text must still say something.
    if (invalidHandleText.IsEmpty()) invalidHandleText = "Invalid module handle";
    return invalidHandleText.c_str();
  }
  // The whole path however long, never a cut one.
  const MyString path = ModuleFileName(handle);
  if (path.IsEmpty()) return GetIOErrorS_CON(-2);
  return Assign(path.Text());
}

const char* HModule::Assign(const HModule& other) { return Assign(other.name_.Text()); }

void HModule::Free() {
  if (!handle_) return;
  DoFree();
  handle_.reset();
}

const char* HModule::DoLoad(void*) { return nullptr; }

void HModule::DoFree() {}
