#pragma once
/// \file
/// Characters of an 8-bit code page that take more than one byte: where one
/// ends, so that nothing cuts a text inside one.
#include "platform/ostrel/ostrel_api.h"

/// Bytes of the character at text, of the at most length bytes there (a
/// negative length: up to the terminator), in codePage (0: the process's ANSI
/// code page): up to four in UTF-8, two for a lead byte of a double-byte code
/// page, else one. A byte that starts no whole character counts as one; 0 at
/// the end of the text or for a null one.
OSTREL_API int CharSize(const char* text, int length, unsigned codePage = 0);

/// Bytes of the longest start of text (length bytes) that fits room bytes
/// and does not end inside a character of codePage (0: the ANSI code page):
/// length itself when that fits.
OSTREL_API int CharFit(const char* text, int length, int room, unsigned codePage = 0);
