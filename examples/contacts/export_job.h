#pragma once
// Writes the contacts to a file on a thread of its own, a line at a time,
// telling the progress window how far it is and stopping when the user
// presses its abort button. The window is touched on the main thread only.
#include <string>
#include <vector>

#include "velkin/dialogs/hoperation.h"
#include "velkin/sync/h_thread.h"

class TExportJob : public HVCLThread {
 public:
  // Made suspended: the owner sets OnTerminate, then calls Start.
  TExportJob(std::vector<std::string> names, std::string path, HOperation* progress);

  int GetWritten() const { return written_; }
  bool GetFailed() const { return failed_; }
  bool GetAborted() const { return aborted_; }

 protected:
  void Execute() override;

 private:
  void Report();  // on the main thread

  std::vector<std::string> names_;
  std::string path_;
  HOperation* progress_;
  int written_ = 0;
  bool failed_ = false;
  bool aborted_ = false;
};
