#include "platform/vcl/system.h"

#include <windows.h>

#include <cerrno>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace System {

bool TMetaClass::ClassNameIs(const char* name) const { return name && lstrcmpiA(Name, name) == 0; }

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
  if (start < 1) {
    count += start - 1;
    start = 1;
  }
  if (count <= 0 || start > Length()) return AnsiString();
  return AnsiString(s_.substr(static_cast<std::size_t>(start - 1), static_cast<std::size_t>(count)));
}

AnsiString AnsiString::UpperCase() const {
  AnsiString r(*this);
  if (!r.s_.empty()) CharUpperBuffA(r.s_.data(), static_cast<DWORD>(r.s_.size()));
  return r;
}

AnsiString AnsiString::LowerCase() const {
  AnsiString r(*this);
  if (!r.s_.empty()) CharLowerBuffA(r.s_.data(), static_cast<DWORD>(r.s_.size()));
  return r;
}

AnsiString AnsiString::Trim() const {
  std::size_t b = 0, e = s_.size();
  while (b < e && static_cast<unsigned char>(s_[b]) <= ' ') ++b;
  while (e > b && static_cast<unsigned char>(s_[e - 1]) <= ' ') --e;
  return AnsiString(s_.substr(b, e - b));
}

int AnsiString::ToIntDef(int defaultValue) const {
  const std::string t = Trim().s_;
  if (t.empty()) return defaultValue;
  char* end = nullptr;
  errno = 0;
  long long v = std::strtoll(t.c_str(), &end, 0);
  if (errno || *end || v < INT32_MIN || v > INT32_MAX) return defaultValue;
  return static_cast<int>(v);
}

AnsiString AnsiString::Format(const char* format, ...) {
  if (!format) return AnsiString();
  va_list args;
  va_start(args, format);
  va_list again;
  va_copy(again, args);
  int n = std::vsnprintf(nullptr, 0, format, args);
  va_end(args);
  AnsiString r;
  if (n > 0) {
    r.SetLength(n);
    std::vsnprintf(r.data(), static_cast<std::size_t>(n) + 1, format, again);
  }
  va_end(again);
  return r;
}

}  // namespace System
