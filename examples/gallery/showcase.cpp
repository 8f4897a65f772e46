#include "examples/gallery/showcase.h"

#include <cstdio>

#include "examples/gallery/package_steps.h"
#include "examples/gallery/picture_steps.h"

const std::vector<ShowcaseStep>& ShowcaseSteps() {
  static const std::vector<ShowcaseStep> steps = {
      {"Load log line", ShowLoadLogLine},
      {"Units in start-up order", ShowUnits},
      {"Drawing pictures", ShowPictures},
      {"Dialogs", ShowDialogs},
  };
  return steps;
}

bool RunShowcase(ShowcaseContext& context) {
  bool allPassed = true;
  for (const ShowcaseStep& step : ShowcaseSteps()) {
    std::printf("== %s\n", step.Title);
    if (!step.Run(context)) {
      std::printf("   FAILED\n");
      allPassed = false;
    }
  }
  return allPassed;
}
