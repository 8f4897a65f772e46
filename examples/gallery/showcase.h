#pragma once
#include <cstdint>
#include <string>
#include <vector>

// What every showcase step gets: the library, loaded as a package.
struct ShowcaseContext {
  void* Package = nullptr;
  // Size of the process's log file before the library was loaded, so the line
  // it wrote at load can be told from earlier runs' lines.
  std::uintmax_t LogSizeBeforeLoad = 0;
  // Folder the pictures are written to.
  std::string OutDir;
};

// One step of the gallery. Run prints what it shows (or writes its pictures)
// and returns false when it failed; the remaining steps still run.
struct ShowcaseStep {
  const char* Title;
  bool (*Run)(ShowcaseContext& context);
};

// Every step in running order. New showcases are added to this list.
const std::vector<ShowcaseStep>& ShowcaseSteps();

// Runs every step; true when all succeeded.
bool RunShowcase(ShowcaseContext& context);
