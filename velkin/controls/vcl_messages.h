#pragma once
/// \file
/// Keeping the user interface alive from inside a busy loop, without
/// disturbing a pending I/O error.
#include "platform/vcl/forms/forms.h"
#include "velkin/velkin_api.h"

/// Keeps the base package's pending I/O error number as it was across its
/// scope: the number is read when it is made and written back when it goes.
class VELKIN_API HSaveError {
 public:
  HSaveError();
  ~HSaveError();
  HSaveError(const HSaveError&) = delete;
  HSaveError& operator=(const HSaveError&) = delete;

 private:
  int errorN_;
};

/// Handles the messages waiting in the thread's queue, then returns. With a
/// form, only messages for the form and its controls are handled; the others
/// (clicks, keys and paints of other windows) are thrown away. Stops at
/// WM_QUIT, which is taken off the queue and not posted again. The pending
/// I/O error number is kept.
VELKIN_API void ProcessMessages(Forms::TForm* form);

/// The application's ProcessMessages, keeping the pending I/O error number.
VELKIN_API void HProcessMessages();

/// Whether the user asked to interrupt, without taking anything off the
/// queue: a mouse button or hot key waiting, or a key pressed in window
/// (null: any window of the thread).
VELKIN_API bool CheckTerminationMessages(void* window);
