// File mapping: reading and writing through a mapped file; every refused
// call leaves a closed record.
#include "velkin/core/fmap.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <fstream>
#include <sstream>
#include <string>

namespace {

struct TempFile {
  std::string path;
  ~TempFile() { DeleteFileA(path.c_str()); }
  void Write(const std::string& content) const { std::ofstream(path, std::ios::binary) << content; }
};

std::string Handles(const MapFileInfo& info) {
  return (std::ostringstream() << "file " << info.File << " mapping " << info.Mapping << " view " << info.View).str();
}

TEST(MapFileAccess, MapsForReadingAndWritingAndFailuresLeaveAClosedRecord) {
  char dir[MAX_PATH];
  GetTempPathA(sizeof dir, dir);
  const TempFile file{std::string(dir) + "velkin_fmap_" + std::to_string(GetCurrentProcessId()) + ".bin"};
  const std::string closed = Handles(MapFileInfo{});
  MapFileInfo info;
  file.Write("hello, mapping");
  ASSERT_TRUE(MapFileAccess(info, file.path.c_str(), 0));
  EXPECT_EQ(14ul, info.Size) << "size";
  EXPECT_EQ(0ul, info.Mode) << "mode";
  void* data = MapGetData(info, 14);
  ASSERT_NE(nullptr, data);
  EXPECT_EQ("hello, mapping", std::string(static_cast<char*>(data), 14));
  EXPECT_EQ(info.View, MapGetData(info, 0xFFFFFFFF));
  const MapFileInfo stale = info;
  MapClose(info);
  // An unmapped view is not readable.
  EXPECT_EQ(closed, Handles(info)) << "after MapClose";
  EXPECT_EQ(nullptr, MapGetData(stale, 14)) << "the unmapped view";
  EXPECT_EQ(nullptr, MapGetData(info, 1)) << "a closed record";
  MapClose(info);  // closing twice is harmless

  ASSERT_TRUE(MapFileAccess(info, file.path.c_str(), 1));
  static_cast<char*>(MapGetData(info, 14))[0] = 'J';
  MapClose(info);
  ASSERT_TRUE(MapFileAccess(info, file.path.c_str(), 0));
  EXPECT_EQ("Jello, mapping", std::string(static_cast<char*>(MapGetData(info, 14)), 14)) << "written through";
  MapClose(info);

  EXPECT_TRUE(MapFileAccess(info, file.path.c_str(), 3));
  MapClose(info);

  // A refused call leaves a closed record behind.
  const struct {
    const char* what;
    std::string path;
    int mode;
    std::string content;  // written to the file first
  } refused[] = {
      {"mode 2: opened for reading (bit 0 clear) but mapped for writing", file.path, 2, "hello"},
      {"a missing file", file.path + ".missing", 0, "hello"},
      {"no name", "", 0, "hello"},
      {"an empty file, which cannot be mapped", file.path, 0, ""},
  };
  for (const auto& r : refused) {
    file.Write(r.content);
    EXPECT_FALSE(MapFileAccess(info, r.path.empty() ? nullptr : r.path.c_str(), r.mode)) << r.what << ", result";
    EXPECT_EQ(closed, Handles(info)) << r.what << ", record";
  }
  EXPECT_EQ(nullptr, MapGetData(info, 0xFFFFFFFF)) << "the unchecked view of a closed record";
  EXPECT_TRUE(DeleteFileA(file.path.c_str())) << "the empty file was left open";
}

}  // namespace
