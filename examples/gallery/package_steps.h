#pragma once
#include "examples/gallery/showcase.h"

// Showcase steps about the library as a package.

// Prints the line the library wrote to the process's log when it was loaded.
bool ShowLoadLogLine(ShowcaseContext& context);

// Prints the required packages and the units in start-up order, as the
// package descriptor lists them.
bool ShowUnits(ShowcaseContext& context);
