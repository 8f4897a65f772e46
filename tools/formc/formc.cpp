// formc INPUT OUTPUT: compiles a text form description into its binary
// stream. On an error it names the input, says what is wrong and leaves no
// output behind.
#include <windows.h>

#include <cstdio>

#include "platform/vcl/core/object_text.h"

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: formc INPUT OUTPUT\n");
    return 2;
  }
  try {
    Classes::TMemoryStream text, binary;
    text.LoadFromFile(argv[1]);
    Classes::ObjectTextToBinary(&text, &binary);
    binary.SaveToFile(argv[2]);
  } catch (const Sysutils::Exception& e) {
    DeleteFileA(argv[2]);
    std::fprintf(stderr, "%s: %s\n", argv[1], e.Message.c_str());
    return 1;
  }
  return 0;
}
