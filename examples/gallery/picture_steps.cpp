#include "examples/gallery/picture_steps.h"

#include <windows.h>

#include <cstdio>
#include <string>

#include "examples/gallery/pictures/pictures.h"
#include "platform/ostrel/oslib.h"
#include "platform/ostrel/owned_handle.h"

namespace {

// Runs the plug-in's page renderers of the given names, each with the output
// folder; true when the plug-in loaded and every one wrote its pictures.
bool RunPages(ShowcaseContext& context, std::initializer_list<const char*> pages) {
  const std::string dir = GetStartupDir();
  const OwnedModule plugin(LoadLibraryA((dir + "gallery_pictures.dll").c_str()));
  if (!plugin) {
    std::printf("   gallery_pictures.dll not loaded (error %lu)\n", GetLastError());
    return false;
  }
  bool ok = true;
  for (const char* page : pages) {
    using Render = int (*)(const char* folder);
    auto render = reinterpret_cast<Render>(reinterpret_cast<void*>(GetProcAddress(plugin.get(), page)));
    if (!render) std::printf("   %s not found in gallery_pictures.dll\n", page);
    ok = render && render(context.OutDir.c_str()) != 0 && ok;
  }
  return ok;
}

}  // namespace

bool ShowPictures(ShowcaseContext& context) {
  return RunPages(context,
                  {"RenderPictures", "RenderFormPage", "RenderControlsPage", "RenderLivePage", "RenderUtf8Page"});
}

bool ShowDialogs(ShowcaseContext& context) { return RunPages(context, {"RenderDialogsPage"}); }
