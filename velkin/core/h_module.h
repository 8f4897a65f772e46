#pragma once
/// \file
/// A module handle holder that loads and frees a DLL by name.
#include "platform/ostrel/mystring.h"
#include "platform/ostrel/owned_handle.h"
#include "platform/vcl/core/system.h"
#include "velkin/velkin_api.h"

/// Owns one reference to a loaded library (DLL or package). Copies load the
/// module again by path, so every holder owns a reference of its own.
///
/// The error result of the Assign forms is null on success, otherwise an error
/// text (or what DoLoad returned) to be read at once: the text lives in a
/// buffer that the thread's next failing call reuses.
class VELKIN_API HModule : public System::TObject {
  VCL_CLASS();

 public:
  HModule() = default;
  HModule(const HModule& other);
  HModule& operator=(const HModule& other);
  ~HModule() override;

  /// Loads by name; a name that does not load by itself is tried again in the
  /// application's start-up directory. Frees what was held before.
  const char* Assign(const char* name);
  /// Takes a reference of its own to an already loaded module, by its path.
  const char* Assign(void* handle);
  /// Loads the other holder's module again under its name.
  const char* Assign(const HModule& other);

  void Free();
  bool GetAssigned() const { return static_cast<bool>(handle_); }
  void* GetHandle() const { return handle_.get(); }
  /// The name or path the module was loaded under; kept after Free.
  const MyString& GetName() const { return name_; }

 protected:
  /// Called after a successful load, before the handle is kept: null accepts
  /// the module, anything else refuses it (it is freed again) and becomes the
  /// result of Assign.
  virtual const char* DoLoad(void* handle);
  /// Called before the held module is freed.
  virtual void DoFree();

 private:
  OwnedModule handle_;
  MyString name_;
};
