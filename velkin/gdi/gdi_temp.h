#pragma once
#include <memory>
#include <vector>

#include "platform/ostrel/owned_handle.h"
#include "platform/vcl/core/ansistring.h"
#include "velkin/velkin_api.h"

/// \file
/// Temporary GDI helpers that no caller supplies (a memory DC to measure text
/// in, the screen DC to create bitmaps on), owned by small items; long-lived
/// ones are kept by name in the process-wide pool TempPool.

/// Owns one device context. The kinds below hold it in an owner that releases
/// it the right way; dc_ is the same handle, for GetDC.
class VELKIN_API HTempItem {
 public:
  HTempItem() = default;
  virtual ~HTempItem();
  HTempItem(const HTempItem&) = delete;
  HTempItem& operator=(const HTempItem&) = delete;

  void* GetDC() const { return dc_; }

 protected:
  void* dc_ = nullptr;
};

/// A memory DC compatible with a reference DC (null: the screen); deleted with the item.
class VELKIN_API HTemp_CompatibleDC : public HTempItem {
 public:
  explicit HTemp_CompatibleDC(void* referenceDC);
  ~HTemp_CompatibleDC() override;

 private:
  OwnedMemoryDC owned_;
};

/// The window DC of a window (0: the whole screen); released with the item.
class VELKIN_API HTemp_WindowDC : public HTempItem {
 public:
  explicit HTemp_WindowDC(void* window);
  ~HTemp_WindowDC() override;
  void* GetWindow() const { return owned_.window(); }

 private:
  OwnedWindowDC owned_;
};

/// One pool entry: the owned item and its name.
class VELKIN_API HTempHolder {
 public:
  HTempHolder(const System::AnsiString& name, HTempItem* item) : name_(name), item_(item) {}
  ~HTempHolder();
  HTempHolder(const HTempHolder&) = delete;
  HTempHolder& operator=(const HTempHolder&) = delete;

  const System::AnsiString& GetName() const { return name_; }
  HTempItem* GetItem() const { return item_; }

 private:
  System::AnsiString name_;
  HTempItem* item_;
};

using HTempCreator = HTempItem* (*)(unsigned long data);

/// Items registered once by name and reused until the pool goes; destroying the
/// pool deletes the entries in the order they were added.
class VELKIN_API HTempPool {
 public:
  HTempPool() = default;
  ~HTempPool();
  HTempPool(const HTempPool&) = delete;
  HTempPool& operator=(const HTempPool&) = delete;

  /// The item registered under name (exact, case-sensitive); otherwise
  /// creator(data) registered under it. Null, with the pool unchanged, when
  /// there is no such item and the creator is null or returns null.
  HTempItem* Get(const System::AnsiString& name, HTempCreator creator, unsigned long data);
  int GetCount() const { return static_cast<int>(holders_.size()); }

 private:
  std::vector<std::unique_ptr<HTempHolder>> holders_;
};

/// The pool; made by Gdi_temp::Initialize, destroyed by Gdi_temp::Finalize.
extern VELKIN_API HTempPool* TempPool;

/// TempPool, started on first use when nothing started the unit: a program that
/// links the library directly, without loading it as a package, never calls
/// Initialize. A pool started this way goes when the library is unloaded.
VELKIN_API HTempPool* HTempCurrentPool();

/// Raises Sysutils::Exception "Can not retrive temprorary item named: [<name>]
/// by: Proc:<creator address in decimal>Data: <data in decimal>".
[[noreturn]] VELKIN_API void HTempRaiseNotFound(const System::AnsiString& name, HTempCreator creator,
                                                unsigned long data);

/// Typed fetch from TempPool: the item, checked to be a T; raises through
/// HTempRaiseNotFound when there is none (no pool, creator null or failing) or
/// it is of another class.
template <class T>
T* HTempGet(const System::AnsiString& name, HTempCreator creator, unsigned long data) {
  HTempPool* pool = HTempCurrentPool();
  HTempItem* item = pool ? pool->Get(name, creator, data) : nullptr;
  T* typed = dynamic_cast<T*>(item);
  if (!typed) HTempRaiseNotFound(name, creator, data);
  return typed;
}

/// Creator of the shared memory DC "All.HTemp_CompatibleDC": compatible with
/// the DC whose handle value is data (0: the screen; GDI handles fit 32 bits).
VELKIN_API HTempItem* HTempCreateCompatibleDC(unsigned long data);

/// Unit Gdi_temp: creates TempPool on its first start, destroys it on the
/// matching last stop.
namespace Gdi_temp {
///@{
/// The unit's start-up / shut-down routine.
VELKIN_API void Initialize();
VELKIN_API void Finalize();
///@}
/// Stops the unit once if HTempCurrentPool started it; the library's unload
/// calls it.
VELKIN_API void FinalizeFirstUse();
///@{
/// How many times the unit's start-up / shut-down work actually ran.
VELKIN_API int StartUpRuns();
VELKIN_API int ShutDownRuns();
///@}
}  // namespace Gdi_temp
