#pragma once
// Lock misuse seen by a test instead of the debugger: while a recorder lives,
// every misuse of an optex or reader/writer lock is recorded with its reason
// and the program carries on at once.
#include <mutex>
#include <string>
#include <vector>

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

  int Count() const {
    std::lock_guard<std::mutex> guard(mutex_);
    return static_cast<int>(reasons_.size());
  }
  // The reasons in order, one a line.
  std::string Reasons() const {
    std::lock_guard<std::mutex> guard(mutex_);
    std::string all;
    for (const std::string& r : reasons_) all += r + "\n";
    return all;
  }

 private:
  static void Record(const char* reason) {
    std::lock_guard<std::mutex> guard(mutex_);
    reasons_.push_back(reason ? reason : "");
  }

  HLockMisuseHandler previous_;
  static inline std::mutex mutex_;
  static inline std::vector<std::string> reasons_;
};
