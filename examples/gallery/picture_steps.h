#pragma once
#include "examples/gallery/showcase.h"

// Showcase step drawing the pictures: loads the drawing plug-in (which needs
// the library loaded already) and renders into "pictures" beside the host.
bool ShowPictures(ShowcaseContext& context);
