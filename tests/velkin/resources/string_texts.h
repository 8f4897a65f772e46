#pragma once
// The texts of the library's and the helper package's string tables in each
// of their languages, and the locales the tests run under to see them.
#include <windows.h>

#include <cstdlib>
#include <string>

namespace string_texts {

// English, Russian, French; UTF-8 here, expected in the active ANSI code page.
struct Text {
  int id;
  const char* text[3];
};

// velkin.dll's tables.
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
    {1040, {"Operation in progress...", "Выполняется операция...", "Opération en cours..."}},
    {1041, {"Abort", "Прервать", "Interrompre"}},
    {1042, {"OK", "OK", "OK"}},
    {1043, {"Close", "Закрыть", "Fermer"}},
    {1044, {"Editor", "Редактор", "Éditeur"}},
    {1045, {"&OK", "&OK", "&OK"}},
    {1046, {"Characters:", "Символов:", "Caractères :"}},
    {1047, {"Lines:", "Строк:", "Lignes :"}},
    {1048,
     {"Memory allocation for dialog template failed.", "Не удалось выделить память для шаблона диалога.",
      "Échec de l'allocation de mémoire pour le modèle de boîte de dialogue."}},
    {1049, {"Allocation Failure", "Ошибка выделения памяти", "Échec d'allocation"}},
    {9001, {"", "", ""}},  // "OK" has no entry in any language
    {9002, {"Cancel", "Отменить", "Annuler"}},
    {9003, {"&Ignore", "Пропустить", "Ignorer"}},
    {9004, {"&Retry", "Повторить", "Réessayer"}},
    {9005, {"&Abort", "Отмена", "Arrêt"}},
    {9006, {"&Help", "Помощь", "Aide"}},
    {9007, {"&Yes", "Да", "Oui"}},
    {9008, {"&No", "Нет", "Non"}},
    {9009, {"&Continue", "Продолжить", "Continuer"}},
    {9010, {"Don't ask me again", "Больше не задавать этого вопроса", "Ne me demandez pas encore"}},
    {9011, {"Don't tell me again", "Больше не показывать это сообщение", "Ne me dites pas encore"}},
    {9012, {"Yes to &All", "Да для всех", "Oui pour Tous"}},
    {9013, {"No to A&ll", "Нет для всех", "Non pour Tous"}},
};

// pellum.dll's tables: the directory dialog.
inline const Text packageTexts[] = {
    {2001, {"Select Directory", "Выбор папки", "Sélectionner un dossier"}},
    {2002, {"Directory &name:", "&Имя папки:", "&Nom du dossier :"}},
    {2003, {"&Folders:", "&Папки:", "&Dossiers :"}},
    {2004, {"Dri&ves:", "&Диски:", "&Lecteurs :"}},
    {2005, {"OK", "OK", "OK"}},
    {2006, {"Cancel", "Отмена", "Annuler"}},
    {2007,
     {"The directory \"%s\" does not exist. Create it?", "Папка \"%s\" не существует. Создать её?",
      "Le dossier « %s » n'existe pas. Voulez-vous le créer ?"}},
    {2008, {"Confirm", "Подтверждение", "Confirmation"}},
    {2009,
     {"The directory \"%s\" cannot be created.", "Не удаётся создать папку \"%s\".",
      "Impossible de créer le dossier « %s »."}},
    {2010, {"Error", "Ошибка", "Erreur"}},
};

// The environments the tests run under (CMakeLists.txt): Wine takes a
// process's code page and UI language from LC_ALL, and VELKIN_TEST_LANGUAGE=en
// gives the test's thread English as its interface language over that code
// page (Enter): an English system with the Cyrillic code page, which no
// locale here is.
struct Locale {
  const char* lcAll;
  const char* language;           // VELKIN_TEST_LANGUAGE, or null
  unsigned codePage, uiLanguage;  // the process's
  int column;                     // the texts shown: 0 English, 1 Russian, 2 French
};
inline const Locale locales[] = {
    {"ru_RU.UTF-8", nullptr, 1251, 0x419, 1}, {"fr_FR.UTF-8", nullptr, 1252, 0x40C, 2},
    {"en_US.UTF-8", nullptr, 1252, 0x409, 0}, {"de_DE.UTF-8", nullptr, 1252, 0x407, 0},  // no German table: English
    {"ru_RU.UTF-8", "en", 1251, 0x419, 0},  // an English interface over the Cyrillic code page
};

inline std::string Environment(const char* name) {
  char value[64] = "";
  const DWORD n = GetEnvironmentVariableA(name, value, sizeof value);
  return n < sizeof value ? value : "";
}

// The row of this process, or null when none fits. A run without LC_ALL
// (by hand) takes the row of its UI language.
inline const Locale* Current() {
  const std::string lcAll = Environment("LC_ALL"), language = Environment("VELKIN_TEST_LANGUAGE");
  for (const Locale& l : locales)
    if (lcAll == l.lcAll && language == (l.language ? l.language : "")) return &l;
  for (const Locale& l : locales)
    if (lcAll.empty() && language.empty() && !l.language && l.uiLanguage == GetUserDefaultUILanguage()) return &l;
  return nullptr;
}

// Gives the calling thread the interface language the row asks for: the
// thread's UI language (what Windows loads resources in) and its locale (what
// Wine loads them in). Run once as the program starts, on its main thread,
// which runs the tests.
inline bool Enter() {
  const Locale* l = Current();
  if (!l || !l->language || std::string(l->language) != "en") return false;
  const LANGID english = MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US);
  SetThreadUILanguage(english);
  ULONG count = 0;
  SetThreadPreferredUILanguages(MUI_LANGUAGE_NAME, L"en-US\0", &count);
  SetThreadLocale(MAKELCID(english, SORT_DEFAULT));
  return true;
}
inline const bool entered = Enter();

// A UTF-8 text in a code page.
inline std::string InCodePage(const char* utf8, unsigned codePage) {
  wchar_t wide[256];
  const int n = MultiByteToWideChar(CP_UTF8, 0, utf8, -1, wide, 256);
  char bytes[512];
  return std::string(bytes, WideCharToMultiByte(codePage, 0, wide, n - 1, bytes, sizeof bytes, nullptr, nullptr));
}

// The column of texts this process shows: Russian, French, else English.
inline int Column() {
  const Locale* l = Current();
  return l ? l->column : 0;
}

// A table text as a window shows it: through the process's ANSI code page.
inline std::wstring Shown(const char* utf8) {
  const std::string bytes = InCodePage(utf8, GetACP());
  wchar_t wide[512];
  return std::wstring(wide, MultiByteToWideChar(CP_ACP, 0, bytes.data(), static_cast<int>(bytes.size()), wide, 512));
}

inline const Text* Find(int id) {
  for (const Text& t : texts)
    if (t.id == id) return &t;
  for (const Text& t : packageTexts)
    if (t.id == id) return &t;
  return nullptr;
}

// The text of string id in the process's language, as a window shows it.
inline std::wstring Shown(int id) {
  const Text* t = Find(id);
  return t ? Shown(t->text[Column()]) : std::wstring();
}

// The text of string id in the process's language and code page, as
// LoadStr gives it.
inline std::string Loaded(int id) {
  const Text* t = Find(id);
  return t ? InCodePage(t->text[Column()], GetACP()) : "";
}

// What is wrong with a text in the language of column: letters of another
// alphabet (Cyrillic in an English or French text, accented Latin in a
// Russian one, as a text read in the wrong code page shows) or the
// replacement character. Empty when nothing is.
inline std::string Misread(const std::wstring& text, int column) {
  for (const wchar_t c : text) {
    if (c == 0xFFFD) return "a replacement character";
    if (column != 1 && c >= 0x400 && c <= 0x4FF) return "a Cyrillic letter";
    if (column == 1 && c >= 0xC0 && c <= 0x24F) return "an accented Latin letter";
  }
  return "";
}

inline std::wstring FromUtf8(const char* utf8) {
  wchar_t wide[512];
  const int n = MultiByteToWideChar(CP_UTF8, 0, utf8, -1, wide, 512);
  return std::wstring(wide, n > 0 ? n - 1 : 0);
}

}  // namespace string_texts
