#include "examples/gallery/package_steps.h"

#include <windows.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "platform/ostrel/filelog.h"
#include "platform/ostrel/oslib.h"
#include "platform/vcl/core/package.h"

namespace {

std::vector<std::string> LoadLinesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (line.find("VELK(") != std::string::npos) lines.push_back(line);
  }
  return lines;
}

// Name of the package's main unit: its file name without folder and extension.
std::string MainUnitName(void* package) {
  std::string name = ModuleFileName(package).Text();
  name = name.substr(name.find_last_of("\\/") + 1);
  return name.substr(0, name.find('.'));
}

}  // namespace

bool ShowLoadLogLine(ShowcaseContext& context) {
  std::ifstream log(FILELogPath(), std::ios::binary);
  const std::string text((std::istreambuf_iterator<char>(log)), std::istreambuf_iterator<char>());
  // Normally the line is among what the load appended; when the library was
  // already mapped before (linked directly), it is the last one in the file.
  std::vector<std::string> lines;
  if (context.LogSizeBeforeLoad < text.size()) lines = LoadLinesOf(text.substr(context.LogSizeBeforeLoad));
  if (lines.empty()) lines = LoadLinesOf(text);
  if (lines.empty()) {
    std::printf("   no load line in %s\n", FILELogPath());
    return false;
  }
  std::printf("   %s\n", lines.back().c_str());
  return true;
}

bool ShowUnits(ShowcaseContext& context) {
  const Sysutils::TPackageInfo info = Sysutils::GetPackageInfo(context.Package);
  std::printf("   requires:");
  for (const auto& name : info.Requires) std::printf(" %s", name.c_str());
  std::printf("\n");

  // Units listed before the main unit come from the required packages.
  const std::string mainUnit = MainUnitName(context.Package);
  bool imported = true;
  int number = 0;
  for (const auto& unit : info.Contains) {
    const bool isMain = lstrcmpiA(unit.c_str(), mainUnit.c_str()) == 0;
    if (isMain) imported = false;
    const char* note = isMain ? "main unit" : imported ? "imported" : nullptr;
    if (note)
      std::printf("   %2d %-12s %s\n", ++number, unit.c_str(), note);
    else
      std::printf("   %2d %s\n", ++number, unit.c_str());
  }
  return !info.Contains.empty();
}
