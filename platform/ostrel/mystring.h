#pragma once
/// \file
/// A growable character string.
#include <string>
#include <string_view>

#include "platform/ostrel/ostrel_api.h"

/// Counted 8-bit string in the system's ANSI code page. It may hold NUL bytes;
/// Text() is always NUL-terminated.
class OSTREL_API MyString {
 public:
  MyString() = default;
  MyString(const char* text) : s_(text ? text : "") {}
  MyString(const char* text, int length) : s_(text && length > 0 ? std::string(text, length) : std::string()) {}
  MyString(std::string_view text) : s_(text) {}

  const char* Text() const { return s_.c_str(); }
  int Length() const { return static_cast<int>(s_.size()); }
  bool IsEmpty() const { return s_.empty(); }

  void Set(const char* text) { s_ = text ? text : ""; }
  void Set(const char* text, int length) { *this = MyString(text, length); }
  void Add(const char* text) {
    if (text) s_ += text;
  }
  void Add(char c) { s_ += c; }
  void Clear() { s_.clear(); }

  /// Resizes to length bytes (new bytes are zero) and gives the writable buffer.
  char* SetLength(int length);

  MyString& operator+=(const char* text) {
    Add(text);
    return *this;
  }
  MyString& operator+=(const MyString& other) {
    s_ += other.s_;
    return *this;
  }
  friend MyString operator+(MyString a, const MyString& b) { return a += b; }
  bool operator==(const MyString& other) const { return s_ == other.s_; }
  bool operator==(const char* other) const { return s_ == (other ? other : ""); }

  const std::string& Str() const { return s_; }

 private:
  std::string s_;
};
