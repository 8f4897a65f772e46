// formc INPUT OUTPUT: compiles a text form description into its binary
// stream, after checking its properties against the framework's classes.
// Problems are written as compilers write them, "INPUT:LINE: message", so
// that build tools and editors lead to the line; on an error no output is
// left behind. The text is UTF-8 (object_text.h says how older texts in a
// code page are read): what formc writes reads the same in a program of any
// code page, whatever the code page formc runs in.
#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "platform/vcl/core/object_text.h"
#include "tools/formc/form_check.h"

namespace {

// "Line 7: unterminated string" as "INPUT:7: unterminated string".
std::string Located(const char* input, const std::string& message) {
  if (message.rfind("Line ", 0) == 0) {
    char* end = nullptr;
    const long line = std::strtol(message.c_str() + 5, &end, 10);
    if (end && end[0] == ':' && end[1] == ' ')
      return std::string(input) + ":" + std::to_string(line) + ": " + (end + 2);
  }
  return std::string(input) + ": " + message;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: formc INPUT OUTPUT\n");
    return 2;
  }
  // Lines end in LF alone, as in the rest of a build's output on Linux.
  _setmode(_fileno(stderr), _O_BINARY);
  const char* input = argv[1];
  const char* output = argv[2];
  try {
    Classes::TMemoryStream text, binary;
    text.LoadFromFile(input);
    Classes::ObjectTextToBinary(&text, &binary);
    int errors = 0;
    const std::string source(static_cast<const char*>(text.GetMemory()), static_cast<size_t>(text.GetSize()));
    for (const formc::Finding& f : formc::CheckForm(source)) {
      std::fprintf(stderr, "%s:%d: %s%s\n", input, f.line, f.error ? "" : "warning: ", f.message.c_str());
      errors += f.error;
    }
    if (errors) {
      DeleteFileA(output);
      return 1;
    }
    binary.SaveToFile(output);
  } catch (const Sysutils::Exception& e) {
    DeleteFileA(output);
    std::fprintf(stderr, "%s\n", Located(input, e.Message.c_str()).c_str());
    return 1;
  }
  return 0;
}
