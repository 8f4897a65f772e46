#pragma once
// Lock misuse seen by a test instead of the debugger: while a recorder lives,
// every misuse of an optex or reader/writer lock is recorded with its reason
// and the program carries on at once.
#include <mutex>
#include <string>

#include "velkin/sync/brannock.h"

class MisuseRecorder {
 public:
  MisuseRecorder() : previous_(GetLockMisuseHandler()) {
    std::lock_guard<std::mutex> guard(mutex_);
    reasons_.clear();
    SetLockMisuseHandler(&Record);
  }
  ~MisuseRecorder() { SetLockMisuseHandler(previous_); }
  MisuseRecorder(const MisuseRecorder&) = delete;
  MisuseRecorder& operator=(const MisuseRecorder&) = delete;

  // The reasons so far, in order, each ending in a line break.
  std::string Reasons() const {
    std::lock_guard<std::mutex> guard(mutex_);
    return reasons_;
  }

 private:
  static void Record(const char* reason) {
    std::lock_guard<std::mutex> guard(mutex_);
    reasons_ += std::string(reason ? reason : "") + "\n";
  }

  HLockMisuseHandler previous_;
  static inline std::mutex mutex_;
  static inline std::string reasons_;
};
