#pragma once
/// \file
/// Copying, formatting and splitting C strings.
#include <cstdarg>
#include <cstddef>

#include "platform/ostrel/mystring.h"
#include "platform/ostrel/ostrel_api.h"

/// Copies src into dst, at most size bytes including the terminator, cut
/// between characters of the ANSI code page; dst is always terminated when
/// size > 0. A null src copies an empty string. Returns dst.
OSTREL_API char* StrCpy(char* dst, const char* src, int size);

/// snprintf into buffer (at most size bytes with the terminator, a longer
/// text cut between characters of the ANSI code page); returns the number of
/// bytes written, without the terminator.
OSTREL_API int Sprintf(char* buffer, int size, const char* format, ...) __attribute__((format(printf, 3, 4)));

///@{
/// printf-style formatting into a new string.
OSTREL_API MyString Message(const char* format, ...) __attribute__((format(printf, 1, 2)));
OSTREL_API MyString MessageV(const char* format, va_list args);
///@}
