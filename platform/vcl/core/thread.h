#pragma once
/// \file
/// Worker threads and calls run on the main thread.
#include <windows.h>

#include <exception>

#include "platform/ostrel/owned_handle.h"
#include "platform/vcl/core/classes.h"

namespace Classes {

/// A method without arguments, run on the main thread by Synchronize or Queue.
using TThreadMethod = System::TClosure<void()>;

/// Misuse of a thread object (waiting for itself, starting twice, ...).
class VCL_API EThread : public Sysutils::Exception {
  VCL_CLASS();

 public:
  using Exception::Exception;
};

/// A worker thread: derive, put the work in Execute, and make it running or
/// suspended (then Start it).
///
/// A thread made running starts at the end of TThread's constructor, before a
/// derived constructor has run: a derived class whose Execute reads its own
/// members makes itself suspended and calls Start at the end of its constructor.
///
/// Deleting a thread still running asks it to stop (Terminate) and waits for
/// it before any destructor runs. A thread object that ends without delete (on
/// the stack, a member) stops it only in TThread's destructor, after the
/// derived parts are gone: its derived class stops it first. An exception that
/// escapes Execute ends the thread and is kept in GetFatalException; it never
/// ends the process.
///
/// A call the thread waits for (its OnTerminate handler, or one it makes
/// through Synchronize) may delete the thread. Waiting there would never end,
/// so delete returns at once: the thread is asked to stop and frees the object
/// itself when it ends, as with FreeOnTerminate (its destructors run on the
/// thread); from OnTerminate, as soon as the handler has returned. A WaitFor
/// waiting meanwhile still returns the ReturnValue the thread ended with; a
/// delete waiting meanwhile frees the object itself.
class VCL_API TThread : public System::TObject {
  VCL_CLASS();

 public:
  explicit TThread(bool createSuspended);
  ~TThread() override;
  void BeforeDestruction() override;
  /// Deleted inside a call its thread waits for: freed by its own thread
  /// when it ends.
  bool DestroyLater() override;
  TThread(const TThread&) = delete;
  TThread& operator=(const TThread&) = delete;

  /// Runs a thread made suspended; raises EThread when it runs already.
  void Start();
  void Resume() { Start(); }
  /// Asks Execute to stop: it reads GetTerminated() and returns.
  void Terminate();
  bool GetTerminated() const;
  /// Waits for the thread to end and returns its ReturnValue. On the main
  /// thread it runs the calls threads synchronize meanwhile. Raises EThread
  /// when called by the thread itself, inside a call the thread waits for, or
  /// for a free-on-terminate thread.
  int WaitFor();

  bool GetFinished() const;
  int GetReturnValue() const { return returnValue_; }
  void SetReturnValue(int value) { returnValue_ = value; }
  /// Deletes the object when Execute has returned (after OnTerminate).
  bool GetFreeOnTerminate() const { return freeOnTerminate_; }
  void SetFreeOnTerminate(bool value) { freeOnTerminate_ = value; }
  /// Runs on the main thread after Execute returned.
  System::TNotifyEvent GetOnTerminate() const { return onTerminate_; }
  void SetOnTerminate(System::TNotifyEvent value) { onTerminate_ = value; }
  HANDLE GetHandle() const { return handle_.get(); }
  DWORD GetThreadID() const { return threadId_; }
  /// What escaped Execute, or null.
  std::exception_ptr GetFatalException() const { return fatalException_; }

  /// Runs method on the main thread and returns when it has run; on the main
  /// thread it runs at once. An exception raised by method is raised again
  /// here. The main thread runs such calls in its message loops (any loop that
  /// dispatches messages) and in CheckSynchronize.
  void Synchronize(TThreadMethod method) { Synchronize(this, method); }
  static void Synchronize(TThread* thread, TThreadMethod method);
  /// Like Synchronize without waiting (on the main thread: runs at once).
  void Queue(TThreadMethod method) { Queue(this, method); }
  static void Queue(TThread* thread, TThreadMethod method);

 protected:
  virtual void Execute() = 0;
  /// Runs OnTerminate through Synchronize.
  virtual void DoTerminate();

 private:
  static DWORD WINAPI ThreadProc(void* self);
  void CallOnTerminate();
  void StopAndWait();

  OwnedKernelHandle handle_;
  DWORD threadId_ = 0;
  int returnValue_ = 0;
  bool freeOnTerminate_ = false;
  bool started_ = false;
  volatile bool terminated_ = false;
  volatile bool finished_ = false;
  bool destroying_ = false;  // delete waits for the thread
  System::TNotifyEvent onTerminate_;
  std::exception_ptr fatalException_;
};

/// Runs the calls that threads are waiting to have run on the main thread,
/// waiting up to timeoutMs for one to come; true when any ran. Raises EThread
/// on another thread than the main one.
VCL_API bool CheckSynchronize(int timeoutMs = 0);

/// The thread that loaded the framework: where synchronized calls run.
VCL_API DWORD GetMainThreadID();

}  // namespace Classes
