#include "velkin/dialogs/ask.h"

#include <windows.h>

#include "platform/ostrel/strutil.h"
#include "platform/vcl/forms/application.h"
#include "velkin/dialogs/dialog_texts.h"
#include "velkin/dialogs/msg_state.h"
#include "velkin/dialogs/xmessagebox.h"

namespace {

// Shows the box over owner (the main form when null) with the library's
// caption, the check box when there is something to remember.
int Ask(void* owner, const System::AnsiString& text, unsigned style, int caption, bool remembering) {
  CheckDialogOwner(owner);
  if (!owner) {
    Forms::TCustomForm* main = Forms::Application->GetMainForm();
    owner = main ? main->GetHandle() : nullptr;
  }
  SaveMsgState state(owner);
  if (remembering) style |= XMB_DONOTTELLAGAIN;
  return XMessageBox(owner, text.c_str(), LibraryText(caption).c_str(), style, 0);
}

System::AnsiString Formatted(const char* format, va_list args) { return MessageV(format, args).Text(); }

}  // namespace

void AskMessage(void* owner, const System::AnsiString& text, bool* remember) {
  if (remember && !*remember) return;
  const int result = Ask(owner, text, MB_OK | MB_ICONHAND, dtAttention, remember != nullptr);
  if (remember && (result & XMB_DONOTTELLAGAIN)) *remember = false;
}

bool AskYesNo(void* owner, const System::AnsiString& text, bool* remember) {
  if (remember && !*remember) return true;
  const int result = Ask(owner, text, MB_YESNO | MB_ICONQUESTION, dtQuestion, remember != nullptr);
  // Only a pressed Yes is a Yes: a box that could not be shown (-1, or IDCANCEL
  // without memory for it) must not agree to what was asked.
  if ((result & 0xFFFF) != IDYES) return false;
  if (remember && (result & XMB_DONOTTELLAGAIN)) *remember = false;
  return true;
}

int AskYesNoCancel(void* owner, const System::AnsiString& text, int* remember) {
  if (remember && (*remember == IDYES || *remember == IDNO)) return *remember;
  const int result = Ask(owner, text, MB_YESNOCANCEL | MB_ICONQUESTION, dtQuestion, remember != nullptr);
  const int answer = result & 0xFFFF;
  if (answer != IDYES && answer != IDNO) return IDCANCEL;
  if (remember && (result & XMB_DONOTTELLAGAIN)) *remember = answer;
  return answer;
}

void AskMessage(void* owner, bool* remember, const char* format, ...) {
  va_list args;
  va_start(args, format);
  const System::AnsiString text = Formatted(format, args);
  va_end(args);
  AskMessage(owner, text, remember);
}

bool AskYesNo(void* owner, bool* remember, const char* format, ...) {
  va_list args;
  va_start(args, format);
  const System::AnsiString text = Formatted(format, args);
  va_end(args);
  return AskYesNo(owner, text, remember);
}

int AskYesNoCancel(void* owner, int* remember, const char* format, ...) {
  va_list args;
  va_start(args, format);
  const System::AnsiString text = Formatted(format, args);
  va_end(args);
  return AskYesNoCancel(owner, text, remember);
}

HMessage::HMessage(const char* name) : number_(name ? RegisterWindowMessageA(name) : 0) {}
