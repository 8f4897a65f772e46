#include "velkin/gdi/gdi_temp.h"

#include "platform/vcl/package.h"

namespace Gdi_temp {
namespace {
Sysinit::TUnitCounter counter;
int startUps = 0;
int shutDowns = 0;
}  // namespace

void Initialize() {
  if (!counter.Start()) return;
  ++startUps;
}

void Finalize() {
  if (!counter.Stop()) return;
  ++shutDowns;
}

int StartUpRuns() { return startUps; }
int ShutDownRuns() { return shutDowns; }
}  // namespace Gdi_temp
