#pragma once
/// \file
/// Names as hash keys, compared as SameText compares them.
#include <cstddef>
#include <string_view>

namespace Classes {

/// Hashes a name with ASCII letters folded to upper case, so that names that
/// SameText finds equal hash alike.
struct TNameHash {
  size_t operator()(std::string_view name) const {
    size_t hash = 14695981039346656037ull;  // FNV-1a
    for (char c : name) hash = (hash ^ Upper(c)) * 1099511628211ull;
    return hash;
  }
  static unsigned char Upper(char c) {
    const auto u = static_cast<unsigned char>(c);
    return u >= 'a' && u <= 'z' ? static_cast<unsigned char>(u - 'a' + 'A') : u;
  }
};

/// Whether two names are equal ignoring the case of ASCII letters.
struct TNameEqual {
  bool operator()(std::string_view a, std::string_view b) const {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i)
      if (TNameHash::Upper(a[i]) != TNameHash::Upper(b[i])) return false;
    return true;
  }
};

}  // namespace Classes
