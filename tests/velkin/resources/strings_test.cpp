// The string tables compiled into the library, in the language and code page
// the process runs under.
#include <gtest/gtest.h>
#include <windows.h>

#include <iterator>
#include <string>

#include "platform/vcl/vcl.h"
#include "velkin/core/h_module.h"

namespace {

// English, Russian, French; UTF-8 here, expected in the active ANSI code page.
struct Text {
  int id;
  const char* text[3];
};

const Text texts[] = {
    {1001,
     {"Trying to set as acceptable unsupported type", "Попытка установить неизвестный тип как допустимый",
      "Tentative de définir comme acceptable un type non pris en charge"}},
    {1002, {"Supported types only", "Только поддерживаемые типы", "Types pris en charge uniquement"}},
    {1003,
     {"Can not assign object of non supported class type", "Нельзя присвоить обьекту обьект другого типа",
      "Impossible d'affecter un objet d'un type de classe non pris en charge"}},
    {1010, {"Invalid module handle", "Неверный описатель модуля", "Descripteur de module non valide"}},
    {1030, {"Attention...", "Внимание...", "Attention..."}},
    {1031, {"Question...", "Вопрос...", "Question..."}},
    {9001, {"", "", ""}},  // "OK" has no entry in any language
    {9002, {"Cancel", "Отменить", "Annuler"}},
    {9003, {"&Ignore", "Пропустить", "Ignorer"}},
    {9004, {"&Retry", "Повторить", "Rщessayer"}},
    {9005, {"&Abort", "Отмена", "Arrъt"}},
    {9006, {"&Help", "Помощь", "Aide"}},
    {9007, {"&Yes", "Да", "Oui"}},
    {9008, {"&No", "Нет", "Non"}},
    {9009, {"&Continue", "Продолжить", "Continuer"}},
    {9010, {"Don't ask me again", "Больше не задавать этого вопроса", "Ne me demandez pas encore"}},
    {9011, {"Don't tell me again", "Больше не показывать это сообщение", "Ne me dites pas encore"}},
    {9012, {"Yes to &All", "Да для всех", "Oui pour Tous"}},
    {9013, {"No to A&ll", "Нет для всех", "Non pour Tous"}},
};

// The locales this program runs under (CMakeLists.txt): Wine takes a process's
// code page and UI language from LC_ALL.
const struct {
  const char* lcAll;
  unsigned codePage, uiLanguage;
  int column;
} locales[] = {{"ru_RU.UTF-8", 1251, 0x419, 1},
               {"fr_FR.UTF-8", 1252, 0x40C, 2},
               {"en_US.UTF-8", 1252, 0x409, 0},
               {"de_DE.UTF-8", 1252, 0x407, 0}};  // no German table: English

// A UTF-8 text in a code page.
std::string InCodePage(const char* utf8, unsigned codePage) {
  wchar_t wide[256];
  const int n = MultiByteToWideChar(CP_UTF8, 0, utf8, -1, wide, 256);
  char bytes[512];
  return std::string(bytes, WideCharToMultiByte(codePage, 0, wide, n - 1, bytes, sizeof bytes, nullptr, nullptr));
}

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
