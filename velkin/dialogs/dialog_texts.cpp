#include "velkin/dialogs/dialog_texts.h"

#include "platform/ostrel/oslib.h"
#include "platform/vcl/core/sysutils.h"

System::AnsiString LibraryText(int ident) {
  return Sysutils::LoadStr(ModuleOf(reinterpret_cast<const void*>(&LibraryText)), ident);
}
