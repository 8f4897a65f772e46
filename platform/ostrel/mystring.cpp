#include "platform/ostrel/mystring.h"

char* MyString::SetLength(int length) {
  s_.resize(length > 0 ? static_cast<std::size_t>(length) : 0, '\0');
  return s_.data();
}
