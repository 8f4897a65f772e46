#include <gtest/gtest.h>
#include <windows.h>

#include <fstream>
#include <iterator>
#include <regex>
#include <set>
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
  EXPECT_FALSE(CheckReadable(base, 2 * page + 1)) << "runs into the reserved page";
  EXPECT_FALSE(CheckReadable(base + 2 * page, 1));

  // The middle page under each protection: a range crossing into it walks
  // both regions and is readable only when that page is.
  const struct {
    DWORD protect;
    bool readable;
  } kinds[] = {
      {PAGE_READONLY, true}, {PAGE_NOACCESS, false}, {PAGE_READWRITE | PAGE_GUARD, false}, {PAGE_EXECUTE, false}};
  for (const auto& k : kinds) {
    DWORD old = 0;
    ASSERT_TRUE(VirtualProtect(base + page, page, k.protect, &old));
    EXPECT_EQ(k.readable, CheckReadable(base + page - 8, 16)) << "protection " << k.protect;
    EXPECT_TRUE(CheckReadable(base, page));
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
  const std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  const std::regex shape("\\d{4}-\\d{2}-\\d{2} \\d{2}:\\d{2}:\\d{2}\\.\\d{3} " + marker + " t([0-3]) i(\\d+) " +
                         filler + " end\r");
  std::set<std::string> seen;
  int mine = 0;
  std::istringstream rows(text);
  for (std::string row; std::getline(rows, row);) {
    if (row.find(marker) == std::string::npos) continue;
    ++mine;
    std::smatch m;
    ASSERT_TRUE(std::regex_match(row, m, shape)) << "line: " << row.substr(0, 120) << "...";
    seen.insert(m[1].str() + "/" + m[2].str());
  }
  EXPECT_EQ(threads * lines, mine);
  EXPECT_EQ(std::size_t(threads * lines), seen.size()) << "lines lost or repeated";
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
  const std::string given = GetIOErrorS_CON(ERROR_ACCESS_DENIED);
  EXPECT_NE(std::string::npos, given.find("(5)")) << given;
}

}  // namespace
