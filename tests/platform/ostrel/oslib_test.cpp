// Whether a range of memory may be read, walking the memory map.
#include "platform/ostrel/oslib.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <cstddef>

namespace {

TEST(CheckReadable, FollowsTheMemoryMap) {
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

}  // namespace
