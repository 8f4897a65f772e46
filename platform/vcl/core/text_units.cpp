#include "platform/vcl/core/text_units_impl.h"

#include <windows.h>

namespace Classes::TextUnits {

namespace {

// The code point of the well-formed sequence at bytes[at], with its length
// in length; -1 and the length of the ill-formed part (at least 1) otherwise.
// The second byte's range depends on the first, as UTF-8 rules out overlong
// forms, surrogates and values past U+10FFFF.
long Decode(std::string_view bytes, size_t at, size_t& length) {
  const auto b = [&](size_t i) { return static_cast<unsigned char>(bytes[i]); };
  const unsigned char lead = b(at);
  length = 1;
  if (lead < 0x80) return lead;
  int more;
  unsigned char low = 0x80, high = 0xBF;
  long value;
  if (lead >= 0xC2 && lead <= 0xDF) {
    more = 1, value = lead & 0x1F;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    more = 2, value = lead & 0x0F;
    if (lead == 0xE0) low = 0xA0;
    if (lead == 0xED) high = 0x9F;
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    more = 3, value = lead & 0x07;
    if (lead == 0xF0) low = 0x90;
    if (lead == 0xF4) high = 0x8F;
  } else {
    return -1;
  }
  for (int i = 0; i < more; ++i, low = 0x80, high = 0xBF) {
    if (at + length >= bytes.size() || b(at + length) < low || b(at + length) > high) return -1;
    value = (value << 6) | (b(at + length) & 0x3F);
    ++length;
  }
  return value;
}

}  // namespace

bool IsUtf8(std::string_view bytes) {
  for (size_t at = 0, length = 0; at < bytes.size(); at += length)
    if (Decode(bytes, at, length) < 0) return false;
  return true;
}

std::wstring FromUtf8(std::string_view bytes) {
  std::wstring units;
  units.reserve(bytes.size());
  for (size_t at = 0, length = 0; at < bytes.size(); at += length) {
    const long c = Decode(bytes, at, length);
    if (c < 0) {
      units += L'\xFFFD';
    } else if (c >= 0x10000) {
      units += static_cast<wchar_t>(0xD800 + ((c - 0x10000) >> 10));
      units += static_cast<wchar_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
    } else {
      units += static_cast<wchar_t>(c);
    }
  }
  return units;
}

bool ToUtf8(std::wstring_view units, std::string& out) {
  out.clear();
  bool whole = true;
  for (size_t i = 0; i < units.size(); ++i) {
    unsigned long c = units[i];
    if (c >= 0xD800 && c <= 0xDFFF) {
      if (c <= 0xDBFF && i + 1 < units.size() && units[i + 1] >= 0xDC00 && units[i + 1] <= 0xDFFF) {
        c = 0x10000 + ((c - 0xD800) << 10) + (units[++i] - 0xDC00);
      } else {
        c = 0xFFFD;
        whole = false;
      }
    }
    if (c < 0x80) {
      out += static_cast<char>(c);
    } else if (c < 0x800) {
      out += static_cast<char>(0xC0 | (c >> 6));
      out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
      out += static_cast<char>(0xE0 | (c >> 12));
      out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
      out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
      out += static_cast<char>(0xF0 | (c >> 18));
      out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
      out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
      out += static_cast<char>(0x80 | (c & 0x3F));
    }
  }
  return whole;
}

std::wstring FromAnsi(std::string_view bytes) {
  // Ours, so that ill-formed UTF-8 reads the same here as in a stream.
  if (GetACP() == CP_UTF8) return FromUtf8(bytes);
  if (bytes.empty()) return std::wstring();
  const int length = static_cast<int>(bytes.size());
  const int n = MultiByteToWideChar(CP_ACP, 0, bytes.data(), length, nullptr, 0);
  std::wstring units(n > 0 ? n : 0, L'\0');
  if (n > 0) MultiByteToWideChar(CP_ACP, 0, bytes.data(), length, units.data(), n);
  return units;
}

std::string ToAnsi(std::wstring_view units) {
  const UINT codePage = GetACP();
  if (codePage == CP_UTF8) {
    std::string out;
    ToUtf8(units, out);
    return out;
  }
  if (units.empty()) return std::string();
  // No ANSI code page but UTF-8 has a character beyond U+FFFF: each is one '?', as
  // is a surrogate standing alone.
  std::wstring plane(units);
  size_t to = 0;
  for (size_t i = 0; i < units.size(); ++i) {
    const wchar_t u = units[i];
    if (u >= 0xD800 && u <= 0xDFFF) {
      if (u <= 0xDBFF && i + 1 < units.size() && units[i + 1] >= 0xDC00 && units[i + 1] <= 0xDFFF) ++i;
      plane[to++] = L'?';
    } else {
      plane[to++] = u;
    }
  }
  plane.resize(to);
  // UTF-7 writes every character and takes no flag.
  const DWORD flags = codePage == CP_UTF7 ? 0 : WC_NO_BEST_FIT_CHARS;
  const int length = static_cast<int>(plane.size());
  const int n = WideCharToMultiByte(CP_ACP, flags, plane.data(), length, nullptr, 0, nullptr, nullptr);
  std::string bytes(n > 0 ? n : 0, '\0');
  if (n > 0) WideCharToMultiByte(CP_ACP, flags, plane.data(), length, bytes.data(), n, nullptr, nullptr);
  return bytes;
}

}  // namespace Classes::TextUnits
