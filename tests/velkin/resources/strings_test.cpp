// The string tables compiled into the library, in the language and code page
// the process runs under.
#include <gtest/gtest.h>
#include <windows.h>

#include <iterator>
#include <string>

#include "platform/vcl/vcl.h"
#include "tests/velkin/resources/string_texts.h"
#include "velkin/core/h_module.h"

namespace {

using namespace string_texts;

TEST(StringTables, TablesOfTheActiveLanguageInItsCodePage) {
  char lcAll[64] = "";
  GetEnvironmentVariableA("LC_ALL", lcAll, sizeof lcAll);
  const auto* locale = std::end(locales);
  for (const auto& l : locales)
    if (lcAll == std::string(l.lcAll)) locale = &l;
  for (const auto& l : locales)  // no known LC_ALL: the UI language picks the row
    if (locale == std::end(locales) && l.uiLanguage == GetUserDefaultUILanguage()) locale = &l;
  ASSERT_NE(std::end(locales), locale) << "no table for LC_ALL=" << lcAll << ", UI language " << std::hex
                                       << GetUserDefaultUILanguage();
  EXPECT_EQ(locale->codePage, GetACP()) << "LC_ALL=" << lcAll;
  EXPECT_EQ(locale->uiLanguage, GetUserDefaultUILanguage()) << "LC_ALL=" << lcAll;
  for (const Text& t : texts)
    EXPECT_EQ(InCodePage(t.text[locale->column], locale->codePage), Sysutils::LoadStr(t.id).str())
        << "id " << t.id << " \"" << t.text[locale->column] << "\"";
  const Text& invalidHandle = texts[3];  // 1010
  EXPECT_EQ(InCodePage(invalidHandle.text[locale->column], locale->codePage),
            HModule().Assign(static_cast<void*>(nullptr)))
      << "the module holder's null-handle text";
}

}  // namespace
