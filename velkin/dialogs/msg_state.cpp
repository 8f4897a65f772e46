#include "velkin/dialogs/msg_state.h"

#include "platform/ostrel/ioerror.h"
#include "velkin/dialogs/hoperation.h"

SaveMsgState::SaveMsgState(void* activeWindow) {
  {
    // The long-operation window gives way to the question.
    HOperation operation(nullptr);
    operation.SetText(nullptr);
  }
  errorN_ = GetIOErrorN();
  focus_ = GetFocus();
  foreground_ = GetForegroundWindow();
  taskWindows_ = Forms::DisableTaskWindows(static_cast<HWND>(activeWindow));
}

SaveMsgState::~SaveMsgState() {
  Forms::EnableTaskWindows(taskWindows_);
  SetForegroundWindow(foreground_);
  SetFocus(focus_);
  SetErrorN(errorN_);
}
