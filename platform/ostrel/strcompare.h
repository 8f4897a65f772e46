#pragma once
/// \file
/// String comparison with length and case modes.
#include "platform/ostrel/ostrel_api.h"

/// Mode flags of StrCmp.
enum : int {
  StrCmpExact = 0,       // byte by byte, as unsigned characters
  StrCmpIgnoreCase = 1,  // letters folded to upper case in the ANSI code page
};

/// Compares a and b: <0, 0 or >0 as a orders before, with or after b.
/// length: at most that many characters (as strncmp); any negative value, -1
/// by convention, compares the whole strings. Comparison stops at the first
/// NUL. mode: StrCmpExact, or StrCmpIgnoreCase, which upper-cases each
/// character the way CharUpperBuffA does for the process's ANSI code page
/// (so 'a' == 'A', and in code page 1251 Cyrillic 0xE0 == 0xC0) and then
/// compares bytes; lead and trail bytes of double-byte code pages are compared
/// exactly; in UTF-8 two letters are compared whole, upper-cased, by code
/// point (so "é" == "É"), and length counts the bytes of a. Other mode bits are
/// ignored. A null string compares as "".
OSTREL_API int StrCmp(const char* a, const char* b, int length = -1, int mode = StrCmpExact);
