#pragma once
// The texts of streams and form texts between the process's ANSI code page,
// UTF-16 and UTF-8. Private to the streaming units.
#include <string>
#include <string_view>

namespace Classes::TextUnits {

/// Whether bytes are well-formed UTF-8 (no overlong forms, no surrogates).
bool IsUtf8(std::string_view bytes);
/// The UTF-16 units of UTF-8 bytes; each ill-formed sequence becomes one
/// U+FFFD, so damaged input reads as far as it goes.
std::wstring FromUtf8(std::string_view bytes);
/// The UTF-8 of UTF-16 units, pairs joined; false when a surrogate stands
/// alone (UTF-8 cannot hold it: U+FFFD takes its place).
bool ToUtf8(std::wstring_view units, std::string& out);
/// Bytes of the ANSI code page as UTF-16.
std::wstring FromAnsi(std::string_view bytes);
/// UTF-16 in the ANSI code page, '?' for a character it has no letter for
/// (no look-alike instead).
std::string ToAnsi(std::wstring_view units);

}  // namespace Classes::TextUnits
