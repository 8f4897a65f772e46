#include "platform/vcl/core/system.h"

#include <windows.h>

#include <cctype>
#include <cerrno>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "platform/ostrel/strutil.h"

namespace System {

// Class names are identifiers: ASCII case folding, independent of the locale
// (a linguistic compare would make "I" and "i" differ under a Turkish one).
bool TMetaClass::ClassNameIs(const char* name) const {
  if (!name || !Name) return false;
  auto up = [](unsigned char c) { return c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c; };
  const char* a = Name;
  for (; *a && *name; ++a, ++name)
    if (up(static_cast<unsigned char>(*a)) != up(static_cast<unsigned char>(*name))) return false;
  return *a == *name;
}

bool TMetaClass::InheritsFrom(const TMetaClass* ancestor) const {
  for (const TMetaClass* m = this; m; m = m->Parent)
    if (m == ancestor) return true;
  return false;
}

TObject::~TObject() = default;

const TMetaClass* TObject::StaticClass() {
  static const TMetaClass meta{"TObject", nullptr};
  return &meta;
}

const TMetaClass* TObject::ClassType() const { return StaticClass(); }

AnsiString& AnsiString::SetLength(int length) {
  s_.resize(length > 0 ? static_cast<std::size_t>(length) : 0, '\0');
  return *this;
}

char AnsiString::operator[](int index) const {
  return index >= 1 && index <= Length() ? s_[static_cast<std::size_t>(index - 1)] : '\0';
}

int AnsiString::Pos(const AnsiString& sub) const {
  if (sub.IsEmpty()) return 0;
  std::size_t at = s_.find(sub.s_);
  return at == std::string::npos ? 0 : static_cast<int>(at) + 1;
}

AnsiString AnsiString::SubString(int start, int count) const {
  // 64-bit so that extreme arguments cannot overflow.
  long long first = start, n = count;
  if (first < 1) {
    n += first - 1;
    first = 1;
  }
  if (n <= 0 || first > Length()) return AnsiString();
  return AnsiString(s_.substr(static_cast<std::size_t>(first - 1), static_cast<std::size_t>(n)));
}

namespace {

using CaseChange = DWORD(WINAPI*)(LPWSTR, DWORD);
using CaseChangeA = DWORD(WINAPI*)(LPSTR, DWORD);

// In place in a code page whose letters keep their size in the other case;
// through UTF-16 in UTF-8, where they need not ("ı" upper-cased is "I").
std::string ChangedCase(const std::string& s, CaseChange wide, CaseChangeA narrow) {
  std::string r(s);
  if (r.empty()) return r;
  if (GetACP() != CP_UTF8) {
    narrow(r.data(), static_cast<DWORD>(r.size()));
    return r;
  }
  const int n = MultiByteToWideChar(CP_UTF8, 0, s.data(), static_cast<int>(s.size()), nullptr, 0);
  std::wstring w(static_cast<std::size_t>(n), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, s.data(), static_cast<int>(s.size()), w.data(), n);
  wide(w.data(), static_cast<DWORD>(n));
  r.resize(static_cast<std::size_t>(WideCharToMultiByte(CP_UTF8, 0, w.data(), n, nullptr, 0, nullptr, nullptr)));
  WideCharToMultiByte(CP_UTF8, 0, w.data(), n, r.data(), static_cast<int>(r.size()), nullptr, nullptr);
  return r;
}

}  // namespace

AnsiString AnsiString::UpperCase() const { return AnsiString(ChangedCase(s_, &CharUpperBuffW, &CharUpperBuffA)); }

AnsiString AnsiString::LowerCase() const { return AnsiString(ChangedCase(s_, &CharLowerBuffW, &CharLowerBuffA)); }

AnsiString AnsiString::Trim() const {
  std::size_t b = 0, e = s_.size();
  while (b < e && static_cast<unsigned char>(s_[b]) <= ' ') ++b;
  while (e > b && static_cast<unsigned char>(s_[e - 1]) <= ' ') --e;
  return AnsiString(s_.substr(b, e - b));
}

int AnsiString::ToIntDef(int defaultValue) const {
  const std::string t = Trim().s_;
  if (t.empty()) return defaultValue;
  // Decimal, or hexadecimal after "$" or "0x"; a leading zero is not octal.
  const bool negative = t.starts_with('-');
  std::size_t at = negative || t.starts_with('+') ? 1 : 0;
  int base = 10;
  if (t.compare(at, 1, "$") == 0) {
    base = 16;
    at += 1;
  } else if (t.compare(at, 2, "0x") == 0 || t.compare(at, 2, "0X") == 0) {
    base = 16;
    at += 2;
  }
  if (at >= t.size() || !std::isxdigit(static_cast<unsigned char>(t[at]))) return defaultValue;
  char* end = nullptr;
  errno = 0;
  unsigned long long v = std::strtoull(t.c_str() + at, &end, base);
  if (errno || *end) return defaultValue;
  const unsigned long long limit = negative ? 0x80000000ull : 0x7FFFFFFFull;
  if (v > limit) return defaultValue;
  return negative ? static_cast<int>(0 - v) : static_cast<int>(v);
}

AnsiString AnsiString::Format(const char* format, ...) {
  va_list args;
  va_start(args, format);
  const MyString text = MessageV(format, args);
  va_end(args);
  return AnsiString(text.Text(), text.Length());
}

}  // namespace System
