#include "velkin/core/fmap.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

namespace {

class KernelFmap : public ::testing::Test {
 protected:
  void SetUp() override {
    char dir[MAX_PATH];
    GetTempPathA(sizeof dir, dir);
    path_ = std::string(dir) + "velkin_fmap_" + std::to_string(GetCurrentProcessId()) + ".bin";
  }
  void TearDown() override { DeleteFileA(path_.c_str()); }

  void Write(const std::string& content) {
    HANDLE f = CreateFileA(path_.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    ASSERT_NE(INVALID_HANDLE_VALUE, f);
    DWORD n;
    WriteFile(f, content.data(), static_cast<DWORD>(content.size()), &n, nullptr);
    CloseHandle(f);
  }
  std::string Read() {
    HANDLE f = CreateFileA(path_.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    char buffer[256];
    DWORD n = 0;
    ReadFile(f, buffer, sizeof buffer, &n, nullptr);
    CloseHandle(f);
    return std::string(buffer, n);
  }
  static void ExpectClosed(const MapFileInfo& info) {
    EXPECT_EQ(nullptr, info.File);
    EXPECT_EQ(nullptr, info.Mapping);
    EXPECT_EQ(nullptr, info.View);
  }

  std::string path_;
};

TEST_F(KernelFmap, MapsForReadingAndWriting) {
  Write("hello, mapping");
  MapFileInfo info;
  ASSERT_TRUE(MapFileAccess(info, path_.c_str(), 0));
  EXPECT_EQ(14u, info.Size);
  EXPECT_EQ(0u, info.Mode);
  void* data = MapGetData(info, 14);
  ASSERT_NE(nullptr, data);
  EXPECT_EQ("hello, mapping", std::string(static_cast<char*>(data), 14));
  EXPECT_EQ(info.View, MapGetData(info, 0xFFFFFFFF));
  MapFileInfo stale = info;
  MapClose(info);
  ExpectClosed(info);
  EXPECT_EQ(nullptr, MapGetData(stale, 14)) << "an unmapped view is not readable";
  EXPECT_EQ(nullptr, MapGetData(info, 1));
  MapClose(info);  // closing twice is harmless

  ASSERT_TRUE(MapFileAccess(info, path_.c_str(), 1));
  static_cast<char*>(MapGetData(info, 14))[0] = 'J';
  MapClose(info);
  EXPECT_EQ("Jello, mapping", Read());
}

TEST_F(KernelFmap, FailuresLeaveAClosedRecord) {
  MapFileInfo info;
  EXPECT_FALSE(MapFileAccess(info, (path_ + ".missing").c_str(), 0));
  ExpectClosed(info);
  EXPECT_EQ(nullptr, MapGetData(info, 0xFFFFFFFF)) << "the unchecked view of a closed record";
  EXPECT_FALSE(MapFileAccess(info, nullptr, 0));
  ExpectClosed(info);

  Write("");
  EXPECT_FALSE(MapFileAccess(info, path_.c_str(), 0)) << "an empty file cannot be mapped";
  ExpectClosed(info);
  EXPECT_TRUE(DeleteFileA(path_.c_str())) << "the empty file was left open";

  // Mode 2: opened for reading (bit 0 clear) but mapped for writing: refused.
  Write("data");
  EXPECT_FALSE(MapFileAccess(info, path_.c_str(), 2));
  EXPECT_EQ(2u, info.Mode);
  ExpectClosed(info);
  EXPECT_TRUE(MapFileAccess(info, path_.c_str(), 3));
  MapClose(info);
}

}  // namespace
