#include "velkin/dialogs/dialog_owner.h"

#include <windows.h>

#include <cstdio>

#include "platform/vcl/core/sysutils.h"
#include "velkin/dialogs/dialog_texts.h"

void CheckDialogOwner(void* window) {
  if (!window || IsWindow(static_cast<HWND>(window))) return;
  System::AnsiString text = LibraryText(dtOwnerNotWindow);
  // Without the library's string table the error must still say something.
  if (text.IsEmpty()) text = "The owner of a dialog is not a window";
  char handle[32];
  std::snprintf(handle, sizeof handle, " [%p]", window);
  throw Sysutils::Exception(text + handle);
}
