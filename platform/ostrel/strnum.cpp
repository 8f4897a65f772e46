#include "platform/ostrel/strnum.h"

#include <charconv>
#include <cstdint>
#include <string_view>

int Str2Digit(const char* text, int base, int defaultValue) {
  if (!text || base < 2 || base > 36) return defaultValue;
  std::string_view s(text);
  bool negative = false;
  if (!s.empty() && (s.front() == '-' || s.front() == '+')) {
    negative = s.front() == '-';
    s.remove_prefix(1);
  }
  if (base == 16 && s.size() >= 2 && s[0] == '0' && (s[1] == 'x' || s[1] == 'X')) s.remove_prefix(2);
  // from_chars takes no sign for unsigned types, so "--1" or "+-1" fail here.
  std::uint32_t value = 0;
  const auto [end, error] = std::from_chars(s.data(), s.data() + s.size(), value, base);
  if (s.empty() || error != std::errc() || end != s.data() + s.size()) return defaultValue;
  if (!negative) return static_cast<int>(value);
  if (value > 0x80000000u) return defaultValue;
  return static_cast<int>(0u - value);
}
