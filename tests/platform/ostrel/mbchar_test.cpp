// Where characters of multi-byte code pages end: their sizes, and the
// longest start of a text that a room holds without cutting one.
#include "platform/ostrel/mbchar.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>

namespace {

TEST(CharFit, CutsBetweenCharacters) {
  // "Щ" is two bytes in UTF-8, "中" three, "😀" four; in code page 932 "ア"
  // (0x83 0x41) is a lead and a trail byte.
  const struct {
    const char* text;
    unsigned codePage;
    int room;
    int size, fit;  // CharSize of the text's first character, CharFit of it into room
  } rows[] = {
      {"abc", CP_UTF8, 2, 1, 2},
      {"\xD0\xA9\xD0\xA9", CP_UTF8, 3, 2, 2},
      {"\xD0\xA9\xD0\xA9", CP_UTF8, 4, 2, 4},
      {"\xD0\xA9\xD0\xA9", CP_UTF8, 1, 2, 0},
      {"\xE4\xB8\xAD!", CP_UTF8, 2, 3, 0},
      {"\xE4\xB8\xAD!", CP_UTF8, 3, 3, 3},
      {"a\xF0\x9F\x98\x80", CP_UTF8, 4, 1, 1},
      {"\xF0\x9F\x98\x80z", CP_UTF8, 4, 4, 4},
      {"\x80\x80\x80", CP_UTF8, 2, 1, 2},  // stray continuation bytes: a character each
      {"\xD0"
       "a",
       CP_UTF8, 1, 1, 1},              // a lead byte without its continuation
      {"\xE4\xB8", CP_UTF8, 5, 1, 2},  // a character cut short ends the text: it fits
      {"a\x83\x41"
       "b",
       932, 2, 1, 1},
      {"\x83\x41\x83\x41", 932, 3, 2, 2},
      {"\x83\x41\x83\x41", 932, 4, 2, 4},
      {"\xE9\xE9\xE9", 1252, 2, 1, 2},
  };
  for (const auto& r : rows) {
    const int length = static_cast<int>(std::strlen(r.text));
    EXPECT_EQ(r.size, CharSize(r.text, length, r.codePage)) << "CharSize \"" << r.text << "\" in " << r.codePage;
    EXPECT_EQ(r.fit, CharFit(r.text, length, r.room, r.codePage))
        << "CharFit \"" << r.text << "\" into " << r.room << " in " << r.codePage;
  }
  EXPECT_EQ(0, CharSize(nullptr, 5));
  EXPECT_EQ(0, CharSize("", -1));
  EXPECT_EQ(0, CharFit("abc", 3, 0));
}

}  // namespace
