// Child process of the module holder tests: prints the error text of
// HModule::Assign(nullptr) as hexadecimal bytes, so that the parent sees the
// exact code-page bytes whatever its own console does with them.
#include <cstdio>

#include "velkin/core/h_module.h"

int main() {
  HModule holder;
  const char* text = holder.Assign(static_cast<void*>(nullptr));
  for (const char* p = text ? text : ""; *p; ++p) std::printf("%02X", static_cast<unsigned char>(*p));
  std::printf("\n");
  return text ? 0 : 1;
}
