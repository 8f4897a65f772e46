// Core services: change tracking, the module holder with real DLLs, message
// names, code page conversion, file mapping, and the library as a package.
#include <gtest/gtest.h>
#include <process.h>
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <numeric>
#include <set>
#include <sstream>
#include <string>
#include <system_error>
#include <tuple>
#include <vector>

#include "platform/ostrel/oslib.h"
#include "platform/vcl/vcl.h"
#include "velkin/core/fmap.h"
#include "velkin/core/h_chobj.h"
#include "velkin/core/h_module.h"
#include "velkin/core/h_tcvt.h"
#include "velkin/core/msg_str.h"
#include "velkin/core/velkin.h"
#include "velkin/gdi/gdi_temp.h"

namespace {

// Records every notification as "Name:lock count at that moment".
class Recorder : public TObject {
 public:
  explicit Recorder(HChangableObject* subject) : subject_(subject) {
    subject->SetOnChanging(TNotifyEvent(this, &Recorder::Changing));
    subject->SetOnChanged(TNotifyEvent(this, &Recorder::Changed));
    subject->SetOnDeleting(TNotifyEvent(this, &Recorder::Deleting));
    subject->SetOnLock(TNotifyEvent(this, &Recorder::Locked));
    subject->SetOnUnlock(HUnlockEvent(this, &Recorder::Unlocked));
    if (auto* sizable = dynamic_cast<HSizableObject*>(subject))
      sizable->SetOnDirtied(TNotifyEvent(this, &Recorder::Dirtied));
  }
  std::string events;

 private:
  void Add(TObject* sender, const std::string& name) {
    events += (events.empty() ? "" : " ") + name + (sender == subject_ ? "" : "(wrong sender)");
    // The count is unreadable once the object is being torn down.
    if (name != "Deleting") events += ":" + std::to_string(subject_->GetLockCount());
  }
  void Changing(TObject* sender) { Add(sender, "Changing"); }
  void Changed(TObject* sender) { Add(sender, "Changed"); }
  void Deleting(TObject* sender) { Add(sender, "Deleting"); }
  void Locked(TObject* sender) { Add(sender, "Lock"); }
  void Dirtied(TObject* sender) { Add(sender, "Dirtied"); }
  void Unlocked(TObject* sender, bool silent) { Add(sender, silent ? "SilentUnlock" : "Unlock"); }

  HChangableObject* subject_;
};

struct Case {
  bool sizable, lockOnChange;
  const char *script, *events, *state;  // state: lock count, then the flags that are set
};

const Case cases[] = {
    {false, false, "Lock Lock Changed Unlock Unlock", "Lock:1 Lock:2 Unlock:1 Changed:0 Unlock:0", "0 modified"},
    {false, false, "Lock Unlock", "Lock:1 Changed:0 Unlock:0", "0 modified"},
    {false, false, "Lock Changed SilentUnlock", "Lock:1 SilentUnlock:0", "0 modified"},
    {false, false, "Lock Lock SilentUnlock Unlock", "Lock:1 Lock:2 SilentUnlock:1 Changed:0 Unlock:0", "0 modified"},
    {false, false, "Unlock SilentUnlock", "", "0"},
    {false, false, "Lock Changing", "Lock:1", "1 locked"},
    {false, false, "Changing Changed", "Changing:0 Changed:0", "0 modified"},
    {false, true, "Changing Changed", "Changing:0 Lock:1 Unlock:0 Changed:0", "0 modified"},
    {false, true, "Lock Changing Changed Unlock", "Lock:1 Lock:2 Unlock:1 Unlock:0", "0 modified"},
    {true, false, "Lock Unlock", "Lock:1 Dirtied:0 Unlock:0", "0 modified dirty"},
    {true, false, "Lock Unlock Clean", "Lock:1 Dirtied:0 Unlock:0", "0"},
    {true, false, "Lock Lock Dirtied Unlock Unlock", "Lock:1 Lock:2 Unlock:1 Dirtied:0 Unlock:0", "0 modified dirty"},
    {true, false, "Lock Changed Unlock", "Lock:1 Dirtied:0 Unlock:0", "0 modified dirty"},
    {true, false, "Changed", "Changed:0", "0 modified"},
    {true, false, "Lock Dirtied SilentUnlock", "Lock:1 SilentUnlock:0", "0 modified dirty"},
    {true, true, "Changing Dirtied", "Changing:0 Lock:1 Unlock:0 Dirtied:0", "0 modified dirty"},
};

TEST(CoreChangeTracking, NotificationSequences) {
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.sizable ? "sizable: " : "plain: ") + c.script +
                 (c.lockOnChange ? " (lock on change)" : ""));
    HChangableObject plain;
    HSizableObject sizable;
    HChangableObject& o = c.sizable ? sizable : plain;
    o.SetLockOnChange(c.lockOnChange);
    Recorder recorder(&o);
    std::istringstream steps(c.script);
    for (std::string step; steps >> step;) {
      if (step == "Lock") o.Lock();
      if (step == "Unlock") o.Unlock();
      if (step == "SilentUnlock") o.SilentUnlock();
      if (step == "Changing") o.Changing();
      if (step == "Changed") o.Changed();
      if (step == "Dirtied") sizable.Dirtied();
      if (step == "Clean") sizable.SetDirty(false);
    }
    EXPECT_EQ(c.events, recorder.events);
    EXPECT_EQ(c.state, std::to_string(o.GetLockCount()) + (o.GetLocked() ? " locked" : "") +
                           (o.GetModified() ? " modified" : "") + (sizable.GetDirty() ? " dirty" : ""));
    o.SetOnDeleting(nullptr);  // the recorder goes first
  }
}

// A subclass listening to its own deletion through the overridable step.
class Subclass : public HSizableObject {
 public:
  explicit Subclass(std::string* log) : log_(log) {}

 protected:
  void DoDeleting() override {
    *log_ += "DoDeleting " + name_;  // a subclass member: valid only while the whole object exists
    HSizableObject::DoDeleting();
  }

 private:
  std::string* log_;
  std::string name_ = "subclass";
};

TEST(CoreChangeTracking, DestructionFiresDeletingOnce) {
  std::string log;
  Subclass* o = new Subclass(&log);
  Recorder recorder(o);
  delete o;  // reaches the override before any destructor ran
  EXPECT_EQ("DoDeleting subclass", log);
  EXPECT_EQ("Deleting", recorder.events);
}

// The fixture DLLs count its loads and unloads in the environment.
int Counter(const char* name) {
  char value[32] = "0";
  GetEnvironmentVariableA(name, value, sizeof value);
  return std::atoi(value);
}

bool Loaded(const char* name) { return GetModuleHandleA(name) != nullptr; }

TEST(KernelHModule, LoadsByNameCopiesAndFreesEachReference) {
  ASSERT_FALSE(Loaded("kmod_plain.dll"));
  const int attaches = Counter("KMOD_ATTACH"), detaches = Counter("KMOD_DETACH");
  {
    HModule a;
    const char* error = a.Assign("kmod_plain.dll");
    ASSERT_EQ(nullptr, error) << error;
    EXPECT_EQ(GetModuleHandleA("kmod_plain.dll"), a.GetHandle());
    EXPECT_STREQ("kmod_plain.dll", a.GetName().Text());
    HModule b(a);  // a reference of its own
    HModule c;
    c = b;
    EXPECT_EQ(a.GetHandle(), c.GetHandle());
    a.Free();
    b.Free();
    EXPECT_FALSE(a.GetAssigned());
    EXPECT_TRUE(Loaded("kmod_plain.dll")) << "c still holds a reference";

    // Assigning its own handle reloads by path: c held the only reference.
    char path[MAX_PATH * 2];
    const std::string fullPath(path, GetModuleFileNameA(static_cast<HMODULE>(c.GetHandle()), path, sizeof path));
    error = c.Assign(c.GetHandle());
    EXPECT_EQ(nullptr, error) << error;
    EXPECT_EQ(fullPath, c.GetName().Text());
    EXPECT_EQ(attaches + 2, Counter("KMOD_ATTACH"));
    EXPECT_EQ(detaches + 1, Counter("KMOD_DETACH"));
    EXPECT_NE(nullptr, c.Assign(static_cast<void*>(nullptr)));
    EXPECT_TRUE(c.GetAssigned()) << "a refused null handle changes nothing";
  }  // c's destructor frees the last reference
  EXPECT_FALSE(Loaded("kmod_plain.dll"));
  EXPECT_EQ(detaches + 2, Counter("KMOD_DETACH"));
}

class RefusingModule : public HModule {
 public:
  void* seen = nullptr;
  int frees = 0;

 protected:
  const char* DoLoad(void* handle) override { return seen = handle, "refused by test"; }
  void DoFree() override { ++frees; }
};

TEST(KernelHModule, DoLoadVetoLeavesTheReferenceCountAlone) {
  HMODULE own = LoadLibraryA("kmod_plain.dll");
  ASSERT_NE(nullptr, own);
  RefusingModule m;
  EXPECT_STREQ("refused by test", m.Assign("kmod_plain.dll"));
  EXPECT_EQ(static_cast<void*>(own), m.seen) << "DoLoad sees the loaded module";
  EXPECT_FALSE(m.GetAssigned());
  EXPECT_EQ(0, m.frees) << "a refused module is not DoFree'd";
  FreeLibrary(own);
  EXPECT_FALSE(Loaded("kmod_plain.dll")) << "the refused load left a reference behind";
}

TEST(KernelHModule, FallsBackToTheStartupDirectoryAndReportsMissingModules) {
  // With the application directory out of the DLL search, the module is
  // found only through the holder's own second try.
  ASSERT_TRUE(SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_SYSTEM32));
  EXPECT_EQ(nullptr, LoadLibraryA("kmod_sub\\kmod_startup.dll")) << "the search should not find it by itself";
  HModule m;
  const char* error = m.Assign("kmod_sub\\kmod_startup.dll");
  EXPECT_EQ(nullptr, error) << error;
  EXPECT_EQ(std::string(GetStartupDir()) + "kmod_sub\\kmod_startup.dll", m.GetName().Text());
  EXPECT_TRUE(Loaded("kmod_startup.dll"));

  // A failed Assign still lets go of what was held, and leaves the holder empty.
  error = m.Assign("kmod_sub\\kmod_missing.dll");
  ASSERT_NE(nullptr, error);
  EXPECT_NE(std::string::npos, std::string(error).find("(126)")) << "error text: " << error;
  EXPECT_FALSE(m.GetAssigned());
  EXPECT_FALSE(Loaded("kmod_startup.dll"));
  SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_DEFAULT_DIRS);
}

TEST(KernelMsgStr, TableHasItsGroupsInOrderAndNoEntryIsHidden) {
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
  EXPECT_EQ((std::tuple{0xB000ul, 0xB043ul, 0xBC00ul, 0xBC00ul + WM_COMMAND, 0x0ul, 0x8000ul}),
            (std::tuple{WinMsgNames[0].Msg, WinMsgNames[67].Msg, byName["CN_BASE"], byName["CN_COMMAND"],
                        WinMsgNames[92].Msg, byName["WM_APP"]}));
}

TEST(KernelMsgStr, NamesKnownNumbersAndFormatsOthers) {
  // Known numbers: see the table test above.
  const std::pair<unsigned long, const char*> cases[] = {
      {0x1234, "1234"}, {0xABCDE, "ABCDE"}, {0x4, "0004"}, {0xB044, "B044"}, {0xFFFFFFFF, "FFFFFFFF"}};
  for (auto [msg, text] : cases) EXPECT_STREQ(text, WinMsg2Str(msg)) << std::hex << msg;
  // One shared buffer: the next unknown number overwrites the text.
  const char* first = WinMsg2Str(0x1234);
  WinMsg2Str(0x5678);
  EXPECT_STREQ("5678", first);
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
    EXPECT_EQ(c.text + '\0' + std::string(sizeof dst - c.text.size() - 1, '#'), std::string(dst, sizeof dst))
        << c.from << " to " << c.to << ", dstSize " << c.dstSize;
  }
  EXPECT_EQ(nullptr, HTextConvert(1251, 866, "x", nullptr, 10));
  char untouched = '#';
  HTextConvert(1251, 866, "x", &untouched, 0);
  EXPECT_EQ('#', untouched);
}

struct TempFile {
  std::string path;
  ~TempFile() { DeleteFileA(path.c_str()); }
  void Write(const std::string& content) const { std::ofstream(path, std::ios::binary) << content; }
};

std::string Handles(const MapFileInfo& info) {
  return (std::ostringstream() << "file " << info.File << " mapping " << info.Mapping << " view " << info.View).str();
}

TEST(KernelFmap, MapsForReadingAndWritingAndFailuresLeaveAClosedRecord) {
  char dir[MAX_PATH];
  GetTempPathA(sizeof dir, dir);
  const TempFile file{std::string(dir) + "velkin_fmap_" + std::to_string(GetCurrentProcessId()) + ".bin"};
  const std::string closed = Handles(MapFileInfo{});
  MapFileInfo info;
  // A refused call leaves a closed record behind.
  auto access = [&](const std::string& path, uint32_t mode) {
    return std::tuple{MapFileAccess(info, path.empty() ? nullptr : path.c_str(), mode), Handles(info)};
  };
  file.Write("hello, mapping");
  ASSERT_TRUE(MapFileAccess(info, file.path.c_str(), 0));
  EXPECT_EQ((std::tuple{14ul, 0ul}), (std::tuple{info.Size, info.Mode}));
  void* data = MapGetData(info, 14);
  ASSERT_NE(nullptr, data);
  EXPECT_EQ("hello, mapping", std::string(static_cast<char*>(data), 14));
  EXPECT_EQ(info.View, MapGetData(info, 0xFFFFFFFF));
  const MapFileInfo stale = info;
  MapClose(info);
  // An unmapped view is not readable.
  EXPECT_EQ((std::tuple{closed, nullptr, nullptr}),
            (std::tuple{Handles(info), MapGetData(stale, 14), MapGetData(info, 1)}));
  MapClose(info);  // closing twice is harmless

  ASSERT_TRUE(MapFileAccess(info, file.path.c_str(), 1));
  static_cast<char*>(MapGetData(info, 14))[0] = 'J';
  MapClose(info);
  ASSERT_TRUE(MapFileAccess(info, file.path.c_str(), 0));
  EXPECT_EQ("Jello, mapping", std::string(static_cast<char*>(MapGetData(info, 14)), 14)) << "written through";
  MapClose(info);

  // Mode 2: opened for reading (bit 0 clear) but mapped for writing: refused.
  EXPECT_EQ(std::tuple(false, closed), access(file.path, 2));
  EXPECT_TRUE(MapFileAccess(info, file.path.c_str(), 3));
  MapClose(info);

  EXPECT_EQ(std::tuple(false, closed), access(file.path + ".missing", 0));
  EXPECT_EQ(nullptr, MapGetData(info, 0xFFFFFFFF)) << "the unchecked view of a closed record";
  EXPECT_EQ(std::tuple(false, closed), access("", 0));

  file.Write("");
  EXPECT_EQ(std::tuple(false, closed), access(file.path, 0)) << "an empty file cannot be mapped";
  EXPECT_TRUE(DeleteFileA(file.path.c_str())) << "the empty file was left open";
}

// Run once more under each language by CMakeLists.txt.
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

TEST(CoreStrings, TablesOfTheActiveLanguageInItsCodePage) {
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

// The library as a package: descriptor, unit start-up, load log. Runs last:
// it finalizes the units.
namespace fs = std::filesystem;

HMODULE Library() { return GetModuleHandleA("velkin.dll"); }

std::string Join(const std::vector<AnsiString>& names, std::size_t from = 0) {
  std::string s;
  for (std::size_t i = from; i < names.size(); ++i) s += (i > from ? " " : "") + names[i].str();
  return s;
}

TEST(CorePackage, DescriptorAndUnitTableListUnitsInStartUpOrder) {
  const TPackageInfo info = GetPackageInfo(Library());
  EXPECT_EQ("VCL50 OSTREL PELLUM VCLX50", Join(info.Requires));
  // 14 imported units, then the library's own 28 starting with the main unit.
  ASSERT_EQ(42u, info.Contains.size()) << Join(info.Contains);
  EXPECT_EQ(
      "Velkin Xmessagebox Gdi_temp H_bitmap Gdi_utils H_chobj Gdi_object Hinput Hoperation Vcl_utils H_cfield "
      "H_module H_thread Gdi_canvas H_abrush H_extdraw Tc_draw Tc_gsr Msg_str H_tcvt Hclasslist Hmleditor Brannock "
      "Himagelnk H_dblbuf Fmap H_dynarray Hsync",
      Join(info.Contains, 14));

  int count = -1;
  const Sysinit::TUnitEntry* table = Velkin::GetUnitTable(&count);
  std::vector<AnsiString> names;
  for (int i = 0; i < count; ++i) {
    names.push_back(table[i].Name);
    EXPECT_TRUE(table[i].Initialize && table[i].Finalize) << "entry " << i << " " << table[i].Name;
  }
  EXPECT_EQ(Join(info.Contains), Join(names));
  EXPECT_EQ(42u, std::set<AnsiString>(names.begin(), names.end()).size()) << "a unit listed twice: " << Join(names);
}

TEST(CorePackage, EntryPointsRunEachUnitOnce) {
  // Exported undecorated, as the package loader looks them up.
  auto initialize = reinterpret_cast<void (*)()>(GetProcAddress(Library(), "Initialize"));
  auto finalize = reinterpret_cast<void (*)()>(GetProcAddress(Library(), "Finalize"));
  ASSERT_TRUE(initialize && finalize);
  const int up0 = Gdi_temp::StartUpRuns(), down0 = Gdi_temp::ShutDownRuns();

  // Gdi_temp's runs after each call, relative to the start.
  // Each call, then Gdi_temp's start-ups and shut-downs since the start.
  const std::tuple<std::string, int, int> steps[] = {
      {"Initialize", 1, 0}, {"Initialize", 1, 0},  {"Register", 1, 0},     {"Finalize", 1, 0},
      {"Finalize", 1, 1},   {"LoadPackage", 2, 1}, {"UnloadPackage", 2, 2}};
  void* package = nullptr;
  for (int i = 0; i < 7; ++i) {
    const auto& [call, startUps, shutDowns] = steps[i];
    if (call == "Initialize") initialize();
    if (call == "Finalize") finalize();
    if (call == "Register") Velkin::Register();
    if (call == "LoadPackage") package = LoadPackage("velkin.dll");
    if (call == "UnloadPackage") UnloadPackage(Library());
    EXPECT_EQ(std::tuple(startUps, shutDowns),
              std::tuple(Gdi_temp::StartUpRuns() - up0, Gdi_temp::ShutDownRuns() - down0))
        << "after step " << i << " " << call;
  }
  EXPECT_EQ(Library(), package);
  // This program links the library: unloading the package must leave it mapped.
  EXPECT_NE(nullptr, Library());
}

// A fresh folder under the user's temp folder, removed with its contents.
struct TempFolder {
  fs::path path;
  explicit TempFolder(const fs::path& p) : path(p) { fs::create_directories(p); }
  ~TempFolder() { fs::remove_all(path, ignored); }
  std::error_code ignored;
};

std::vector<std::string> ReadLines(const fs::path& file) {
  std::ifstream in(file);
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);) lines.push_back(line.substr(0, line.find_last_not_of('\r') + 1));
  return lines;
}

std::string Quoted(const std::vector<std::string>& lines) {
  return std::accumulate(lines.begin(), lines.end(), std::string(),
                         [](auto s, auto& l) { return s + "\n  [" + l + "]"; });
}

TEST(CoreLoadLog, OneLineForTheHostNoneForThreads) {
  // The host runs from a folder of its own, as an application would.
  const fs::path bin = GetStartupDir();
  TempFolder folder(bin / ("load_" + std::to_string(GetCurrentProcessId())));
  for (const char* dll : {"velkin.dll", "vcl.dll", "ostrel.dll", "pellum.dll"})
    fs::copy_file(bin / dll, folder.path / dll);
  const std::string host = (folder.path / "host.exe").string(), report = (folder.path / "host.txt").string();
  fs::copy_file(bin / "velkin_core_load_host.exe", host);

  ASSERT_EQ(0, _spawnl(_P_WAIT, host.c_str(), "host", ("\"" + report + "\"").c_str(), nullptr)) << host;
  const std::vector<std::string> facts = ReadLines(report);
  ASSERT_EQ(2u, facts.size()) << Quoted(facts);
  char expected[64];
  std::snprintf(expected, sizeof expected, "VELK(%08X) Loaded by: [",
                static_cast<unsigned>(std::strtoull(facts[0].c_str(), nullptr, 16) & 0xFFFFFFFFu));
  const std::string line = std::string(expected) + host + "]";

  // Exactly one line: thread attach and detach wrote nothing.
  const std::vector<std::string> log = ReadLines(facts[1]);
  ASSERT_EQ(1u, log.size()) << facts[1] << Quoted(log);
  // What precedes the text (a time stamp) is the log's own business.
  EXPECT_TRUE(log[0].ends_with(line)) << "whole line: " << log[0] << "\nexpected it to end with: " << line;
}

}  // namespace
