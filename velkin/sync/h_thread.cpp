#include "velkin/sync/h_thread.h"

VCL_CLASS_IMPL(HVCLThread, Classes::TThread)

// Made suspended and started here, once this class's own fields exist.
HVCLThread::HVCLThread(bool createSuspended) : TThread(true) {
  if (!createSuspended) Start();
}

HVCLThread::~HVCLThread() = default;

void HVCLThread::MTCallVoid(Classes::TThreadMethod method) {
  pending_ = method;
  Synchronize(Classes::TThreadMethod(this, &HVCLThread::SyncVoidCall));
}

void HVCLThread::SyncVoidCall() { pending_(); }
