#include "platform/ostrel/units.h"

namespace Ostrel {
namespace {
// Start counter: 0 when stopped, -1 per start. The unit has no start-up or
// shut-down work (its objects come into being on first use); the counter
// keeps the shape every unit shares.
int counter = 0;
}  // namespace

void Initialize() { --counter; }
void Finalize() { ++counter; }
}  // namespace Ostrel
