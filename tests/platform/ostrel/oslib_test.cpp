#include <gtest/gtest.h>
#include <windows.h>

#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "platform/ostrel/filelog.h"
#include "platform/ostrel/ioerror.h"
#include "platform/ostrel/oslib.h"

namespace {

TEST(OstrelOslib, CheckReadableFollowsTheMemoryMap) {
  SYSTEM_INFO si;
  GetSystemInfo(&si);
  const std::size_t page = si.dwPageSize;
  // Three pages reserved, two committed.
  auto* base = static_cast<char*>(VirtualAlloc(nullptr, 3 * page, MEM_RESERVE, PAGE_NOACCESS));
  ASSERT_NE(nullptr, base);
  ASSERT_NE(nullptr, VirtualAlloc(base, 2 * page, MEM_COMMIT, PAGE_READWRITE));

  EXPECT_TRUE(CheckReadable(base, 2 * page));
  EXPECT_TRUE(CheckReadable(base + page - 1, 0));
  EXPECT_FALSE(CheckReadable(base, 2 * page + 1)) << "runs into the reserved page";
  EXPECT_FALSE(CheckReadable(base + 2 * page, 1));

  DWORD old = 0;
  // Two regions of different but readable protection: the check walks both.
  ASSERT_TRUE(VirtualProtect(base + page, page, PAGE_READONLY, &old));
  EXPECT_TRUE(CheckReadable(base + page - 8, 16));
  ASSERT_TRUE(VirtualProtect(base + page, page, PAGE_NOACCESS, &old));
  EXPECT_TRUE(CheckReadable(base, page));
  EXPECT_FALSE(CheckReadable(base + page - 8, 16)) << "crosses into a no-access page";
  EXPECT_FALSE(CheckReadable(base + page, 1));
  ASSERT_TRUE(VirtualProtect(base + page, page, PAGE_READWRITE | PAGE_GUARD, &old));
  EXPECT_FALSE(CheckReadable(base + page, 1)) << "guard page";
  ASSERT_TRUE(VirtualProtect(base + page, page, PAGE_EXECUTE, &old));
  EXPECT_FALSE(CheckReadable(base + page, 1)) << "execute-only page";

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
  std::stringstream all;
  all << in.rdbuf();
  const std::string text = all.str();
  const std::regex shape("\\d{4}-\\d{2}-\\d{2} \\d{2}:\\d{2}:\\d{2}\\.\\d{3} " + marker + " t([0-3]) i(\\d+) " +
                         filler + " end\r");
  std::vector<std::vector<bool>> seen(threads, std::vector<bool>(lines, false));
  int mine = 0;
  std::istringstream rows(text);
  for (std::string row; std::getline(rows, row);) {
    if (row.find(marker) == std::string::npos) continue;
    ++mine;
    std::smatch m;
    ASSERT_TRUE(std::regex_match(row, m, shape)) << "line: " << row.substr(0, 120) << "...";
    seen[std::stoi(m[1])][std::stoi(m[2])] = true;
  }
  EXPECT_EQ(threads * lines, mine);
  for (int t = 0; t < threads; ++t)
    for (int i = 0; i < lines; ++i) EXPECT_TRUE(seen[t][i]) << "missing t" << t << " i" << i;
  EXPECT_EQ('\n', text.back());
}

TEST(OstrelOslib, IOErrorNumberIsPerThread) {
  SetErrorN(5);
  int seenInThread = -1, afterSet = -1;
  std::thread([&] {
    seenInThread = GetIOErrorN();
    SetErrorN(7);
    afterSet = GetIOErrorN();
  }).join();
  EXPECT_EQ(0, seenInThread);
  EXPECT_EQ(7, afterSet);
  EXPECT_EQ(5, GetIOErrorN());
  SetErrorN(0);

  SetLastError(ERROR_FILE_NOT_FOUND);
  const std::string pending = GetIOErrorS_CON(-2);
  EXPECT_NE(std::string::npos, pending.find("(2)")) << pending;
  const std::string explicitCode = GetIOErrorS_CON(ERROR_ACCESS_DENIED);
  EXPECT_NE(std::string::npos, explicitCode.find("(5)")) << explicitCode;
}

}  // namespace
