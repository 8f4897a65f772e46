#pragma once
// Child-process helpers shared by the package tests.
#include <windows.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>
#include <vector>

namespace velkin_child {

// Folder of the running test program (the build's bin/, with every DLL).
inline std::filesystem::path BinDir() {
  char path[MAX_PATH * 2];
  DWORD n = GetModuleFileNameA(nullptr, path, sizeof path);
  return std::filesystem::path(std::string(path, n)).parent_path();
}

// A fresh folder under the user's temp folder, removed with its contents.
class TempFolder {
 public:
  explicit TempFolder(const char* prefix) {
    char temp[MAX_PATH + 1], longTemp[MAX_PATH + 1];
    GetTempPathA(sizeof temp, temp);
    // The long form: that is how a program started from here sees its path.
    if (!GetLongPathNameA(temp, longTemp, sizeof longTemp)) std::strcpy(longTemp, temp);
    path_ = std::string(longTemp) + prefix + "_" + std::to_string(GetCurrentProcessId()) + "_" +
            std::to_string(GetTickCount64());
    std::filesystem::create_directories(path_);
  }
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  // Path of a file in the folder, with a backslash as Windows programs print it.
  std::string File(const std::string& name) const { return path_ + "\\" + name; }

 private:
  std::string path_;
};

inline std::string ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

// Lines without their CR LF / LF endings; a final empty line is dropped.
inline std::vector<std::string> ReadLines(const std::string& path) {
  std::vector<std::string> lines;
  const std::string text = ReadFile(path);
  std::size_t at = 0;
  while (at < text.size()) {
    std::size_t end = text.find('\n', at);
    if (end == std::string::npos) end = text.size();
    std::string line = text.substr(at, end - at);
    if (!line.empty() && line.back() == '\r') line.pop_back();
    lines.push_back(line);
    at = end + 1;
  }
  return lines;
}

// Runs a program and waits for it; its exit code, or -1 when it did not start.
inline int RunProgram(const std::string& exe, const std::string& arguments) {
  std::string command = "\"" + exe + "\" " + arguments;
  STARTUPINFOA si{};
  si.cb = sizeof si;
  PROCESS_INFORMATION pi{};
  if (!CreateProcessA(exe.c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &si, &pi)) return -1;
  WaitForSingleObject(pi.hProcess, INFINITE);
  DWORD code = 0;
  GetExitCodeProcess(pi.hProcess, &code);
  CloseHandle(pi.hThread);
  CloseHandle(pi.hProcess);
  return static_cast<int>(code);
}

// Wine's loader, the Unix program that starts Windows programs; empty when not
// running under Wine.
inline std::string WineLoader() {
  char path[MAX_PATH + 1];
  DWORD n = GetEnvironmentVariableA("WINELOADER", path, sizeof path);
  return n && n < sizeof path ? std::string(path, n) : std::string();
}

// Starts exe with arguments under the Unix locale LC_ALL=locale and waits until
// it signals the named event doneEvent (the child opens it by name). Returns
// an empty string on success, else what went wrong.
//
// Under Wine a Windows program started by CreateProcess takes its code page and
// UI language from the Unix environment of its parent, not from the
// environment block it is given (LC_ALL there only reaches
// GetEnvironmentVariable). A Unix program started by CreateProcess does get the
// block as its Unix environment, so the child is started through Wine's loader
// with the Windows program as its argument. That start returns no process
// handle: the child reports completion through the event instead.
inline std::string RunUnderLocale(const std::string& exe, const std::string& arguments, const std::string& locale,
                                  const std::string& doneEvent) {
  const std::string loader = WineLoader();
  if (loader.empty()) return "not running under Wine (no WINELOADER)";
  std::string application = "Z:" + loader;  // Wine maps the Unix root to Z:
  for (char& c : application)
    if (c == '/') c = '\\';

  std::string block;
  if (LPCH current = GetEnvironmentStringsA()) {
    for (LPCH p = current; *p; p += std::strlen(p) + 1)
      if (_strnicmp(p, "LC_ALL=", 7) != 0) block.append(p, std::strlen(p) + 1);
    FreeEnvironmentStringsA(current);
  }
  block += "LC_ALL=" + locale;
  block.append(2, '\0');

  HANDLE done = CreateEventA(nullptr, TRUE, FALSE, doneEvent.c_str());
  if (!done) return "cannot create the event " + doneEvent;
  std::string command = "\"" + loader + "\" \"" + exe + "\" " + arguments;
  STARTUPINFOA si{};
  si.cb = sizeof si;
  PROCESS_INFORMATION pi{};
  std::string result;
  if (!CreateProcessA(application.c_str(), command.data(), nullptr, nullptr, FALSE, 0, block.data(), nullptr, &si,
                      &pi)) {
    result = "cannot start " + command + ": error " + std::to_string(GetLastError());
  } else {
    if (pi.hThread) CloseHandle(pi.hThread);
    if (pi.hProcess) CloseHandle(pi.hProcess);
    // A guard against a child that died without reporting, not a time limit
    // on the work: the child needs well under a second.
    if (WaitForSingleObject(done, 60000) != WAIT_OBJECT_0) result = "the child did not report: " + command;
  }
  CloseHandle(done);
  return result;
}

}  // namespace velkin_child
