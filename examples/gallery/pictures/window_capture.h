#pragma once
#include <windows.h>

#include <string>

#include "examples/gallery/pictures/picture_sheet.h"

// Writes a shown window, frame included, as it is on the screen to a PNG;
// prints one line with its size. False (with a reason) when it cannot.
bool WriteWindow(HWND window, const std::string& path);

// A shown window, frame included, as it is on the screen, under label.
bool CaptureShot(HWND window, const char* label, Shot& shot);

// Lets a shown window paint fully before it is captured.
void LetPaint(HWND window);
