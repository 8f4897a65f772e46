#pragma once
#include "examples/gallery/showcase.h"

// Showcase step drawing the pictures: loads the drawing plug-in (which needs
// the library loaded already) and renders into "pictures" beside the host.
bool ShowPictures(ShowcaseContext& context);

// Opens the library's dialogs, captures them under the tag of the process's
// language and screen density, and puts the captures of every run together.
bool ShowDialogs(ShowcaseContext& context);
