#pragma once
/// \file
/// Unit SysUtils: exceptions, string resources and language satellites.
#include <exception>

#include "platform/vcl/core/system.h"
#include "platform/vcl/core/vcl_api.h"

namespace Sysutils {

using System::AnsiString;

/// The framework's general exception. Also a std::exception, so that code and
/// test runners that know only the standard type still see the message.
class VCL_API Exception : public System::TObject, public std::exception {
  VCL_CLASS();

 public:
  explicit Exception(const AnsiString& message) : Message(message) {}
  const char* what() const noexcept override { return Message.c_str(); }

  AnsiString Message;
};

class VCL_API EConvertError : public Exception {
  VCL_CLASS();

 public:
  using Exception::Exception;
};

class VCL_API EPackageError : public Exception {
  VCL_CLASS();

 public:
  using Exception::Exception;
};

/// The value in decimal.
AnsiString VCL_API IntToStr(int value);

/// A module (executable or package) whose resources the framework searches.
/// ResInstance is the module that string resources are read from: a language
/// satellite when one was found, else the module itself.
struct TLibModule {
  TLibModule* Next = nullptr;
  void* Instance = nullptr;
  void* ResInstance = nullptr;
};

///@{
/// Adds a module to the front of the list LoadStr searches; removing it again
/// is the module's business (UnregisterModule) before it is unloaded.
VCL_API void RegisterModule(TLibModule* module);
VCL_API void UnregisterModule(TLibModule* module);
///@}

/// Looks for a language satellite of the module file: the same path with the
/// extension replaced by the user interface language's three-letter name
/// (".RUS", ".FRA", ".ENU"), then by its first two letters (".RU"). Loaded as a
/// data file; returns null when there is none.
VCL_API void* LoadResourceModule(const char* moduleFileName);

/// The resource module registered for an instance, or the instance itself.
VCL_API void* FindResourceHInstance(void* instance);

///@{
/// Whether a and b are the same text ignoring the case of ASCII letters, as
/// names of components, classes, properties and values compare. Null is
/// the empty text.
VCL_API bool SameText(const char* a, const char* b);
inline bool SameText(const AnsiString& a, const AnsiString& b) { return SameText(a.c_str(), b.c_str()); }
///@}

/// String resource Ident from the registered modules, newest first, in the
/// user interface language's table (English for a language without one, or
/// whose letters the active ANSI code page cannot write), in that code page;
/// empty when no module has it.
VCL_API AnsiString LoadStr(int ident);

/// String resource Ident of one module (instance, or the language satellite
/// registered for it), chosen and converted as LoadStr does; empty when the
/// module has none.
VCL_API AnsiString LoadStr(void* instance, int ident);

}  // namespace Sysutils
