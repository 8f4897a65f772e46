#pragma once
/// \file
/// Unit Classes, streams: bytes read and written at a position, in memory,
/// in a file or in a module's resource.
#include <windows.h>

#include <cstdint>
#include <vector>

#include "platform/ostrel/owned_handle.h"
#include "platform/vcl/core/classes.h"

namespace Classes {

/// A stream transferred fewer bytes than asked for.
class VCL_API EReadError : public Sysutils::Exception {
  VCL_CLASS();

 public:
  using Exception::Exception;
};
class VCL_API EWriteError : public Sysutils::Exception {
  VCL_CLASS();

 public:
  using Exception::Exception;
};
/// A file that cannot be opened or created; the message names it and says why.
class VCL_API EFOpenError : public Sysutils::Exception {
  VCL_CLASS();

 public:
  using Exception::Exception;
};
class VCL_API EFCreateError : public Sysutils::Exception {
  VCL_CLASS();

 public:
  using Exception::Exception;
};
/// A resource that the module does not have.
class VCL_API EResNotFound : public Sysutils::Exception {
  VCL_CLASS();

 public:
  using Exception::Exception;
};

class TComponent;

/// Where Seek counts from.
enum TSeekOrigin { soBeginning, soCurrent, soEnd };

/// Bytes at a position. Read and Write move as far as they can and say how
/// far; ReadBuffer and WriteBuffer move all or raise.
class VCL_API TStream : public TObject {
  VCL_CLASS();

 public:
  virtual long Read(void* buffer, long count) = 0;
  virtual long Write(const void* buffer, long count) = 0;
  /// The new position; a place before the start is refused (the position stays).
  virtual int64_t Seek(int64_t offset, TSeekOrigin origin) = 0;
  /// Raises EReadError ("Stream read error") when fewer than count bytes came.
  void ReadBuffer(void* buffer, long count);
  /// Raises EWriteError ("Stream write error") when fewer than count bytes went.
  void WriteBuffer(const void* buffer, long count);
  int64_t GetPosition() { return Seek(0, soCurrent); }
  void SetPosition(int64_t value) { Seek(value, soBeginning); }
  virtual int64_t GetSize();
  virtual void SetSize(int64_t value);
  /// Copies count bytes from source's position (count 0: all of source, from
  /// its start); returns how many.
  int64_t CopyFrom(TStream* source, int64_t count);

  /// Writes component, its published properties that differ from their
  /// defaults and the components it owns, at the position.
  void WriteComponent(TComponent* component);
  /// Reads a component from the position into instance, or (instance null)
  /// into a new one of the class the stream names; returns it.
  TComponent* ReadComponent(TComponent* instance);
};

/// A stream over a block of memory of its own that grows as it is written.
class VCL_API TMemoryStream : public TStream {
  VCL_CLASS();

 public:
  long Read(void* buffer, long count) override;
  long Write(const void* buffer, long count) override;
  int64_t Seek(int64_t offset, TSeekOrigin origin) override;
  int64_t GetSize() override { return static_cast<int64_t>(data_.size()); }
  /// Grows with zero bytes or cuts; the position stays within the size.
  void SetSize(int64_t value) override;
  void Clear() { SetSize(0); }
  /// The bytes; valid until the size changes.
  void* GetMemory() { return data_.data(); }
  /// The whole stream from, or into, a file (EFOpenError, EFCreateError).
  void LoadFromStream(TStream* source);
  void SaveToStream(TStream* destination);
  void LoadFromFile(const AnsiString& fileName);
  void SaveToFile(const AnsiString& fileName);

 private:
  std::vector<unsigned char> data_;
  size_t position_ = 0;
};

/// How TFileStream opens its file.
enum : unsigned {
  fmCreate = 0xFFFF,  ///< made anew (emptied if it exists), for writing and reading
  fmOpenRead = 0,
  fmOpenWrite = 1,
  fmOpenReadWrite = 2,
  fmShareExclusive = 0x10,
  fmShareDenyWrite = 0x20,
  fmShareDenyNone = 0x40,
};

/// A stream over a file.
class VCL_API TFileStream : public TStream {
  VCL_CLASS();

 public:
  /// Raises EFOpenError, or EFCreateError with fmCreate, naming the file and
  /// the system's reason.
  TFileStream(const AnsiString& fileName, unsigned mode);
  long Read(void* buffer, long count) override;
  long Write(const void* buffer, long count) override;
  int64_t Seek(int64_t offset, TSeekOrigin origin) override;
  void SetSize(int64_t value) override;
  HANDLE GetHandle() const { return file_.get(); }

 private:
  OwnedFile file_;
};

/// A read-only stream over a resource of a module, found by name and type
/// (EResNotFound when the module has none).
class VCL_API TResourceStream : public TStream {
  VCL_CLASS();

 public:
  TResourceStream(HINSTANCE module, const AnsiString& name, const char* type);
  long Read(void* buffer, long count) override;
  /// Raises EWriteError: a resource cannot be written.
  long Write(const void* buffer, long count) override;
  int64_t Seek(int64_t offset, TSeekOrigin origin) override;
  int64_t GetSize() override { return size_; }
  const void* GetMemory() const { return data_; }

 private:
  const unsigned char* data_ = nullptr;
  int64_t size_ = 0;
  int64_t position_ = 0;
};

}  // namespace Classes
