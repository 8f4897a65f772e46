#pragma once
/// \file
/// One-call questions and notices with the library's captions, and a
/// registered window message.
#include "platform/vcl/core/ansistring.h"
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
VELKIN_API bool AskYesNo(void* owner, const System::AnsiString& text, bool* remember = nullptr);
VELKIN_API bool AskYesNo(void* owner, bool* remember, const char* format, ...) __attribute__((format(printf, 3, 4)));
///@}

///@{
/// Asks a yes/no/cancel question: IDYES, IDNO or IDCANCEL. A remembered
/// answer of IDYES or IDNO is given without asking; a ticked Yes or No is
/// stored there; Cancel is never remembered.
VELKIN_API int AskYesNoCancel(void* owner, const System::AnsiString& text, int* remember = nullptr);
VELKIN_API int AskYesNoCancel(void* owner, int* remember, const char* format, ...)
    __attribute__((format(printf, 3, 4)));
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
