#pragma once
#include <windows.h>

#include <string>

// Writes a shown window, frame included, as it is on the screen to a PNG;
// prints one line with its size. False (with a reason) when it cannot.
bool WriteWindow(HWND window, const std::string& path);

// Lets a shown window paint fully before it is captured.
void LetPaint(HWND window);
