#include "platform/vcl/vcl.h"

#include <cstdio>

int main() {
  void* h = LoadPackage("velkin.dll");
  std::printf("loaded velkin.dll at %p\n", h);
  UnloadPackage(h);
  return 0;
}
