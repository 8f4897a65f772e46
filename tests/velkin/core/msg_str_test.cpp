#include "velkin/core/msg_str.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "platform/vcl/messages.h"

namespace {

std::string Prefix(const char* name) { return std::string(name).substr(0, 3); }

TEST(KernelMsgStr, TableHasItsGroupsInOrderAndNoEntryIsHidden) {
  // Group boundaries: 68 CM_, 24 CN_, 208 WM_, closing entry.
  struct Boundary {
    int index;
    unsigned long msg;
    const char* name;
  } const boundaries[] = {
      {0, 0xB000, "CM_ACTIVATE"},
      {1, 0xB001, "CM_DEACTIVATE"},
      {2, 0xB002, "CM_GOTFOCUS"},
      {67, 0xB043, "CM_MOUSEWHEEL"},
      {68, 0xBC00, "CN_BASE"},
      {92, 0x0000, "WM_NULL"},
      {296, 0x0380, "WM_PENWINFIRST"},
      {297, 0x038F, "WM_PENWINLAST"},
      {298, 0x8000, "WM_APP"},
      {299, 0x0400, "WM_USER"},
      {300, 0, ""},
  };
  for (const Boundary& b : boundaries) {
    EXPECT_EQ(b.msg, WinMsgNames[b.index].Msg) << "entry " << b.index;
    EXPECT_STREQ(b.name, WinMsgNames[b.index].Name) << "entry " << b.index;
  }
  std::map<std::string, unsigned long> byName;
  for (int i = 0; i < WinMsgNameCount - 1; ++i) {
    const HMsgName& e = WinMsgNames[i];
    const char* group = i < 68 ? "CM_" : i < 92 ? "CN_" : "WM_";
    EXPECT_EQ(group, Prefix(e.Name)) << "entry " << i << " " << e.Name;
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
  EXPECT_STREQ("CM_ACTIVATE", WinMsg2Str(0xB000));
  EXPECT_STREQ("CM_MOUSEENTER", WinMsg2Str(Controls::CM_MOUSEENTER));
  EXPECT_STREQ("CN_COMMAND", WinMsg2Str(Controls::CN_COMMAND));
  EXPECT_STREQ("WM_NULL", WinMsg2Str(0));  // found before the closing entry
  EXPECT_STREQ("WM_KEYDOWN", WinMsg2Str(0x0100));
  EXPECT_STREQ("WM_LBUTTONDOWN", WinMsg2Str(0x0201));
  EXPECT_STREQ("WM_USER", WinMsg2Str(0x0400));

  struct {
    unsigned long msg;
    const char* text;
  } const unknown[] = {{0x1234, "1234"}, {0xABCDE, "ABCDE"}, {0x4, "0004"}, {0xB044, "B044"}, {0xFFFFFFFF, "FFFFFFFF"}};
  for (const auto& u : unknown) EXPECT_STREQ(u.text, WinMsg2Str(u.msg)) << std::hex << u.msg;
  // One shared buffer: the next unknown number overwrites the text.
  const char* first = WinMsg2Str(0x1234);
  WinMsg2Str(0x5678);
  EXPECT_STREQ("5678", first);
}

}  // namespace
