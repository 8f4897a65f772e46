#include <gtest/gtest.h>
#include <windows.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>
#include <string>

#include "platform/vcl/messages.h"
#include "velkin/core/fmap.h"
#include "velkin/core/h_tcvt.h"
#include "velkin/core/msg_str.h"

namespace {

TEST(KernelMsgStr, TableHasItsGroupsInOrderAndNoEntryIsHidden) {
  // Group boundaries: 68 CM_, 24 CN_, 208 WM_, closing entry.
  const struct {
    int index;
    unsigned long msg;
    const char* name;
  } boundaries[] = {{0, 0xB000, "CM_ACTIVATE"},
                    {1, 0xB001, "CM_DEACTIVATE"},
                    {2, 0xB002, "CM_GOTFOCUS"},
                    {67, 0xB043, "CM_MOUSEWHEEL"},
                    {68, 0xBC00, "CN_BASE"},
                    {92, 0x0000, "WM_NULL"},
                    {296, 0x0380, "WM_PENWINFIRST"},
                    {297, 0x038F, "WM_PENWINLAST"},
                    {298, 0x8000, "WM_APP"},
                    {299, 0x0400, "WM_USER"},
                    {300, 0, ""}};
  for (const auto& b : boundaries) {
    EXPECT_EQ(b.msg, WinMsgNames[b.index].Msg) << "entry " << b.index;
    EXPECT_STREQ(b.name, WinMsgNames[b.index].Name) << "entry " << b.index;
  }
  std::map<std::string, unsigned long> byName;
  for (int i = 0; i < WinMsgNameCount - 1; ++i) {
    const HMsgName& e = WinMsgNames[i];
    EXPECT_EQ(i < 68 ? "CM_" : i < 92 ? "CN_" : "WM_", std::string(e.Name).substr(0, 3)) << "entry " << i;
    EXPECT_TRUE(byName.emplace(e.Name, e.Msg).second) << "name twice: " << e.Name;
    // A number listed twice would hide the later name.
    EXPECT_STREQ(e.Name, WinMsg2Str(e.Msg)) << "entry " << i << " number " << std::hex << e.Msg;
  }
  // Component messages are consecutive from 0xB000; each reflected
  // notification is CN_BASE plus the window message of the same name.
  for (int i = 0; i < 68; ++i) EXPECT_EQ(0xB000ul + i, WinMsgNames[i].Msg) << WinMsgNames[i].Name;
  for (int i = 69; i < 92; ++i) {
    const std::string wm = "WM_" + std::string(WinMsgNames[i].Name).substr(3);
    ASSERT_EQ(1u, byName.count(wm)) << WinMsgNames[i].Name << " has no window message";
    EXPECT_EQ(0xBC00 + byName[wm], WinMsgNames[i].Msg) << WinMsgNames[i].Name;
  }
}

TEST(KernelMsgStr, NamesKnownNumbersAndFormatsOthers) {
  const struct {
    unsigned long msg;
    const char* text;
  } cases[] = {{Controls::CM_MOUSEENTER, "CM_MOUSEENTER"},
               {Controls::CN_COMMAND, "CN_COMMAND"},
               {0x1234, "1234"},
               {0xABCDE, "ABCDE"},
               {0x4, "0004"},
               {0xB044, "B044"},
               {0xFFFFFFFF, "FFFFFFFF"}};
  for (const auto& c : cases) EXPECT_STREQ(c.text, WinMsg2Str(c.msg)) << std::hex << c.msg;
  // One shared buffer: the next unknown number overwrites the text.
  const char* first = WinMsg2Str(0x1234);
  WinMsg2Str(0x5678);
  EXPECT_STREQ("5678", first);
}

std::string Hex(const std::string& s) {
  std::string out;
  char b[4];
  for (unsigned char c : s) out += (std::snprintf(b, sizeof b, "%02X ", c), b);
  return out;
}

// "Привет, мир" in code pages 1251, 866 and UTF-8.
const std::string privet1251 = "\xCF\xF0\xE8\xE2\xE5\xF2, \xEC\xE8\xF0";
const std::string privet866 = "\x8F\xE0\xA8\xA2\xA5\xE2, \xAC\xA8\xE0";
const std::string privetUtf8 = "Привет, мир";

TEST(KernelHTextConvert, ConvertsAndNeverWritesPastTheBuffer) {
  const struct {
    unsigned from, to;
    const char* src;
    int dstSize;
    std::string text;  // what dst holds after the call, terminator not included
  } cases[] = {
      {1251, 866, privet1251.c_str(), 40, privet866},
      {1251, 65001, privet1251.c_str(), 40, privetUtf8},
      {1251, 866, privet1251.c_str(), 1, ""},
      {1251, 866, privet1251.c_str(), 2, privet866.substr(0, 1)},
      {1251, 866, privet1251.c_str(), 5, privet866.substr(0, 4)},
      {1251, 866, privet1251.c_str(), 11, privet866.substr(0, 10)},
      {1251, 866, privet1251.c_str(), 12, privet866},
      {1251, 65001, privet1251.c_str(), 4, "П"},  // "Пр" needs 4 bytes: a cut never splits a character
      {12345, 866, privet1251.c_str(), 6, privet1251.substr(0, 5)},  // unknown code page: plain copy
      {1251, 866, nullptr, 6, ""},
  };
  for (const auto& c : cases) {
    char dst[40];
    std::memset(dst, '#', sizeof dst);
    EXPECT_EQ(dst, HTextConvert(c.from, c.to, c.src, dst, c.dstSize));
    // The bytes after the terminator stay as they were.
    EXPECT_EQ(Hex(c.text + '\0' + std::string(sizeof dst - c.text.size() - 1, '#')), Hex(std::string(dst, sizeof dst)))
        << c.from << " to " << c.to << ", dstSize " << c.dstSize;
  }
  EXPECT_EQ(nullptr, HTextConvert(1251, 866, "x", nullptr, 10));
  char untouched = '#';
  HTextConvert(1251, 866, "x", &untouched, 0);
  EXPECT_EQ('#', untouched);

  // The string form fits its buffer to the text.
  System::AnsiString s("left over");
  const char* buffer = HTextConvert(1251, 866, privet1251.c_str(), s);
  EXPECT_EQ(buffer, s.c_str());
  EXPECT_EQ(Hex(privet866), Hex(s.str()));
  EXPECT_EQ(static_cast<int>(privet866.size()), s.Length());
  HTextConvert(1251, 866, "", s);
  EXPECT_EQ(0, s.Length());
}

struct TempFile {
  std::string path;
  ~TempFile() { DeleteFileA(path.c_str()); }
  void Write(const std::string& content) const { std::ofstream(path, std::ios::binary) << content; }
  std::string Read() const {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
  }
};

std::string Handles(const MapFileInfo& info) {
  std::ostringstream s;
  s << "file " << info.File << " mapping " << info.Mapping << " view " << info.View;
  return s.str();
}

TEST(KernelFmap, MapsForReadingAndWritingAndFailuresLeaveAClosedRecord) {
  char dir[MAX_PATH];
  GetTempPathA(sizeof dir, dir);
  const TempFile file{std::string(dir) + "velkin_fmap_" + std::to_string(GetCurrentProcessId()) + ".bin"};
  const std::string closed = Handles(MapFileInfo{});
  file.Write("hello, mapping");
  MapFileInfo info;
  ASSERT_TRUE(MapFileAccess(info, file.path.c_str(), 0));
  EXPECT_EQ(14u, info.Size);
  EXPECT_EQ(0u, info.Mode);
  void* data = MapGetData(info, 14);
  ASSERT_NE(nullptr, data);
  EXPECT_EQ("hello, mapping", std::string(static_cast<char*>(data), 14));
  EXPECT_EQ(info.View, MapGetData(info, 0xFFFFFFFF));
  const MapFileInfo stale = info;
  MapClose(info);
  EXPECT_EQ(closed, Handles(info));
  EXPECT_EQ(nullptr, MapGetData(stale, 14)) << "an unmapped view is not readable";
  EXPECT_EQ(nullptr, MapGetData(info, 1));
  MapClose(info);  // closing twice is harmless

  ASSERT_TRUE(MapFileAccess(info, file.path.c_str(), 1));
  static_cast<char*>(MapGetData(info, 14))[0] = 'J';
  MapClose(info);
  EXPECT_EQ("Jello, mapping", file.Read());

  // Mode 2: opened for reading (bit 0 clear) but mapped for writing: refused.
  EXPECT_FALSE(MapFileAccess(info, file.path.c_str(), 2));
  EXPECT_EQ(2u, info.Mode);
  EXPECT_EQ(closed, Handles(info));
  EXPECT_TRUE(MapFileAccess(info, file.path.c_str(), 3));
  MapClose(info);

  EXPECT_FALSE(MapFileAccess(info, (file.path + ".missing").c_str(), 0));
  EXPECT_EQ(closed, Handles(info));
  EXPECT_EQ(nullptr, MapGetData(info, 0xFFFFFFFF)) << "the unchecked view of a closed record";
  EXPECT_FALSE(MapFileAccess(info, nullptr, 0));
  EXPECT_EQ(closed, Handles(info));

  file.Write("");
  EXPECT_FALSE(MapFileAccess(info, file.path.c_str(), 0)) << "an empty file cannot be mapped";
  EXPECT_EQ(closed, Handles(info));
  EXPECT_TRUE(DeleteFileA(file.path.c_str())) << "the empty file was left open";
}

}  // namespace
