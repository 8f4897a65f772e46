#pragma once
// The texts of the library's string tables in each of its languages, and the
// locales the tests run under to see them.
#include <windows.h>

#include <string>

namespace string_texts {

// English, Russian, French; UTF-8 here, expected in the active ANSI code page.
struct Text {
  int id;
  const char* text[3];
};

inline const Text texts[] = {
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
    {1032,
     {"The owner of a dialog is not a window", "Владелец диалога не является окном",
      "Le propriétaire de la boîte de dialogue n'est pas une fenêtre"}},
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
struct Locale {
  const char* lcAll;
  unsigned codePage, uiLanguage;
  int column;
};
inline const Locale locales[] = {{"ru_RU.UTF-8", 1251, 0x419, 1},
                                 {"fr_FR.UTF-8", 1252, 0x40C, 2},
                                 {"en_US.UTF-8", 1252, 0x409, 0},
                                 {"de_DE.UTF-8", 1252, 0x407, 0}};  // no German table: English

// A UTF-8 text in a code page.
inline std::string InCodePage(const char* utf8, unsigned codePage) {
  wchar_t wide[256];
  const int n = MultiByteToWideChar(CP_UTF8, 0, utf8, -1, wide, 256);
  char bytes[512];
  return std::string(bytes, WideCharToMultiByte(codePage, 0, wide, n - 1, bytes, sizeof bytes, nullptr, nullptr));
}

// The column of texts for the process's UI language: Russian, French, else English.
inline int Column() {
  const LANGID language = PRIMARYLANGID(GetUserDefaultUILanguage());
  return language == LANG_RUSSIAN ? 1 : language == LANG_FRENCH ? 2 : 0;
}

// A table text as a window shows it: through the process's ANSI code page.
inline std::wstring Shown(const char* utf8) {
  const std::string bytes = InCodePage(utf8, GetACP());
  wchar_t wide[512];
  return std::wstring(wide, MultiByteToWideChar(CP_ACP, 0, bytes.data(), static_cast<int>(bytes.size()), wide, 512));
}

// The text of string id in the process's language, as a window shows it.
inline std::wstring Shown(int id) {
  for (const Text& t : texts)
    if (t.id == id) return Shown(t.text[Column()]);
  return L"";
}

// The text of string id in the process's language and code page, as
// LoadStr gives it.
inline std::string Loaded(int id) {
  for (const Text& t : texts)
    if (t.id == id) return InCodePage(t.text[Column()], GetACP());
  return "";
}

}  // namespace string_texts
