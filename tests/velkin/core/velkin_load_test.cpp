#include <gtest/gtest.h>

#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/velkin/core/velkin_child.h"

namespace {

using namespace velkin_child;

std::string JoinLines(const std::vector<std::string>& lines) {
  std::string s;
  for (const auto& l : lines) s += "\n  [" + l + "]";
  return s;
}

TEST(CoreLoadLog, OneLineNamingTheHostAndNoneForThreads) {
  // The host runs from a folder of its own, as an application would.
  TempFolder folder("velkin_load");
  const auto bin = BinDir();
  for (const char* dll : {"velkin.dll", "vcl.dll", "ostrel.dll", "pellum.dll"})
    std::filesystem::copy_file(bin / dll, folder.File(dll));
  const std::string host = folder.File("host.exe");
  std::filesystem::copy_file(bin / "velkin_core_load_host.exe", host);

  const std::string report = folder.File("host.txt");
  ASSERT_EQ(0, RunProgram(host, "\"" + report + "\"")) << host;
  const std::vector<std::string> facts = ReadLines(report);
  ASSERT_EQ(2u, facts.size()) << JoinLines(facts);
  const unsigned long long handle = std::strtoull(facts[0].c_str(), nullptr, 16);
  const std::string logPath = facts[1];

  char expected[64];
  std::snprintf(expected, sizeof expected, "VELK(%08X) Loaded by: [", static_cast<unsigned>(handle & 0xFFFFFFFFu));
  const std::string line = std::string(expected) + host + "]";

  // Exactly one line: thread attach and detach wrote nothing.
  const std::vector<std::string> log = ReadLines(logPath);
  ASSERT_EQ(1u, log.size()) << logPath << JoinLines(log);
  // What precedes the text (a time stamp) is the log's own business.
  ASSERT_GE(log[0].size(), line.size());
  EXPECT_EQ(line, log[0].substr(log[0].size() - line.size())) << "whole line: " << log[0];
}

}  // namespace
