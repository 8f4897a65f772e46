#include "platform/vcl/core/streams.h"

#include <algorithm>
#include <cstring>

#include "platform/ostrel/owned_handle.h"

namespace Classes {

VCL_CLASS_IMPL(EReadError, Sysutils::Exception)
VCL_CLASS_IMPL(EWriteError, Sysutils::Exception)
VCL_CLASS_IMPL(EFOpenError, Sysutils::Exception)
VCL_CLASS_IMPL(EFCreateError, Sysutils::Exception)
VCL_CLASS_IMPL(EResNotFound, Sysutils::Exception)
VCL_CLASS_IMPL(TStream, TObject)
VCL_CLASS_IMPL(TMemoryStream, TStream)
VCL_CLASS_IMPL(TFileStream, TStream)
VCL_CLASS_IMPL(TResourceStream, TStream)

namespace {

// The system's reason for the last failure, without its line break.
AnsiString LastErrorText() {
  // As long as the system's text is: a fixed room would lose a long one.
  char* text = nullptr;
  const DWORD n =
      FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_ALLOCATE_BUFFER,
                     nullptr, GetLastError(), 0, reinterpret_cast<char*>(&text), 0, nullptr);
  const OwnedLocal held(text);
  std::string s(text ? text : "", text ? n : 0);
  while (!s.empty() && (s.back() == '\n' || s.back() == '\r' || s.back() == ' ')) s.pop_back();
  return s.c_str();
}

// The position origin + offset, or -1 when it lies before the start.
int64_t Place(int64_t offset, TSeekOrigin origin, int64_t position, int64_t size) {
  const int64_t base = origin == soBeginning ? 0 : origin == soCurrent ? position : size;
  return base + offset < 0 ? -1 : base + offset;
}

}  // namespace

// ---- TStream ----

void TStream::ReadBuffer(void* buffer, long count) {
  if (count != 0 && Read(buffer, count) != count) throw EReadError("Stream read error");
}

void TStream::WriteBuffer(const void* buffer, long count) {
  if (count != 0 && Write(buffer, count) != count) throw EWriteError("Stream write error");
}

int64_t TStream::GetSize() {
  const int64_t here = Seek(0, soCurrent);
  const int64_t size = Seek(0, soEnd);
  Seek(here, soBeginning);
  return size;
}

void TStream::SetSize(int64_t) {}

int64_t TStream::CopyFrom(TStream* source, int64_t count) {
  if (count == 0) {
    source->SetPosition(0);
    count = source->GetSize();
  }
  unsigned char buffer[64 * 1024];
  for (int64_t left = count; left > 0;) {
    const long n = static_cast<long>(std::min<int64_t>(left, sizeof buffer));
    source->ReadBuffer(buffer, n);
    WriteBuffer(buffer, n);
    left -= n;
  }
  return count;
}

// ---- TMemoryStream ----

long TMemoryStream::Read(void* buffer, long count) {
  if (count <= 0 || position_ >= data_.size()) return 0;
  const size_t n = std::min(static_cast<size_t>(count), data_.size() - position_);
  std::memcpy(buffer, data_.data() + position_, n);
  position_ += n;
  return static_cast<long>(n);
}

long TMemoryStream::Write(const void* buffer, long count) {
  if (count <= 0) return 0;
  if (position_ + count > data_.size()) data_.resize(position_ + count);
  std::memcpy(data_.data() + position_, buffer, static_cast<size_t>(count));
  position_ += static_cast<size_t>(count);
  return count;
}

int64_t TMemoryStream::Seek(int64_t offset, TSeekOrigin origin) {
  const int64_t to = Place(offset, origin, static_cast<int64_t>(position_), GetSize());
  if (to >= 0) position_ = static_cast<size_t>(to);
  return static_cast<int64_t>(position_);
}

void TMemoryStream::SetSize(int64_t value) {
  data_.resize(static_cast<size_t>(std::max<int64_t>(value, 0)));
  position_ = std::min(position_, data_.size());
}

void TMemoryStream::LoadFromStream(TStream* source) {
  source->SetPosition(0);
  SetSize(source->GetSize());
  position_ = 0;
  if (!data_.empty()) source->ReadBuffer(data_.data(), static_cast<long>(data_.size()));
}

void TMemoryStream::SaveToStream(TStream* destination) {
  if (!data_.empty()) destination->WriteBuffer(data_.data(), static_cast<long>(data_.size()));
}

void TMemoryStream::LoadFromFile(const AnsiString& fileName) {
  TFileStream file(fileName, fmOpenRead | fmShareDenyWrite);
  LoadFromStream(&file);
}

void TMemoryStream::SaveToFile(const AnsiString& fileName) {
  TFileStream file(fileName, fmCreate);
  SaveToStream(&file);
}

// ---- TFileStream ----

TFileStream::TFileStream(const AnsiString& fileName, unsigned mode) {
  static constexpr DWORD kAccess[] = {GENERIC_READ, GENERIC_WRITE, GENERIC_READ | GENERIC_WRITE};
  const bool create = mode == fmCreate;
  const DWORD access = create ? GENERIC_READ | GENERIC_WRITE : kAccess[std::min(mode & 3u, 2u)];
  const unsigned share = create ? 0 : mode & 0xF0;
  const DWORD shared = share == fmShareExclusive   ? 0
                       : share == fmShareDenyWrite ? FILE_SHARE_READ
                                                   : FILE_SHARE_READ | FILE_SHARE_WRITE;
  file_.reset(CreateFileA(fileName.c_str(), access, shared, nullptr, create ? CREATE_ALWAYS : OPEN_EXISTING,
                          FILE_ATTRIBUTE_NORMAL, nullptr));
  if (file_) return;
  const AnsiString why = LastErrorText();
  if (create) throw EFCreateError("Cannot create file \"" + fileName + "\". " + why);
  throw EFOpenError("Cannot open file \"" + fileName + "\". " + why);
}

long TFileStream::Read(void* buffer, long count) {
  DWORD done = 0;
  if (count <= 0 || !ReadFile(file_.get(), buffer, static_cast<DWORD>(count), &done, nullptr)) return 0;
  return static_cast<long>(done);
}

long TFileStream::Write(const void* buffer, long count) {
  DWORD done = 0;
  if (count <= 0 || !WriteFile(file_.get(), buffer, static_cast<DWORD>(count), &done, nullptr)) return 0;
  return static_cast<long>(done);
}

int64_t TFileStream::Seek(int64_t offset, TSeekOrigin origin) {
  static constexpr DWORD kMethod[] = {FILE_BEGIN, FILE_CURRENT, FILE_END};
  LARGE_INTEGER to{}, now{};
  to.QuadPart = offset;
  if (!SetFilePointerEx(file_.get(), to, &now, kMethod[origin])) SetFilePointerEx(file_.get(), {}, &now, FILE_CURRENT);
  return now.QuadPart;
}

void TFileStream::SetSize(int64_t value) {
  const int64_t here = GetPosition();
  SetPosition(value);
  if (!SetEndOfFile(file_.get())) throw EWriteError("Stream write error");
  SetPosition(std::min(here, value));
}

// ---- TResourceStream ----

TResourceStream::TResourceStream(HINSTANCE module, const AnsiString& name, const char* type) {
  HRSRC found = FindResourceA(module, name.c_str(), type);
  HGLOBAL loaded = found ? LoadResource(module, found) : nullptr;
  if (!loaded) throw EResNotFound("Resource " + name + " not found");
  // A module's resources stay mapped while it is loaded: nothing to free.
  data_ = static_cast<const unsigned char*>(LockResource(loaded));
  size_ = SizeofResource(module, found);
}

long TResourceStream::Read(void* buffer, long count) {
  const int64_t n = std::clamp<int64_t>(size_ - position_, 0, std::max<long>(count, 0));
  if (n == 0) return 0;
  std::memcpy(buffer, data_ + position_, static_cast<size_t>(n));
  position_ += n;
  return static_cast<long>(n);
}

long TResourceStream::Write(const void*, long) { throw EWriteError("Stream write error"); }

int64_t TResourceStream::Seek(int64_t offset, TSeekOrigin origin) {
  const int64_t to = Place(offset, origin, position_, size_);
  if (to >= 0) position_ = to;
  return position_;
}

}  // namespace Classes
