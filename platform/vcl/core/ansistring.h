#pragma once
/// \file
/// The framework's 8-bit string.
#include <string>
#include <string_view>

#include "platform/vcl/core/vcl_api.h"

namespace System {

/// The framework's 8-bit string (ANSI code page). Character indexes are 1-based,
/// as the framework's users expect.
class VCL_API AnsiString {
 public:
  AnsiString() = default;
  AnsiString(const char* text) : s_(text ? text : "") {}
  AnsiString(const char* text, int length) : s_(text && length > 0 ? std::string(text, length) : std::string()) {}
  AnsiString(std::string_view text) : s_(text) {}
  AnsiString(const std::string& text) : s_(text) {}
  explicit AnsiString(int value) : s_(std::to_string(value)) {}

  const char* c_str() const { return s_.c_str(); }
  int Length() const { return static_cast<int>(s_.size()); }
  bool IsEmpty() const { return s_.empty(); }

  /// Resizes (new characters are zero) and returns *this.
  AnsiString& SetLength(int length);
  /// The buffer, writable, of Length() bytes plus the terminator.
  char* data() { return s_.data(); }
  /// Makes the buffer this string's own; with value semantics that is always so.
  AnsiString& Unique() { return *this; }

  /// 1-based; an index outside 1..Length() gives '\0' and changes nothing.
  char operator[](int index) const;
  int Pos(const AnsiString& sub) const;  // 1-based, 0 when not found
  AnsiString SubString(int start, int count) const;
  AnsiString UpperCase() const;
  AnsiString LowerCase() const;
  AnsiString Trim() const;
  /// Decimal, or hexadecimal after "$" or "0x", with optional sign, surrounding
  /// blanks ignored; defaultValue when that is not the whole text or the value
  /// does not fit in an int.
  int ToIntDef(int defaultValue) const;

  static AnsiString Format(const char* format, ...) __attribute__((format(printf, 1, 2)));

  AnsiString& operator+=(const AnsiString& other) {
    s_ += other.s_;
    return *this;
  }
  AnsiString& operator+=(const char* other) {
    if (other) s_ += other;
    return *this;
  }
  AnsiString& operator+=(char c) {
    s_ += c;
    return *this;
  }
  friend AnsiString operator+(AnsiString a, const AnsiString& b) { return a += b; }
  friend AnsiString operator+(AnsiString a, const char* b) { return a += b; }
  friend AnsiString operator+(const char* a, const AnsiString& b) { return AnsiString(a) += b; }
  bool operator==(const AnsiString& other) const { return s_ == other.s_; }
  bool operator==(const char* other) const { return s_ == (other ? other : ""); }
  auto operator<=>(const AnsiString& other) const { return s_ <=> other.s_; }

  const std::string& str() const { return s_; }

 private:
  std::string s_;
};

}  // namespace System
