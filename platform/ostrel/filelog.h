#pragma once
/// \file
/// The process's log file: one time-stamped line per call.
#include "platform/ostrel/ostrel_api.h"

/// Appends one printf-formatted line to the process's log file. The file sits
/// beside the executable and is named after it with the extension ".log"
/// (`C:\App\host.exe` logs to `C:\App\host.log`). Each line reads
/// "YYYY-MM-DD hh:mm:ss.mmm <text>" and ends in CR LF. Lines from several threads
/// never interleave. Failures to write are ignored.
OSTREL_API void FILELog(const char* format, ...) __attribute__((format(printf, 1, 2)));

/// Full path of the log file FILELog writes to.
OSTREL_API const char* FILELogPath();
