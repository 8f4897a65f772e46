#pragma once
#include <windows.h>

// Polls cond until it holds or about ten seconds have passed; the bound only
// keeps a broken lock from hanging the run, it never decides a result.
template <class Cond>
bool WaitUntil(Cond cond) {
  for (int i = 0; i < 10000; ++i) {
    if (cond()) return true;
    Sleep(1);
  }
  return cond();
}
