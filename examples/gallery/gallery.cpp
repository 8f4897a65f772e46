// The gallery host: loads velkin.dll as a package, runs the showcase steps
// against it and unloads it. Exits 0 when every step succeeded.
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "examples/gallery/showcase.h"
#include "platform/ostrel/filelog.h"
#include "platform/vcl/package.h"

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

}  // namespace

int main() {
  try {
    PackageSession session("velkin.dll");
    return RunShowcase(session.Context()) ? 0 : 1;
  } catch (const Sysutils::Exception& e) {
    std::fprintf(stderr, "gallery: %s\n", e.Message.c_str());
    return 1;
  }
}
