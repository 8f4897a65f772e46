#pragma once
#include "platform/ostrel/mystring.h"
#include "platform/ostrel/ostrel_api.h"

/// \file
/// Columns of a text split at separator characters, numbered from 1.
///
/// Every character of `separators` that occurs in the text ends a column, so a
/// text with N separator characters has N + 1 columns and adjacent separators
/// enclose an empty column: with separators "," the text "a,,b" has the three
/// columns "a", "" and "b", ",a" starts with an empty column and "a," ends
/// with one. A set holding both CR and LF splits text into lines: a CR LF pair
/// is one line break there, as a lone CR or LF is (so "a\r\nb" has the two
/// columns "a" and "b", and "a\n\nb" an empty one between them). An empty or
/// null text has no columns; a null or
/// empty separator set makes a non-empty text one column.

/// The number of columns of the text.
OSTREL_API int StrColCount(const char* text, const char* separators);

/// Column `column` (1-based); empty when column is outside 1..StrColCount().
OSTREL_API MyString StrGetCol(const char* text, int column, const char* separators);

/// The same column copied into buffer as StrCpy does (at most size bytes with
/// the terminator, always terminated when size > 0). Returns buffer.
OSTREL_API char* StrGetCol(const char* text, int column, const char* separators, char* buffer, int size);
