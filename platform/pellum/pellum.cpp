#include "platform/pellum/pellum_api.h"

// Package identity; the class factory, transparent blits and directory dialog
// live in their own units beside this one.
extern "C" PELLUM_API const char* PellumVersion() { return "1.0"; }
