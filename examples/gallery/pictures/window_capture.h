#pragma once
#include <windows.h>

#include <functional>
#include <string>

#include "examples/gallery/pictures/picture_sheet.h"

// Writes a shown window, frame included, as it is on the screen to a PNG;
// prints one line with its size. False (with a reason) when it cannot.
bool WriteWindow(HWND window, const std::string& path);

// A shown window, frame included, as it is on the screen, under label.
bool CaptureShot(HWND window, const char* label, Shot& shot);

// Lets a shown window paint fully before it is captured.
void LetPaint(HWND window);

// Runs show, which opens a modal window on this thread; meanwhile a thread of
// its own waits at most ten seconds for a shown window of this thread that
// passes filter, runs act on it (which may type into it and capture it),
// and closes it: WM_CLOSE for a form, the cancel command for a dialog box.
// False when the window did not appear.
bool WhileModal(const std::function<void()>& show, const std::function<bool(HWND)>& filter,
                const std::function<void(HWND)>& act);

// Whether w is a dialog box of the system's dialog class (a message box).
bool IsDialogBox(HWND w);
