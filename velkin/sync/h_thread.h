#pragma once
#include "platform/vcl/core/thread.h"
#include "velkin/velkin_api.h"

/// \file
/// Worker threads that run methods on the framework's main thread.

/// A framework thread whose body (Execute, in the derived class) calls
/// MTCallVoid to have a method run on the main thread, where it may touch
/// windows freely.
///
/// A thread made running starts at the end of this constructor (not of the
/// derived class's: see TThread). MTCallVoid is for the thread's own body: the
/// pending call is one unguarded field, overwritten by each call.
class VELKIN_API HVCLThread : public Classes::TThread {
  VCL_CLASS();

 public:
  explicit HVCLThread(bool createSuspended);
  ~HVCLThread() override;

  /// Runs method on the main thread and returns when it has run (on the main
  /// thread itself: at once).
  void MTCallVoid(Classes::TThreadMethod method);
  /// Calls the pending call; what Synchronize runs on the main thread.
  void SyncVoidCall();

 private:
  System::AnsiString text_;  // kept for derived classes; unused here
  Classes::TThreadMethod pending_;
};
