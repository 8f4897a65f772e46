#include "tools/formc/form_check.h"

#include <cctype>
#include <map>

#include "platform/vcl/core/class_registry.h"
#include "platform/vcl/core/string_list.h"
#include "platform/vcl/core/typinfo.h"
#include "platform/vcl/forms/forms.h"

namespace formc {

namespace {

using System::TMetaClass;
using Typinfo::TPropInfo;
using Typinfo::TTypeInfo;

std::string Lower(std::string s) {
  for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return s;
}

// The text's lines, each with its number and whether it starts inside a
// bracket left open above (the items of a list, a set or a byte block).
struct Line {
  int number;
  bool continued;
  std::string text;
};

std::vector<Line> Lines(const std::string& text) {
  std::vector<Line> lines;
  int depth = 0;
  size_t at = 0;
  for (int number = 1; at <= text.size(); ++number) {
    size_t end = text.find_first_of("\r\n", at);
    if (end == std::string::npos) end = text.size();
    const std::string line = text.substr(at, end - at);
    lines.push_back({number, depth > 0, line});
    for (size_t i = 0; i < line.size(); ++i) {
      const char c = line[i];
      if (c == '\'') {
        for (++i; i < line.size() && line[i] != '\''; ++i) {
        }
      } else if (c == '(' || c == '[' || c == '{') {
        ++depth;
      } else if ((c == ')' || c == ']' || c == '}') && depth > 0) {
        --depth;
      }
    }
    // CR LF, LF and a lone CR each end a line, as the compiler counts them.
    at = end + (text.compare(end, 2, "\r\n") == 0 ? 2 : 1);
  }
  return lines;
}

std::string Members(const TTypeInfo* type) {
  std::string list;
  for (const auto& name : type->Names) list += (list.empty() ? "" : ", ") + std::string(name.c_str());
  return list;
}

bool IsIdentStart(char c) { return std::isalpha(static_cast<unsigned char>(c)) || c == '_'; }
bool IsIdentChar(char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == '_'; }

// A line read from left to right: identifiers, single characters, blanks.
class Cursor {
 public:
  explicit Cursor(const std::string& text) : text_(text) {}
  void SkipBlanks() {
    while (at_ < text_.size() && (text_[at_] == ' ' || text_[at_] == '\t')) ++at_;
  }
  // The identifier here ("" when there is none), after blanks.
  std::string Ident() {
    SkipBlanks();
    const size_t start = at_;
    if (at_ < text_.size() && IsIdentStart(text_[at_]))
      while (at_ < text_.size() && IsIdentChar(text_[at_])) ++at_;
    return text_.substr(start, at_ - start);
  }
  // Whether c is here, after blanks; taken when it is.
  bool Take(char c) {
    SkipBlanks();
    if (at_ >= text_.size() || text_[at_] != c) return false;
    ++at_;
    return true;
  }
  bool AtEnd() {
    SkipBlanks();
    return at_ >= text_.size();
  }
  // What is left, without blanks at either end.
  std::string Rest() {
    SkipBlanks();
    std::string rest = text_.substr(at_);
    while (!rest.empty() && (rest.back() == ' ' || rest.back() == '\t')) rest.pop_back();
    return rest;
  }

 private:
  const std::string& text_;
  size_t at_ = 0;
};

// The identifier a value starts with ("" when it starts otherwise).
std::string LeadingIdent(const std::string& value) { return Cursor(value).Ident(); }

class Checker {
 public:
  std::vector<Finding> Run(const std::string& text) {
    for (const Line& line : Lines(text)) {
      line_ = line.number;
      if (line.continued) continue;
      Cursor cursor(line.text);
      const std::string word = cursor.Ident(), head = Lower(word);
      if (head == "object" || head == "inherited" || head == "inline") {
        // "object Name: TClass", or "object TClass" for one without a name.
        const std::string first = cursor.Ident();
        const std::string second = cursor.Take(':') ? cursor.Ident() : "";
        if (!first.empty()) Enter(second.empty() ? "" : first, second.empty() ? first : second);
      } else if (head == "end" && cursor.AtEnd()) {
        if (!scopes_.empty()) scopes_.pop_back();
      } else if (!word.empty() && !scopes_.empty()) {
        std::string path = word;
        while (cursor.Take('.')) path += "." + cursor.Ident();
        if (cursor.Take('=')) Property(path, cursor.Rest());
      }
    }
    for (const auto& [name, line] : references_)
      if (!names_.count(Lower(name))) Add(line, true, "no component named " + name + " in this form");
    return findings_;
  }

 private:
  struct Scope {
    const TMetaClass* cls;  // null: not checked
    std::string className;
  };

  void Add(int line, bool error, const std::string& message) { findings_.push_back({line, error, message}); }

  void Enter(const std::string& name, const std::string& className) {
    if (!name.empty() && !names_.emplace(Lower(name), line_).second)
      Add(line_, true, "a component named " + name + " already exists in this form");
    const TMetaClass* cls = Classes::GetClass(className.c_str());
    if (!cls && scopes_.empty()) cls = Forms::TForm::StaticClass();
    if (!cls) Add(line_, false, className + " is not a class of the framework; its properties are not checked");
    scopes_.push_back({cls, className});
  }

  void Property(const std::string& path, const std::string& value) {
    const Scope& scope = scopes_.back();
    if (!scope.cls) return;
    const TMetaClass* cls = scope.cls;
    const TPropInfo* prop = nullptr;
    std::string rest = path;
    for (size_t dot; (dot = rest.find('.')) != std::string::npos; rest = rest.substr(dot + 1)) {
      prop = Typinfo::GetPropInfo(cls, rest.substr(0, dot).c_str());
      if (!prop || prop->Kind() != Typinfo::tkClass || !prop->PropType()->ClassType) return Missing(scope, path);
      cls = prop->PropType()->ClassType();
    }
    prop = Typinfo::GetPropInfo(cls, rest.c_str());
    // The one property a framework class defines itself: a string list's lines.
    if (!prop && cls->InheritsFrom(Classes::TStrings::StaticClass()) && Lower(rest) == "strings") return;
    if (!prop) return Missing(scope, path);
    Value(path, prop, value);
  }

  void Missing(const Scope& scope, const std::string& path) {
    Add(line_, true, scope.className + " has no property " + path);
  }

  // The value's names, as the reader takes them.
  void Value(const std::string& path, const TPropInfo* prop, const std::string& value) {
    const TTypeInfo* type = prop->PropType();
    const std::string ident = LeadingIdent(value);
    switch (prop->Kind()) {
      case Typinfo::tkInteger:
        if (!ident.empty()) {
          long long ignored = 0;
          if (!type->IdentToInt)
            Add(line_, true, path + " takes a number, not " + ident);
          else if (!type->IdentToInt(ident.c_str(), ignored))
            Add(line_, true, ident + " is not a name of a " + type->Name + " value");
        }
        break;
      case Typinfo::tkEnumeration:
        if (ident.empty())
          Add(line_, true, path + " takes one of " + Members(type));
        else if (Typinfo::GetEnumValue(type, ident.c_str()) < 0)
          Add(line_, true, ident + " is not a " + type->Name + ": " + Members(type));
        break;
      case Typinfo::tkSet:
        Set(path, type->CompType, value);
        break;
      case Typinfo::tkLString:
        if (!ident.empty()) Add(line_, true, path + " takes a string, not " + ident);
        break;
      case Typinfo::tkClass:
        if (!ident.empty() && Lower(ident) != "nil") references_.emplace_back(ident, line_);
        break;
      default:
        break;
    }
  }

  void Set(const std::string& path, const TTypeInfo* element, const std::string& value) {
    if (value.empty() || value[0] != '[') {
      Add(line_, true, path + " takes a set: [" + Members(element) + "]");
      return;
    }
    Cursor cursor(value);
    cursor.Take('[');
    for (std::string name = cursor.Ident(); !name.empty(); name = cursor.Take(',') ? cursor.Ident() : "") {
      const int v = Typinfo::GetEnumValue(element, name.c_str());
      if (v < 0 || v >= 64) Add(line_, true, name + " is not a " + element->Name + ": " + Members(element));
    }
  }

  int line_ = 0;
  std::vector<Scope> scopes_;
  std::map<std::string, int> names_;
  std::vector<std::pair<std::string, int>> references_;
  std::vector<Finding> findings_;
};

}  // namespace

std::vector<Finding> CheckForm(const std::string& text) {
  // A UTF-8 byte order mark is not part of the first line's words.
  if (text.compare(0, 3, "\xEF\xBB\xBF") == 0) return Checker().Run(text.substr(3));
  return Checker().Run(text);
}

}  // namespace formc
