// The string tables compiled into the library and the helper package, in the
// language and code page the process runs under.
#include <gtest/gtest.h>
#include <windows.h>

#include <functional>
#include <iterator>
#include <string>

#include "platform/vcl/vcl.h"
#include "tests/velkin/resources/string_texts.h"
#include "velkin/core/h_module.h"

namespace {

using namespace string_texts;

std::wstring Wide(const std::string& bytes) {
  wchar_t wide[512];
  return std::wstring(wide, MultiByteToWideChar(CP_ACP, 0, bytes.data(), static_cast<int>(bytes.size()), wide, 512));
}

TEST(StringTables, TablesOfTheActiveLanguageInItsCodePage) {
  const Locale* locale = Current();
  ASSERT_NE(nullptr, locale) << "no row for LC_ALL=" << Environment("LC_ALL")
                             << " VELKIN_TEST_LANGUAGE=" << Environment("VELKIN_TEST_LANGUAGE") << ", UI language "
                             << std::hex << GetUserDefaultUILanguage();
  EXPECT_EQ(locale->codePage, GetACP()) << "LC_ALL=" << locale->lcAll;
  EXPECT_EQ(locale->uiLanguage, GetUserDefaultUILanguage()) << "LC_ALL=" << locale->lcAll;
  const auto pellum = static_cast<void*>(GetModuleHandleA("pellum.dll"));
  ASSERT_NE(nullptr, pellum);
  const struct {
    const char* module;
    const Text* begin;
    const Text* end;
    std::function<std::string(int)> load;
  } tables[] = {
      {"velkin", std::begin(texts), std::end(texts), [](int id) { return std::string(Sysutils::LoadStr(id).c_str()); }},
      {"pellum", std::begin(packageTexts), std::end(packageTexts),
       [pellum](int id) { return std::string(Sysutils::LoadStr(pellum, id).c_str()); }},
  };
  for (const auto& table : tables) {
    for (const Text* t = table.begin; t != table.end; ++t) {
      const std::string loaded = table.load(t->id);
      EXPECT_EQ(InCodePage(t->text[locale->column], locale->codePage), loaded)
          << table.module << " id " << t->id << " \"" << t->text[locale->column] << "\"";
      EXPECT_EQ("", Misread(Wide(loaded), locale->column)) << table.module << " id " << t->id << " as loaded";
      // The expected texts too: each language in its own letters.
      for (int column = 0; column < 3; ++column)
        EXPECT_EQ("", Misread(FromUtf8(t->text[column]), column))
            << table.module << " id " << t->id << " column " << column;
    }
  }
  const Text& invalidHandle = texts[3];  // 1010
  EXPECT_EQ(InCodePage(invalidHandle.text[locale->column], locale->codePage),
            HModule().Assign(static_cast<void*>(nullptr)))
      << "the module holder's null-handle text";
}

}  // namespace
