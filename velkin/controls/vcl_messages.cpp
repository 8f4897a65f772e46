#include "velkin/controls/vcl_messages.h"

#include <windows.h>

#include "platform/ostrel/ioerror.h"
#include "platform/vcl/controls/message_loop.h"
#include "platform/vcl/forms/application.h"

HSaveError::HSaveError() : errorN_(GetIOErrorN()) {}
HSaveError::~HSaveError() { SetErrorN(errorN_); }

namespace {

// Whether the window belongs to form: its control, or one inside it.
bool IsFor(HWND window, Forms::TForm* form) {
  Controls::TControl* control = Controls::TWinControl::FindControl(window);
  while (control && control != form) control = control->GetParent();
  return control != nullptr;
}

}  // namespace

void ProcessMessages(Forms::TForm* form) {
  HSaveError keep;
  MSG message;
  while (Controls::TakeMessage(message)) {
    // Taken and not put back: the caller's loop ends here, not the program.
    if (message.message == WM_QUIT) break;
    if (form && !IsFor(message.hwnd, form)) {
      // Thrown away; a paint thrown away comes back until the window is
      // valid again, and would keep this loop going for ever.
      if (message.message == WM_PAINT) ValidateRect(message.hwnd, nullptr);
      continue;
    }
    Controls::DispatchTaken(message);
  }
}

void HProcessMessages() {
  HSaveError keep;
  Forms::Application->ProcessMessages();
}

bool CheckTerminationMessages(void* window) {
  if (GetQueueStatus(QS_MOUSEBUTTON | QS_HOTKEY)) return true;
  if (!GetQueueStatus(QS_KEY)) return false;
  MSG message;
  return PeekMessageA(&message, static_cast<HWND>(window), WM_KEYDOWN, WM_KEYDOWN, PM_NOREMOVE);
}
