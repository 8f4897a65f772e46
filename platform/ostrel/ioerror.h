#pragma once
/// \file
/// The last I/O error number of the calling thread and its text.
#include "platform/ostrel/ostrel_api.h"

///@{
/// The pending I/O error number, one per thread; 0 means none.
OSTREL_API int GetIOErrorN();
OSTREL_API void SetErrorN(int code);
///@}

/// Text of a platform error, valid until the thread's next call. A code of -1
/// or -2 (or any negative code) stands for the pending platform error,
/// GetLastError(); a positive code is a platform error number. The text is the
/// system's message for it followed by " (N)", e.g.
/// "The system cannot find the file specified. (2)".
OSTREL_API const char* GetIOErrorS_CON(int code);
