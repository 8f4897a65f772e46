#pragma once
#include "platform/vcl/core/ansistring.h"
#include "velkin/velkin_api.h"

/// \file
/// Code-page conversion of 8-bit text through the platform's multi-language
/// service; where the service is missing or refuses, the text is copied as it is.

/// Converts the zero-terminated src into dst, writing at most dstSize bytes
/// including the terminator (dst is always terminated when dstSize > 0). A text
/// too long for dst is converted and cut at a character boundary of toCodePage
/// (UTF-8 and double-byte code pages included). A null src counts as empty.
/// Returns dst.
VELKIN_API char* HTextConvert(unsigned fromCodePage, unsigned toCodePage, const char* src, char* dst, int dstSize);

/// Converts src into dst, which ends up holding exactly the converted text,
/// whole, however many more bytes it takes (a text converted into UTF-8 may
/// take up to three times as many). Returns dst's buffer.
VELKIN_API char* HTextConvert(unsigned fromCodePage, unsigned toCodePage, const char* src, System::AnsiString& dst);
