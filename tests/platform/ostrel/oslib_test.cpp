#include <gtest/gtest.h>
#include <windows.h>

#include <fstream>
#include <regex>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "platform/ostrel/filelog.h"
#include "platform/ostrel/oslib.h"

namespace {

TEST(OstrelOslib, CheckReadableFollowsTheMemoryMap) {
  const std::size_t page = 4096;
  // Three pages reserved, two committed.
  auto* base = static_cast<char*>(VirtualAlloc(nullptr, 3 * page, MEM_RESERVE, PAGE_NOACCESS));
  ASSERT_NE(nullptr, base);
  ASSERT_NE(nullptr, VirtualAlloc(base, 2 * page, MEM_COMMIT, PAGE_READWRITE));

  EXPECT_TRUE(CheckReadable(base, 2 * page));
  EXPECT_FALSE(CheckReadable(base, 2 * page + 1)) << "runs into the reserved page";
  EXPECT_FALSE(CheckReadable(base + 2 * page, 1));

  // The middle page under each protection: a range crossing into it walks
  // both regions and is readable only when that page is.
  const std::pair<DWORD, bool> kinds[] = {
      {PAGE_READONLY, true}, {PAGE_NOACCESS, false}, {PAGE_READWRITE | PAGE_GUARD, false}, {PAGE_EXECUTE, false}};
  for (const auto& [protect, readable] : kinds) {
    DWORD old = 0;
    ASSERT_TRUE(VirtualProtect(base + page, page, protect, &old));
    EXPECT_EQ(readable, CheckReadable(base + page - 8, 16)) << "protection " << protect;
  }
  EXPECT_FALSE(CheckReadable(nullptr, 1));
  EXPECT_FALSE(CheckReadable(base, ~std::size_t(0))) << "range wraps round";
  ASSERT_TRUE(VirtualFree(base, 0, MEM_RELEASE));
  EXPECT_FALSE(CheckReadable(base, 1)) << "released";
}

TEST(OstrelOslib, LogLinesHaveTheirShapeAndNeverInterleave) {
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
