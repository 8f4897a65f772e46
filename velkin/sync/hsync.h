#pragma once
#include "platform/vcl/core/closure.h"
#include "velkin/velkin_api.h"

/// \file
/// Calls handed to one thread through a hidden window: a worker asks, the
/// window's thread runs the callback.
///
/// The window ("HSyncWindow") is made by the first HSync_Add on the calling
/// thread, which must then pump messages: every callback runs on it. Calls
/// made before the first HSync_Add, or after the window has gone, do nothing
/// and return 0.

/// The private messages of the window; the numbers are fixed.
enum HSYNC_Messages : unsigned {
  HSYNC_CALL = 0x8FF0,      ///< sent: run the callback with Param
  HSYNC_CALLDATA = 0x8FF1,  ///< sent: run it with the record, then as HSYNC_POST
  HSYNC_POST = 0x8FF2,      ///< posted: run the callback with Param
  HSYNC_POSTDATA = 0x8FF3,  ///< posted: run it with the record, then free the record
  HSYNC_RELEASE = 0x8FF4    ///< posted: drop the last reference
};

/// A bound method that the window's thread calls.
using HSyncEvent = System::TClosure<long(void*)>;
/// A plain function that the window's thread calls.
using HSyncProc = long (*)(void*);

/// A call for the window's thread: a callback (Event, else Proc) and its
/// argument. Records given to HSync_PostData are freed through the virtual
/// destructor, so a derived record can carry more.
class VELKIN_API HSyncData {
 public:
  HSyncData() = default;
  virtual ~HSyncData();

  /// Runs Event (when set) or else Proc with argument; 0 without either.
  virtual long Invoke(void* argument) const;
  bool HasCallback() const { return Event.IsSet() || Proc != nullptr; }

  HSyncEvent Event;
  HSyncProc Proc = nullptr;
  void* Param;   ///< left as it is by the constructor
  long Tag = 0;  ///< free for the record's user; the unit never reads it
};

/// Takes a reference to the window, making it (on this thread) with the first.
VELKIN_API void HSync_Add();
/// Gives the window back when this is the last reference: only a call at
/// exactly one reference has an effect; with more it does nothing at all (so
/// two HSync_Add need not be matched by two HSync_Delete to keep the window,
/// and cannot be undone by them either).
VELKIN_API void HSync_Delete();

///@{
/// Runs the callback on the window's thread with argument and returns its
/// result once it has run; on that thread itself it runs at once.
VELKIN_API long HSync_CallEvent(HSyncProc proc, void* argument);
VELKIN_API long HSync_CallEvent(HSyncEvent event, void* argument);
///@}
/// Runs data's callback on the window's thread TWICE, by design: first with
/// the record's address, then with data.Param; returns the second result.
VELKIN_API long HSync_CallData(const HSyncData& data);
///@{
/// Queues the callback for the window's thread and returns at once. By design
/// the record made for the call is never freed once it has run (it holds a
/// callback): every post leaves a small allocation behind.
VELKIN_API long HSync_PostEvent(HSyncProc proc, void* argument);
VELKIN_API long HSync_PostEvent(HSyncEvent event, void* argument);
///@}
/// Queues data for the window's thread, which runs its callback with the
/// record's address and then frees it; the unit owns data from the call on
/// (without a window it is freed at once).
VELKIN_API void HSync_PostData(HSyncData* data);

/// The window while a reference is held, else null (for tests and tracing).
VELKIN_API void* HSync_Window();
