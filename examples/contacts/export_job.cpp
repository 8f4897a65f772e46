#include "export_job.h"

#include <windows.h>

#include <fstream>

namespace {
// Each line waits this long, standing in for work that takes time, so that
// the progress window can be seen (and its abort button pressed).
constexpr DWORD kPauseMs = 250;
}  // namespace

TExportJob::TExportJob(std::vector<std::string> names, std::string path, HOperation* progress)
    : HVCLThread(true), names_(std::move(names)), path_(std::move(path)), progress_(progress) {}

void TExportJob::Execute() {
  std::ofstream out(path_, std::ios::binary);
  for (const std::string& name : names_) {
    if (!(out << name << "\r\n" << std::flush)) {
      failed_ = true;
      return;
    }
    ++written_;
    MTCallVoid({this, &TExportJob::Report});
    if (aborted_ || GetTerminated()) return;
    Sleep(kPauseMs);
  }
}

void TExportJob::Report() {
  const int total = static_cast<int>(names_.size());
  progress_->SetText("Exported %d of %d contacts", written_, total);
  progress_->SetProgress(written_ * 100 / total);
  aborted_ = progress_->isAborted();
}
