// The gallery host: loads velkin.dll as a package, runs the showcase steps
// against it and unloads it. Exits 0 when every step succeeded.
#include <cstdio>
#include <filesystem>
#include <string>
#include <system_error>

#include "examples/gallery/picture_steps.h"
#include "examples/gallery/showcase.h"
#include "platform/ostrel/filelog.h"
#include "platform/ostrel/oslib.h"
#include "platform/vcl/core/package.h"

namespace {

// The library loaded as a package for the lifetime of the object.
class PackageSession {
 public:
  explicit PackageSession(const char* name) {
    std::error_code error;
    const auto size = std::filesystem::file_size(FILELogPath(), error);
    context_.LogSizeBeforeLoad = error ? 0 : size;
    context_.Package = Sysutils::LoadPackage(name);
    std::printf("%s loaded as a package\n", name);
  }
  ~PackageSession() {
    Sysutils::UnloadPackage(context_.Package);
    std::printf("package unloaded\n");
  }
  PackageSession(const PackageSession&) = delete;
  PackageSession& operator=(const PackageSession&) = delete;

  ShowcaseContext& Context() { return context_; }

 private:
  ShowcaseContext context_;
};

constexpr char kUsage[] = "usage: gallery [--out DIR] [--dialogs-only] [--help]\n";

}  // namespace

int main(int argc, char** argv) {
  std::string outDir = std::string(GetStartupDir()) + "pictures";
  bool dialogsOnly = false;
  for (int i = 1; i < argc; ++i) {
    const std::string arg = argv[i];
    if (arg == "--help" || arg == "-h") {
      std::printf(
          "%s"
          "Loads velkin.dll as a package, shows its load log and units and writes\n"
          "the showcase pictures as PNG files.\n"
          "  --out DIR        folder for the pictures (default: pictures beside gallery.exe)\n"
          "  --dialogs-only   only the dialogs, tagged with this run's language and screen\n"
          "                   density (run it under other locales and densities first:\n"
          "                   dialogs.png puts every run's pictures together)\n",
          kUsage);
      return 0;
    }
    if (arg == "--out" && i + 1 < argc) {
      outDir = argv[++i];
    } else if (arg == "--dialogs-only") {
      dialogsOnly = true;
    } else {
      std::fprintf(stderr, "gallery: %s %s\n%s", arg == "--out" ? "missing folder after" : "unknown option",
                   arg.c_str(), kUsage);
      return 2;
    }
  }
  try {
    PackageSession session("velkin.dll");
    session.Context().OutDir = outDir;
    if (dialogsOnly) return ShowDialogs(session.Context()) ? 0 : 1;
    return RunShowcase(session.Context()) ? 0 : 1;
  } catch (const Sysutils::Exception& e) {
    std::fprintf(stderr, "gallery: %s\n", e.Message.c_str());
    return 1;
  }
}
