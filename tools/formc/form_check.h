#pragma once
// What the form compiler checks beyond the syntax: that each property a form
// text sets exists in its object's class and that names given as values
// (enumeration and set members, colours, component references) exist, so
// that a mistake stops the build instead of the program reading its design.
#include <string>
#include <vector>

namespace formc {

// One finding at a line of the text.
struct Finding {
  int line;
  bool error;  // false: a warning
  std::string message;
};

// Checks a well-formed form text (one ObjectTextToBinary accepted) against
// the registered classes. The root object's class is the program's own form
// class, unknown here: it is checked as a TForm. Objects of other classes
// that are not registered are not checked (a warning says so).
std::vector<Finding> CheckForm(const std::string& text);

}  // namespace formc
