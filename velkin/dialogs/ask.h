#pragma once
/// \file
/// One-call questions and notices with the library's captions, and a
/// registered window message.
///
/// The owner is a window handle (null: the main form) or, through the
/// template overloads, a form or other windowed control of the framework. A
/// handle that is not a window raises Sysutils::Exception before anything is
/// shown.
#include <cstdarg>

#include "platform/ostrel/strutil.h"
#include "platform/vcl/core/ansistring.h"
#include "velkin/dialogs/dialog_owner.h"
#include "velkin/velkin_api.h"

///@{
/// Shows a notice (stop icon, OK) captioned "Attention...". With remember, the
/// box offers "Don't tell me again": a false flag shows nothing, and ticking
/// the box sets the flag false. A null owner means the main form. The second
/// form formats its text printf-style.
VELKIN_API void AskMessage(void* owner, const System::AnsiString& text, bool* remember = nullptr);
VELKIN_API void AskMessage(void* owner, bool* remember, const char* format, ...) __attribute__((format(printf, 3, 4)));
///@}

///@{
/// Asks a yes/no question captioned "Question..."; true for Yes. Only a Yes
/// can be remembered: ticked with Yes, the flag goes false, and a false flag
/// answers Yes without asking. A No is never remembered.
/// When no box could be shown at all it answers No (false), never Yes.
VELKIN_API bool AskYesNo(void* owner, const System::AnsiString& text, bool* remember = nullptr);
VELKIN_API bool AskYesNo(void* owner, bool* remember, const char* format, ...) __attribute__((format(printf, 3, 4)));
///@}

///@{
/// Asks a yes/no/cancel question: IDYES, IDNO or IDCANCEL. A remembered
/// answer of IDYES or IDNO is given without asking; a ticked Yes or No is
/// stored there; Cancel is never remembered.
/// When no box could be shown at all it answers IDCANCEL, never Yes.
VELKIN_API int AskYesNoCancel(void* owner, const System::AnsiString& text, int* remember = nullptr);
VELKIN_API int AskYesNoCancel(void* owner, int* remember, const char* format, ...)
    __attribute__((format(printf, 3, 4)));
///@}

///@{
/// The same questions owned by a control's window (made when it has none
/// yet); a null control means the main form.
template <DialogOwnerControl C>
void AskMessage(C* owner, const System::AnsiString& text, bool* remember = nullptr) {
  AskMessage(DialogOwnerWindow(owner), text, remember);
}
template <DialogOwnerControl C>
bool AskYesNo(C* owner, const System::AnsiString& text, bool* remember = nullptr) {
  return AskYesNo(DialogOwnerWindow(owner), text, remember);
}
template <DialogOwnerControl C>
int AskYesNoCancel(C* owner, const System::AnsiString& text, int* remember = nullptr) {
  return AskYesNoCancel(DialogOwnerWindow(owner), text, remember);
}
template <DialogOwnerControl C>
[[gnu::format(printf, 3, 4)]] void AskMessage(C* owner, bool* remember, const char* format, ...) {
  va_list args;
  va_start(args, format);
  const System::AnsiString text = MessageV(format, args).Text();
  va_end(args);
  AskMessage(DialogOwnerWindow(owner), text, remember);
}
template <DialogOwnerControl C>
[[gnu::format(printf, 3, 4)]] bool AskYesNo(C* owner, bool* remember, const char* format, ...) {
  va_list args;
  va_start(args, format);
  const System::AnsiString text = MessageV(format, args).Text();
  va_end(args);
  return AskYesNo(DialogOwnerWindow(owner), text, remember);
}
template <DialogOwnerControl C>
[[gnu::format(printf, 3, 4)]] int AskYesNoCancel(C* owner, int* remember, const char* format, ...) {
  va_list args;
  va_start(args, format);
  const System::AnsiString text = MessageV(format, args).Text();
  va_end(args);
  return AskYesNoCancel(DialogOwnerWindow(owner), text, remember);
}
///@}

/// The message number the system gives a message name (the same number for
/// the same name in every program of the session).
class VELKIN_API HMessage {
 public:
  explicit HMessage(const char* name);
  unsigned GetNumber() const { return number_; }

 private:
  unsigned number_;
};
