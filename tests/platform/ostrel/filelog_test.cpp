// The log file: the shape of each line, and lines of many threads never
// interleaved.
#include "platform/ostrel/filelog.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <fstream>
#include <regex>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace {

TEST(FILELog, LinesHaveTheirShapeAndNeverInterleave) {
  // Other cases of this program may log at the same time: lines are told
  // apart by a marker of this process.
  const std::string marker = "mark" + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(GetTickCount());
  const std::string filler(300, 'f');
  constexpr int threads = 4, lines = 150;
  std::vector<std::thread> pool;
  for (int t = 0; t < threads; ++t)
    pool.emplace_back([&, t] {
      for (int i = 0; i < lines; ++i) FILELog("%s t%d i%d %s end", marker.c_str(), t, i, filler.c_str());
    });
  for (auto& th : pool) th.join();

  std::ifstream in(FILELogPath(), std::ios::binary);
  ASSERT_TRUE(in) << FILELogPath();
  const std::regex shape("\\d{4}-\\d{2}-\\d{2} \\d{2}:\\d{2}:\\d{2}\\.\\d{3} " + marker + " t([0-3]) i(\\d+) " +
                         filler + " end\r");
  std::set<std::string> seen;
  int mine = 0;
  for (std::string row; std::getline(in, row);) {
    if (row.find(marker) == std::string::npos) continue;
    ++mine;
    std::smatch m;
    ASSERT_TRUE(std::regex_match(row, m, shape)) << "line: " << row.substr(0, 120) << "...";
    seen.insert(m[1].str() + "/" + m[2].str());
  }
  EXPECT_EQ(threads * lines, mine);
  EXPECT_EQ(std::size_t(threads * lines), seen.size()) << "lines lost or repeated";
}

}  // namespace
