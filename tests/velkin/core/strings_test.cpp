#include <gtest/gtest.h>

#include <windows.h>

#include <cstdio>
#include <filesystem>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "tests/velkin/core/velkin_child.h"

namespace {

using namespace velkin_child;

struct Text {
  int id;
  const char* english;
  const char* russian;
  const char* french;
};

// UTF-8 here; each child must get them in its own ANSI code page.
const Text texts[] = {
    {1001, "Trying to set as acceptable unsupported type", "Попытка установить неизвестный тип как допустимый",
     "Tentative de définir comme acceptable un type non pris en charge"},
    {1002, "Supported types only", "Только поддерживаемые типы", "Types pris en charge uniquement"},
    {1003, "Can not assign object of non supported class type", "Нельзя присвоить обьекту обьект другого типа",
     "Impossible d'affecter un objet d'un type de classe non pris en charge"},
    {1010, "Invalid module handle", "Неверный описатель модуля", "Descripteur de module non valide"},
    {1030, "Attention...", "Внимание...", "Attention..."},
    {1031, "Question...", "Вопрос...", "Question..."},
    {9001, "", "", ""},  // "OK" has no entry in any language
    {9002, "Cancel", "Отменить", "Annuler"},
    {9003, "&Ignore", "Пропустить", "Ignorer"},
    {9004, "&Retry", "Повторить", "Rщessayer"},
    {9005, "&Abort", "Отмена", "Arrъt"},
    {9006, "&Help", "Помощь", "Aide"},
    {9007, "&Yes", "Да", "Oui"},
    {9008, "&No", "Нет", "Non"},
    {9009, "&Continue", "Продолжить", "Continuer"},
    {9010, "Don't ask me again", "Больше не задавать этого вопроса", "Ne me demandez pas encore"},
    {9011, "Don't tell me again", "Больше не показывать это сообщение", "Ne me dites pas encore"},
    {9012, "Yes to &All", "Да для всех", "Oui pour Tous"},
    {9013, "No to A&ll", "Нет для всех", "Non pour Tous"},
};

enum Column { English, Russian, French };

struct Locale {
  const char* lcAll;
  unsigned codePage;
  unsigned uiLanguage;
  Column column;
};

const Locale locales[] = {
    {"ru_RU.UTF-8", 1251, 0x419, Russian},
    {"fr_FR.UTF-8", 1252, 0x40C, French},
    {"en_US.UTF-8", 1252, 0x409, English},
    {"de_DE.UTF-8", 1252, 0x407, English},  // no German table: English
};

// The bytes of a UTF-8 text in a code page, in hex as the child writes them.
std::string Hex(const char* utf8, unsigned codePage) {
  wchar_t wide[256];
  int n = MultiByteToWideChar(CP_UTF8, 0, utf8, -1, wide, 256);
  char bytes[512];
  int m = WideCharToMultiByte(codePage, 0, wide, n - 1, bytes, sizeof bytes, nullptr, nullptr);
  std::string hex;
  char pair[3];
  for (int i = 0; i < m; ++i) {
    std::snprintf(pair, sizeof pair, "%02X", static_cast<unsigned char>(bytes[i]));
    hex += pair;
  }
  return hex;
}

TEST(CoreStrings, EachLocaleGetsItsTableInItsCodePage) {
  if (WineLoader().empty()) GTEST_SKIP() << "a child's locale follows LC_ALL only under Wine";
  const std::string host = (BinDir() / "velkin_core_strings_host.exe").string();
  std::string ids;
  for (const Text& t : texts) ids += " " + std::to_string(t.id);

  for (const Locale& locale : locales) {
    SCOPED_TRACE(locale.lcAll);
    TempFolder folder("velkin_strings");
    const std::string report = folder.File("strings.txt");
    const std::string event = "VelkinCoreStrings_" + std::to_string(GetCurrentProcessId()) + "_" + locale.lcAll;
    const std::string problem = RunUnderLocale(host, "\"" + report + "\" " + event + ids, locale.lcAll, event);
    ASSERT_EQ("", problem);

    std::istringstream in(ReadFile(report));
    std::string word;
    unsigned acp = 0, ui = 0;
    in >> word >> acp >> word >> std::hex >> ui >> std::dec;
    EXPECT_EQ(locale.codePage, acp) << "active code page of the child";
    EXPECT_EQ(locale.uiLanguage, ui) << "UI language of the child";

    std::map<int, std::string> got;
    std::string line;
    std::getline(in, line);
    while (std::getline(in, line)) {
      std::istringstream fields(line);
      int id = 0;
      std::string hex;
      fields >> id >> hex;
      got[id] = hex;
    }
    for (const Text& t : texts) {
      const char* text = locale.column == Russian ? t.russian : locale.column == French ? t.french : t.english;
      ASSERT_TRUE(got.count(t.id)) << "no line for id " << t.id;
      EXPECT_EQ(Hex(text, locale.codePage), got[t.id]) << "id " << t.id << " \"" << text << "\"";
    }
  }
}

TEST(CoreStrings, LanguageSatelliteTakesOverTheLibrarysTables) {
  // A satellite sits beside the library, named after the UI language
  // ("velkin.ENU" under English); the library reads its strings from it then.
  char language[16] = {};
  ASSERT_NE(0, GetLocaleInfoA(MAKELCID(GetUserDefaultUILanguage(), SORT_DEFAULT), LOCALE_SABBREVLANGNAME, language,
                              sizeof language));
  TempFolder folder("velkin_satellite");
  const auto bin = BinDir();
  for (const char* file : {"velkin.dll", "vcl.dll", "ostrel.dll", "pellum.dll", "velkin_core_strings_host.exe"})
    std::filesystem::copy_file(bin / file, folder.File(file));
  std::filesystem::copy_file(bin / "velkin_core_satellite.dll", folder.File(std::string("velkin.") + language));

  const std::string report = folder.File("strings.txt");
  ASSERT_EQ(0, RunProgram(folder.File("velkin_core_strings_host.exe"), "\"" + report + "\" none 1010 1002"));
  const std::vector<std::string> lines = ReadLines(report);
  ASSERT_EQ(3u, lines.size()) << ReadFile(report);
  EXPECT_EQ("1010 " + Hex("Satellite: invalid module handle", GetACP()), lines[1]);
  // What the satellite lacks is not taken from the library's own tables.
  EXPECT_EQ("1002 ", lines[2]);
}

}  // namespace
