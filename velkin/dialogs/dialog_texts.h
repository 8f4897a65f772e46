#pragma once
/// \file
/// The texts the library's own windows show, from its string tables
/// (velkin/resources/strings.rc).
#include "platform/vcl/core/ansistring.h"

/// Entries of the library's string tables that its windows show.
enum TDialogText : int {
  dtAttention = 1030,       ///< the notices' caption
  dtQuestion = 1031,        ///< the questions' caption
  dtOwnerNotWindow = 1032,  ///< the error for an owner that is not a window
  dtOperation = 1040,       ///< the progress window's caption
  dtAbort = 1041,           ///< its abort button
  dtOk = 1042,              ///< the input dialog's OK
  dtClose = 1043,           ///< the input dialog's and the editor's Close
  dtEditor = 1044,          ///< the editor's caption when the caller gives none
  dtOkKey = 1045,           ///< the editor's OK, with its Alt key
  dtCharacters = 1046,      ///< the editor's counter: characters
  dtLines = 1047,           ///< and lines
};

/// Entry ident of the library's own string tables (not another module's of
/// the same number) in the user's interface language, English for a language
/// it has no table for, in the active ANSI code page.
System::AnsiString LibraryText(int ident);
