#include "platform/vcl/core/object_text.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "platform/vcl/core/filer.h"
#include "platform/vcl/core/text_units_impl.h"

namespace Classes {

VCL_CLASS_IMPL(EParserError, Sysutils::Exception)

namespace {

constexpr int kLineWidth = 64;    // string pieces and hex digits a line
constexpr size_t kMaxName = 255;  // a name is a short string in the binary form

// One more level of nesting for as long as it lives; refuse() raises when
// there would be too many.
template <class Refuse>
class Level {
 public:
  Level(int& depth, Refuse refuse) : depth_(depth) {
    if (depth_ >= MaxStreamNesting) refuse();
    ++depth_;
  }
  ~Level() { --depth_; }
  Level(const Level&) = delete;
  Level& operator=(const Level&) = delete;

 private:
  int& depth_;
};

std::string TooDeep(const char* what) {
  return std::string(what) + " nested deeper than " + std::to_string(MaxStreamNesting) + " levels";
}

// ---- binary to text ----

class TextWriter {
 public:
  TextWriter(TStream* input) : reader_(input) {}

  std::string Convert() {
    reader_.ReadSignature();
    Object(0);
    return out_;
  }

 private:
  void Line(int indent, const std::string& text) {
    out_ += std::string(static_cast<size_t>(indent), ' ') + text + "\r\n";
  }

  void Object(int indent) {
    const Level level(objects_, [] { throw EReadError(TooDeep("Components").c_str()); });
    unsigned char first = 0;
    Stream()->ReadBuffer(&first, 1);
    std::string keyword = "object";
    std::string position;
    if ((first & 0xF0) == 0xF0) {
      if (first & 0x01) keyword = "inherited";
      if (first & 0x04) keyword = "inline";
      if (first & 0x02) position = " [" + std::to_string(reader_.ReadInteger()) + "]";
    } else {
      Stream()->Seek(-1, soCurrent);
    }
    const std::string cls = reader_.ReadStr().str();
    const std::string name = reader_.ReadStr().str();
    Line(indent, keyword + " " + (name.empty() ? cls : name + ": " + cls) + position);
    while (!reader_.EndOfList()) {
      const std::string prop = reader_.ReadStr().str();
      const std::string head = std::string(static_cast<size_t>(indent + 2), ' ') + prop + " = ";
      Value(head, indent + 2);
    }
    reader_.ReadListEnd();
    while (!reader_.EndOfList()) Object(indent + 2);
    reader_.ReadListEnd();
    Line(indent, "end");
  }

  // Writes one value after head (the text already on its line).
  void Value(const std::string& head, int indent) {
    switch (reader_.NextValue()) {
      case vaList: {
        // Each item on a line of its own, the parenthesis after the last.
        reader_.ReadListBegin();
        const Level level(lists_, [] { throw EReadError(TooDeep("Lists").c_str()); });
        out_ += head + "(";
        while (!reader_.EndOfList()) {
          out_ += "\r\n";
          std::string item(static_cast<size_t>(indent + 2), ' ');
          Value(item, indent + 2);
          out_.resize(out_.size() - 2);
        }
        reader_.ReadListEnd();
        out_ += ")\r\n";
        return;
      }
      case vaInt8:
      case vaInt16:
      case vaInt32:
      case vaInt64:
        out_ += head + std::to_string(reader_.ReadInt64()) + "\r\n";
        return;
      case vaExtended:
      case vaSingle:
      case vaDouble:
      case vaDate:
      case vaCurrency:
        out_ += head + Float(reader_.ReadFloat()) + "\r\n";
        return;
      case vaString:
      case vaLString:
      case vaWString:
      case vaUTF8String:
        String(head, indent, reader_.ReadWideString());
        return;
      case vaIdent:
      case vaFalse:
      case vaTrue:
      case vaNil:
      case vaNull:
        out_ += head + reader_.ReadIdent().str() + "\r\n";
        return;
      case vaSet: {
        reader_.ReadValue();
        std::string items;
        for (AnsiString item; !(item = reader_.ReadStr()).IsEmpty();) items += (items.empty() ? "" : ", ") + item.str();
        out_ += head + "[" + items + "]\r\n";
        return;
      }
      case vaBinary: {
        const std::vector<unsigned char> bytes = reader_.ReadBinary();
        static const char hex[] = "0123456789ABCDEF";
        std::string digits;
        for (unsigned char b : bytes) digits += std::string{hex[b >> 4], hex[b & 15]};
        out_ += head + "{";
        for (size_t i = 0; i < digits.size(); i += kLineWidth)
          out_ += "\r\n" + std::string(static_cast<size_t>(indent + 2), ' ') + digits.substr(i, kLineWidth);
        out_ += "}\r\n";
        return;
      }
      default:
        throw EReadError("Invalid stream format");
    }
  }

  // Quoted runs and #nnn characters, split into pieces joined by + on
  // lines of their own when long. Letters beyond ASCII go into the quotes as
  // UTF-8; controls and surrogates standing alone, which no editor shows, as
  // codes.
  void String(const std::string& head, int indent, const std::wstring& units) {
    std::vector<std::string> pieces(1);
    bool quoted = false;
    int width = 0;
    for (size_t i = 0; i < units.size(); ++i) {
      if (width >= kLineWidth) {
        if (quoted) pieces.back() += '\'';
        quoted = false;
        pieces.emplace_back();
        width = 0;
      }
      const unsigned u = units[i];
      const bool pair =
          u >= 0xD800 && u <= 0xDBFF && i + 1 < units.size() && units[i + 1] >= 0xDC00 && units[i + 1] <= 0xDFFF;
      const size_t count = pair ? 2 : 1;
      std::string utf8;
      if ((u >= 32 && u <= 126) || (u >= 0xA0 && TextUnits::ToUtf8(units.substr(i, count), utf8))) {
        if (!quoted) pieces.back() += '\'';
        quoted = true;
        if (u == '\'')
          pieces.back() += "''";
        else if (u < 0x80)
          pieces.back() += static_cast<char>(u);
        else
          pieces.back() += utf8;
      } else {
        if (quoted) pieces.back() += '\'';
        quoted = false;
        pieces.back() += "#" + std::to_string(u);
      }
      i += count - 1;
      ++width;
    }
    if (quoted) pieces.back() += '\'';
    if (pieces.back().empty()) pieces.back() = "''";
    if (pieces.size() == 1) {
      out_ += head + pieces[0] + "\r\n";
      return;
    }
    out_ += head.substr(0, head.find_last_not_of(' ') + 1) + "\r\n";
    for (size_t i = 0; i < pieces.size(); ++i) Line(indent + 2, pieces[i] + (i + 1 < pieces.size() ? " +" : ""));
  }

  // The shortest text that reads back as the same value, always with a
  // decimal point so that it reads back as a float.
  static std::string Float(long double v) {
    if (std::isnan(v) || std::isinf(v)) throw EReadError("Invalid property value");
    char text[64];
    for (int digits = 1; digits <= 21; ++digits) {
      std::snprintf(text, sizeof text, "%.*Lg", digits, v);
      if (std::strtold(text, nullptr) == v) break;
    }
    std::string s = text;
    if (s.find_first_of(".eE") == std::string::npos) s += ".0";
    return s;
  }

  TStream* Stream() { return reader_.GetStream(); }

  TReader reader_;
  std::string out_;
  int objects_ = 0, lists_ = 0;  // nesting of what is being converted
};

// ---- text to binary ----

class TextReader {
 public:
  TextReader(std::string text, TStream* output)
      : text_(std::move(text)), utf8_(TextUnits::IsUtf8(text_)), writer_(output) {
    if (text_.compare(0, 3, "\xEF\xBB\xBF") == 0) pos_ = 3;  // the UTF-8 byte order mark
  }

  void Convert() {
    writer_.WriteSignature();
    Next();
    Object();
    if (token_ != kEnd) Error("end of text expected but " + Describe() + " found");
  }

 private:
  enum Token { kEnd, kIdent, kInteger, kFloat, kString, kSymbol };

  [[noreturn]] void Error(const std::string& what) const {
    throw EParserError(("Line " + std::to_string(tokenLine_) + ": " + what).c_str());
  }
  std::string Describe() const {
    switch (token_) {
      case kEnd:
        return "end of text";
      case kString:
        return "a string";
      case kSymbol:
        if (const auto c = static_cast<unsigned char>(tokenText_[0]); c < 32 || c > 126)
          return "character #" + std::to_string(c);
        return "'" + tokenText_ + "'";
      default:
        return "'" + tokenText_ + "'";
    }
  }
  bool Is(char symbol) const { return token_ == kSymbol && tokenText_[0] == symbol; }
  bool IsIdent(const char* word) const { return token_ == kIdent && Sysutils::SameText(tokenText_.c_str(), word); }
  void Expect(char symbol) {
    if (!Is(symbol)) Error(std::string("'") + symbol + "' expected but " + Describe() + " found");
    Next();
  }
  std::string ExpectIdent(const char* what) {
    if (token_ != kIdent) Error(std::string(what) + " expected but " + Describe() + " found");
    std::string s = tokenText_;
    Next();
    return s;
  }

  // The next token: identifiers (dotted names too), numbers, strings of
  // quoted runs and #nnn characters, single-character symbols.
  void Next() {
    while (pos_ < text_.size() &&
           (text_[pos_] == ' ' || text_[pos_] == '\t' || text_[pos_] == '\r' || text_[pos_] == '\n')) {
      // CR LF, LF and a lone CR each end a line.
      if (text_[pos_] == '\n' || (text_[pos_] == '\r' && (pos_ + 1 >= text_.size() || text_[pos_ + 1] != '\n')))
        ++line_;
      ++pos_;
    }
    tokenLine_ = line_;
    tokenText_.clear();
    units_.clear();
    if (pos_ >= text_.size()) {
      token_ = kEnd;
      return;
    }
    const char c = text_[pos_];
    if (std::isalpha(static_cast<unsigned char>(c)) || c == '_') {
      while (pos_ < text_.size() &&
             (std::isalnum(static_cast<unsigned char>(text_[pos_])) || text_[pos_] == '_' || text_[pos_] == '.'))
        tokenText_ += text_[pos_++];
      token_ = kIdent;
      if (tokenText_.size() > kMaxName)
        Error("name too long: " + tokenText_.substr(0, 32) + "... (" + std::to_string(tokenText_.size()) +
              " characters, at most " + std::to_string(kMaxName) + ")");
    } else if (std::isdigit(static_cast<unsigned char>(c)) || c == '$' ||
               ((c == '-' || c == '+') && pos_ + 1 < text_.size() &&
                (std::isdigit(static_cast<unsigned char>(text_[pos_ + 1])) || text_[pos_ + 1] == '$'))) {
      token_ = kInteger;
      if (c == '-' || c == '+') tokenText_ += text_[pos_++];
      if (text_[pos_] == '$') {
        tokenText_ += text_[pos_++];
        while (pos_ < text_.size() && std::isxdigit(static_cast<unsigned char>(text_[pos_])))
          tokenText_ += text_[pos_++];
        if (tokenText_.back() == '$') Error("hexadecimal digits expected after $");
        return;
      }
      while (pos_ < text_.size()) {
        const char d = text_[pos_];
        if (std::isdigit(static_cast<unsigned char>(d))) {
        } else if (d == '.' || d == 'e' || d == 'E') {
          token_ = kFloat;
        } else if ((d == '-' || d == '+') && (tokenText_.back() == 'e' || tokenText_.back() == 'E')) {
        } else {
          break;
        }
        tokenText_ += text_[pos_++];
      }
    } else if (c == '\'' || c == '#') {
      token_ = kString;
      ReadString();
    } else {
      token_ = kSymbol;
      tokenText_ = std::string(1, c);
      ++pos_;
    }
  }

  // 'quoted' and #nnn pieces following each other, into units_; the bytes
  // of a quoted piece are UTF-8, or the code page's in a text that is not.
  void ReadString() {
    while (pos_ < text_.size() && (text_[pos_] == '\'' || text_[pos_] == '#')) {
      if (text_[pos_] == '#') {
        ++pos_;
        unsigned long v = 0;
        size_t digits = 0;
        if (pos_ < text_.size() && text_[pos_] == '$') {
          ++pos_;
          while (pos_ < text_.size() && std::isxdigit(static_cast<unsigned char>(text_[pos_])) && digits < 8)
            v = v * 16 + static_cast<unsigned long>(std::stoi(std::string(1, text_[pos_++]), nullptr, 16)), ++digits;
        } else {
          while (pos_ < text_.size() && std::isdigit(static_cast<unsigned char>(text_[pos_])) && digits < 8)
            v = v * 10 + static_cast<unsigned long>(text_[pos_++] - '0'), ++digits;
        }
        if (!digits || v > 0xFFFF) Error("a character code from 0 to 65535 expected after #");
        units_ += static_cast<wchar_t>(v);
        continue;
      }
      ++pos_;
      std::string bytes;
      for (;;) {
        if (pos_ >= text_.size() || text_[pos_] == '\n' || text_[pos_] == '\r') Error("unterminated string");
        if (text_[pos_] == '\'') {
          if (pos_ + 1 < text_.size() && text_[pos_ + 1] == '\'') {
            bytes += '\'';
            pos_ += 2;
            continue;
          }
          ++pos_;
          break;
        }
        bytes += text_[pos_++];
      }
      units_ += utf8_ ? TextUnits::FromUtf8(bytes) : TextUnits::FromAnsi(bytes);
    }
  }

  void Object() {
    if (!IsIdent("object") && !IsIdent("inherited") && !IsIdent("inline"))
      Error("'object' expected but " + Describe() + " found");
    const Level level(objects_, [this] { Error(TooDeep("objects")); });
    unsigned char flags = IsIdent("inherited") ? 0x01 : IsIdent("inline") ? 0x04 : 0;
    Next();
    std::string name = ExpectIdent("a name or class");
    std::string cls;
    if (Is(':')) {
      Next();
      cls = ExpectIdent("a class name");
    } else {
      cls = name;
      name.clear();
    }
    long long position = 0;
    if (Is('[')) {
      Next();
      if (token_ != kInteger) Error("a position expected but " + Describe() + " found");
      position = Integer();
      flags |= 0x02;
      Next();
      Expect(']');
    }
    if (flags) {
      const unsigned char prefix = 0xF0 | flags;
      writer_.GetStream()->WriteBuffer(&prefix, 1);
      if (flags & 0x02) writer_.WriteInteger(position);
    }
    writer_.WriteStr(cls.c_str());
    writer_.WriteStr(name.c_str());
    while (token_ == kIdent && !IsIdent("end") && !IsObjectStart()) {
      const std::string prop = tokenText_;
      Next();
      Expect('=');
      writer_.WriteStr(prop.c_str());
      Value();
    }
    writer_.WriteListEnd();
    while (IsObjectStart()) Object();
    writer_.WriteListEnd();
    if (!IsIdent("end")) Error("'end' expected but " + Describe() + " found");
    Next();
  }

  // "object Name" starts a nested object; "object = 1" would be a property.
  bool IsObjectStart() {
    if (!IsIdent("object") && !IsIdent("inherited") && !IsIdent("inline")) return false;
    size_t p = pos_;
    while (p < text_.size() && (text_[p] == ' ' || text_[p] == '\t')) ++p;
    return p >= text_.size() || text_[p] != '=';
  }

  long long Integer() const {
    errno = 0;
    const bool hex = tokenText_.find('$') != std::string::npos;
    const bool negative = tokenText_[0] == '-';
    const std::string digits = tokenText_.substr(tokenText_.find_first_not_of("+-$"));
    unsigned long long v = std::strtoull(digits.c_str(), nullptr, hex ? 16 : 10);
    if (errno == ERANGE || (!hex && v > 0x7FFFFFFFFFFFFFFFULL + (negative ? 1 : 0)))
      Error("integer " + tokenText_ + " out of range");
    return negative ? static_cast<long long>(0 - v) : static_cast<long long>(v);
  }

  void Value() {
    switch (token_) {
      case kInteger:
        writer_.WriteInteger(Integer());
        Next();
        return;
      case kFloat: {
        char* end = nullptr;
        const long double v = std::strtold(tokenText_.c_str(), &end);
        if (!end || *end) Error("'" + tokenText_ + "' is not a number");
        writer_.WriteFloat(v);
        Next();
        return;
      }
      case kString:
        StringValue();
        return;
      case kIdent:
        if (IsIdent("end")) Error("a value expected but 'end' found");
        writer_.WriteIdent(tokenText_.c_str());
        Next();
        return;
      case kEnd:
        Error("a value expected but end of text found");
      case kSymbol:
        break;
    }
    if (Is('[')) {
      Next();
      writer_.WriteValue(vaSet);
      while (!Is(']')) {
        writer_.WriteStr(ExpectIdent("a set element").c_str());
        if (Is(',')) {
          Next();
          if (Is(']')) Error("a set element expected but ']' found");
        } else if (!Is(']')) {
          Error("',' or ']' expected but " + Describe() + " found");
        }
      }
      writer_.WriteStr("");
      Next();
    } else if (Is('(')) {
      const Level level(lists_, [this] { Error(TooDeep("lists")); });
      Next();
      writer_.WriteListBegin();
      while (!Is(')')) Value();
      writer_.WriteListEnd();
      Next();
    } else if (Is('{')) {
      std::string digits;
      for (; pos_ < text_.size() && text_[pos_] != '}'; ++pos_) {
        const char d = text_[pos_];
        if (d == '\n') ++line_;
        if (std::isxdigit(static_cast<unsigned char>(d)))
          digits += d;
        else if (d != ' ' && d != '\r' && d != '\n' && d != '\t')
          Error(std::string("a hexadecimal digit expected but '") + d + "' found");
      }
      if (pos_ >= text_.size()) Error("'}' expected but end of text found");
      if (digits.size() % 2) Error("an odd number of hexadecimal digits");
      ++pos_;
      std::vector<unsigned char> bytes;
      for (size_t i = 0; i < digits.size(); i += 2)
        bytes.push_back(static_cast<unsigned char>(std::stoi(digits.substr(i, 2), nullptr, 16)));
      writer_.WriteBinary(bytes.data(), static_cast<long>(bytes.size()));
      Next();
    } else if (Is('<')) {
      Error("collections are not supported");
    } else {
      Error("a value expected but " + Describe() + " found");
    }
  }

  // A string, continued with + over several lines.
  void StringValue() {
    std::wstring units = units_;
    Next();
    while (Is('+')) {
      Next();
      if (token_ != kString) Error("a string expected after + but " + Describe() + " found");
      units += units_;
      Next();
    }
    writer_.WriteWideString(units);
  }

  std::string text_;
  bool utf8_;  // whether the text's bytes are UTF-8, as a text written by an older version's may not be
  size_t pos_ = 0;
  int line_ = 1, tokenLine_ = 1;
  Token token_ = kEnd;
  std::string tokenText_;
  std::wstring units_;
  TWriter writer_;
  int objects_ = 0, lists_ = 0;  // nesting of what is being read
};

}  // namespace

void ObjectBinaryToText(TStream* input, TStream* output) {
  TextWriter converter(input);
  const std::string text = converter.Convert();
  output->WriteBuffer(text.data(), static_cast<long>(text.size()));
}

void ObjectTextToBinary(TStream* input, TStream* output) {
  std::string text(static_cast<size_t>(std::max<int64_t>(0, input->GetSize() - input->GetPosition())), '\0');
  if (!text.empty()) input->ReadBuffer(text.data(), static_cast<long>(text.size()));
  TextReader converter(std::move(text), output);
  converter.Convert();
}

}  // namespace Classes
