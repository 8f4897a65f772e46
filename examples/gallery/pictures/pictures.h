#pragma once
// The drawing showcase, a plug-in of the gallery host: it links the library,
// so the host loads it only after it has loaded the library as a package.

#ifdef GALLERY_PICTURES_BUILD
#define GALLERY_PICTURES_API extern "C" __declspec(dllexport)
#else
#define GALLERY_PICTURES_API extern "C" __declspec(dllimport)
#endif

// Draws every picture with the library's own routines and writes it as a PNG
// into folder (made when missing), with an overview of them all; prints one
// progress line per picture, the total time and the folder. 1 when every
// picture was written, else 0.
GALLERY_PICTURES_API int RenderPictures(const char* folder);
using RenderPicturesProc = int (*)(const char* folder);

// Makes a form with the framework's standard controls, shows it and writes the
// window as form.png into folder. 1 when written, else 0.
GALLERY_PICTURES_API int RenderFormPage(const char* folder);
using RenderFormPageProc = int (*)(const char* folder);

// Makes a window of order rows placed from a template form and of controls
// filled through one control field, and writes it as controls.png into
// folder. 1 when written, else 0.
GALLERY_PICTURES_API int RenderControlsPage(const char* folder);
using RenderControlsPageProc = int (*)(const char* folder);

// Shows a form and changes it on the screen (rows added, removed and moved
// by its buttons, the form made larger), capturing each step into live.png
// in folder. 1 when written, else 0.
GALLERY_PICTURES_API int RenderLivePage(const char* folder);
using RenderLivePageProc = int (*)(const char* folder);

// Opens the library's dialogs (message box, progress window, input dialog,
// text editor) as an application would and writes each window, captured while
// it runs, into folder under a tag of the process's language and screen
// density; then puts the captures of every run there into dialogs.png. 1 when
// every picture was written, else 0.
GALLERY_PICTURES_API int RenderDialogsPage(const char* folder);

// Shows a form of controls, the message box and the input dialog with texts
// in several scripts given and typed as UTF-8 (the gallery's code page), and
// writes them as utf8.png into folder; a script no font here draws is left
// out and named. 1 when written, else 0.
GALLERY_PICTURES_API int RenderUtf8Page(const char* folder);
