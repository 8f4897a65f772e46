// Message names: the table, and the text for numbers it does not know.
#include "velkin/core/msg_str.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <map>
#include <string>
#include <utility>

namespace {

TEST(WinMsg2Str, TableHasItsGroupsInOrderAndNoEntryIsHidden) {
  // 68 CM_, 24 CN_, 208 WM_, closing entry.
  ASSERT_EQ(301, WinMsgNameCount);
  EXPECT_STREQ("", WinMsgNames[300].Name);
  std::map<std::string, unsigned long> byName;
  for (int i = 0; i < WinMsgNameCount - 1; ++i) {
    const HMsgName& e = WinMsgNames[i];
    EXPECT_TRUE(byName.emplace(e.Name, e.Msg).second) << "name twice: " << e.Name;
    // A number listed twice would hide the later name.
    EXPECT_STREQ(e.Name, WinMsg2Str(e.Msg)) << "entry " << i << " number " << std::hex << e.Msg;
  }
  // Group edges: CM_ from 0xB000, CN_ at CN_BASE plus the window message.
  const struct {
    const char* what;
    unsigned long actual, expected;
  } edges[] = {{"first CM_", WinMsgNames[0].Msg, 0xB000},
               {"last CM_", WinMsgNames[67].Msg, 0xB043},
               {"CN_BASE", byName["CN_BASE"], 0xBC00},
               {"CN_COMMAND", byName["CN_COMMAND"], 0xBC00 + WM_COMMAND},
               {"first WM_ (WM_NULL)", WinMsgNames[92].Msg, 0x0},
               {"WM_APP", byName["WM_APP"], 0x8000}};
  for (const auto& e : edges) EXPECT_EQ(e.expected, e.actual) << e.what;
}

TEST(WinMsg2Str, NamesKnownNumbersAndFormatsOthers) {
  // Known numbers: see the table test above.
  const std::pair<unsigned long, const char*> cases[] = {
      {0x1234, "1234"}, {0xABCDE, "ABCDE"}, {0x4, "0004"}, {0xB044, "B044"}, {0xFFFFFFFF, "FFFFFFFF"}};
  for (auto [msg, text] : cases) EXPECT_STREQ(text, WinMsg2Str(msg)) << std::hex << msg;
  // One shared buffer: the next unknown number overwrites the text.
  const char* first = WinMsg2Str(0x1234);
  WinMsg2Str(0x5678);
  EXPECT_STREQ("5678", first);
}

}  // namespace
