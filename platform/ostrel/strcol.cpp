#include "platform/ostrel/strcol.h"

#include <string_view>

#include "platform/ostrel/strutil.h"

namespace {

// Where the separator found at `at` ends: a CR LF pair is one line break when
// the set holds both characters, any other separator is one character.
std::size_t SeparatorEnd(std::string_view all, std::size_t at, std::string_view seps) {
  const bool lineBreaks = seps.find('\r') != std::string_view::npos && seps.find('\n') != std::string_view::npos;
  return lineBreaks && all[at] == '\r' && at + 1 < all.size() && all[at + 1] == '\n' ? at + 2 : at + 1;
}

std::string_view Column(const char* text, int column, const char* separators) {
  if (!text || !*text || column < 1) return {};
  const std::string_view all(text);
  const std::string_view seps(separators ? separators : "");
  std::size_t begin = 0;
  for (int i = 1; i < column; ++i) {
    const std::size_t end = all.find_first_of(seps, begin);
    if (end == std::string_view::npos) return {};
    begin = SeparatorEnd(all, end, seps);
  }
  const std::size_t end = all.find_first_of(seps, begin);
  return all.substr(begin, end == std::string_view::npos ? std::string_view::npos : end - begin);
}

}  // namespace

int StrColCount(const char* text, const char* separators) {
  if (!text || !*text) return 0;
  const std::string_view all(text);
  const std::string_view seps(separators ? separators : "");
  if (seps.empty()) return 1;
  int count = 1;
  for (std::size_t at = all.find_first_of(seps); at != std::string_view::npos;
       at = all.find_first_of(seps, SeparatorEnd(all, at, seps)))
    ++count;
  return count;
}

MyString StrGetCol(const char* text, int column, const char* separators) {
  return MyString(Column(text, column, separators));
}

char* StrGetCol(const char* text, int column, const char* separators, char* buffer, int size) {
  if (!buffer || size <= 0) return buffer;
  const std::string_view col = Column(text, column, separators);
  const std::size_t n =
      col.size() < static_cast<std::size_t>(size - 1) ? col.size() : static_cast<std::size_t>(size - 1);
  col.copy(buffer, n);
  buffer[n] = '\0';
  return buffer;
}
