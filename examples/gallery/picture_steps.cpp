#include "examples/gallery/picture_steps.h"

#include <windows.h>

#include <cstdio>
#include <string>

#include "examples/gallery/pictures/pictures.h"
#include "platform/ostrel/oslib.h"
#include "platform/ostrel/owned_handle.h"

bool ShowPictures(ShowcaseContext& context) {
  const std::string dir = GetStartupDir();
  const OwnedModule plugin(LoadLibraryA((dir + "gallery_pictures.dll").c_str()));
  if (!plugin) {
    std::printf("   gallery_pictures.dll not loaded (error %lu)\n", GetLastError());
    return false;
  }
  auto render =
      reinterpret_cast<RenderPicturesProc>(reinterpret_cast<void*>(GetProcAddress(plugin.get(), "RenderPictures")));
  const bool ok = render && render(context.OutDir.c_str()) != 0;
  if (!render) std::printf("   RenderPictures not found in gallery_pictures.dll\n");
  auto form =
      reinterpret_cast<RenderFormPageProc>(reinterpret_cast<void*>(GetProcAddress(plugin.get(), "RenderFormPage")));
  const bool formOk = form && form(context.OutDir.c_str()) != 0;
  auto controls = reinterpret_cast<RenderControlsPageProc>(
      reinterpret_cast<void*>(GetProcAddress(plugin.get(), "RenderControlsPage")));
  const bool controlsOk = controls && controls(context.OutDir.c_str()) != 0;
  auto dialogs = reinterpret_cast<RenderDialogsPageProc>(
      reinterpret_cast<void*>(GetProcAddress(plugin.get(), "RenderDialogsPage")));
  const bool dialogsOk = dialogs && dialogs(context.OutDir.c_str()) != 0;
  return ok && formOk && controlsOk && dialogsOk;
}
