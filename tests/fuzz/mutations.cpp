#include "tests/fuzz/mutations.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <random>

namespace fuzz {

namespace {

using Random = std::mt19937_64;

// The type bytes of the binary form's values that the mutations name, and
// one past the last type.
constexpr unsigned char vNull = 0, vList = 1, vString = 6, vBinary = 10, vLString = 12, vWString = 18, vUTF8String = 20,
                        vTypes = 22;

// What follows a value's type byte: that many bytes, or a run of a kind.
constexpr int kListRun = -1, kString = -2, kIdentRun = -3, kSetRun = -4, kLong = -5, kWide = -6, kUnmapped = -7;

int Layout(unsigned char type) {
  // clang-format off
  static const signed char layouts[vTypes] = {
      0,       kListRun,  1,         2,       4,      10,       // Null, List, Int8, Int16, Int32, Extended
      kString, kIdentRun, 0,         0,       kLong,  kSetRun,  // String, Ident, False, True, Binary, Set
      kLong,   0,         kUnmapped, 4,       8,      8,        // LString, Nil, Collection, Single, Currency, Date
      kWide,   8,         kLong,     8};                        // WString, Int64, UTF8String, Double
  // clang-format on
  return type < vTypes ? layouts[type] : kUnmapped;
}

// clang-format off
const char* const kClasses[] = {
    "TFuzzForm", "TForm", "TButton", "TLabel", "TPanel", "TEdit", "TMemo", "TComboBox", "TListBox", "TCheckBox",
    "TGroupBox", "TScrollBox", "TBevel", "TBitBtn", "TTrackBar", "TUpDown", "TMainMenu", "TPopupMenu", "TMenuItem",
    "TComponent", "TPersistent", "TObject", "TNoSuch"};
const char* const kProperties[] = {
    "Left", "Top", "Width", "Height", "Caption", "Text", "Color", "Font.Height", "Font.Style", "Font.Name",
    "Items.Strings", "Lines.Strings", "Align", "Anchors", "Visible", "Enabled", "TabOrder", "OnClick", "Default",
    "ModalResult", "Ratio", "Due", "ActiveControl", "Menu", "Tag", "ItemIndex", "Style", "BorderStyle", "BorderIcons",
    "FocusControl", "Associate", "Position", "Max", "ShortCut", "Constraints.MinWidth", "PixelsPerInch", "Scaled",
    "ClientWidth", "Name", "Font", "Items", "Font.Nothing"};
const char* const kIdents[] = {
    "True", "False", "nil", "Null", "clRed", "clBtnFace", "alClient", "fsBold", "OkClick", "NameEdit", "OkButton",
    "OrderForm", "bsDialog", "biHelp", "Panel1", "MainMenu1", "Notes", "FormCreate"};
// clang-format on
const char* const kNestable[] = {"TPanel", "TLabel", "TGroupBox", "TMenuItem", "TScrollBox", "TButton"};

template <class T, size_t N>
const T& Pick(Random& r, const T (&items)[N]) {
  return items[r() % N];
}
size_t Below(Random& r, size_t n) { return n ? static_cast<size_t>(r() % n) : 0; }

// 50 to 100,000, each order of magnitude as likely.
int Depth(Random& r) {
  return static_cast<int>(50 * std::pow(2000.0, std::uniform_real_distribution<double>(0, 1)(r)));
}

std::string Ident(Random& r, size_t n) {
  static const char letters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_0123456789";
  std::string s(1, letters[Below(r, 53)]);
  while (s.size() < n) s += letters[Below(r, sizeof letters - 1)];
  return s;
}

struct Span {
  size_t at = 0, size = 0;
};

template <class T>
const T* PickFrom(Random& r, const std::vector<T>& v) {
  return v.empty() ? nullptr : &v[Below(r, v.size())];
}

// ---- byte level, for either form ----

void Edit(std::string& b, Random& r) {
  for (size_t n = 1 + Below(r, 4); n > 0; --n) {
    const size_t at = Below(r, b.size() + 1);
    const auto op = r() % 4;
    if (op == 0 && at < b.size())
      b[at] = static_cast<char>(r());
    else if (op == 1)
      for (size_t k = 1 + Below(r, 8); k > 0; --k) b.insert(b.begin() + static_cast<long>(at), static_cast<char>(r()));
    else if (op == 2)
      b.erase(at, 1 + Below(r, 16));
    else if (op == 3)
      b.insert(at, b.substr(Below(r, b.size() + 1), 1 + Below(r, 32)));
  }
}

bool ByteLevel(std::string& b, int family, Random& r) {
  if (family == kTruncate)
    b.resize(Below(r, b.size()));
  else if (family == kBitFlip)
    for (size_t n = 1 + Below(r, 8); n > 0 && !b.empty(); --n)
      b[Below(r, b.size())] ^= static_cast<char>(1 << (r() % 8));
  else if (family == kEdit)
    Edit(b, r);
  return family == kTruncate || family == kBitFlip || family == kEdit;
}

// ---- binary streams ----

void Int32(std::string& s, uint32_t v) { s.append(reinterpret_cast<const char*>(&v), 4); }
std::string Short(const std::string& s) { return static_cast<char>(s.size()) + s; }

// A value of any type, now and then of a type byte past the last.
std::string AnyValue(Random& r, int depth = 0) {
  const unsigned char type = r() % 16 == 0 ? static_cast<unsigned char>(vTypes + Below(r, 256 - vTypes))
                                           : static_cast<unsigned char>(Below(r, vTypes));
  std::string v(1, static_cast<char>(type));
  const auto bytes = [&](size_t n) {
    for (; n > 0; --n) v += static_cast<char>(r());
  };
  switch (const int layout = Layout(type)) {
    case kListRun:
      for (size_t n = depth < 2 ? Below(r, 4) : 0; n > 0; --n) v += AnyValue(r, depth + 1);
      v += static_cast<char>(vNull);
      break;
    case kString:
      v += Short(Ident(r, Below(r, 12)));
      break;
    case kIdentRun:
      v += Short(Pick(r, kIdents));
      break;
    case kSetRun:
      for (size_t n = Below(r, 3); n > 0; --n) v += Short(Pick(r, kIdents));
      v += '\0';
      break;
    case kLong:
    case kWide: {
      const size_t n = Below(r, 6);
      Int32(v, static_cast<uint32_t>(n));
      bytes(layout == kWide ? 2 * n : n);
      break;
    }
    default:
      bytes(layout > 0 ? static_cast<size_t>(layout) : 0);
  }
  return v;
}

// Where the names, values and components of a stream are; a damaged stream
// is mapped as far as it goes.
struct BinaryMap {
  std::vector<Span> classes, components, properties, idents;  // a name: its length byte and its bytes
  std::vector<Span> values;                                   // a type byte and what follows
  std::vector<Span> children;                                 // a child, from its first byte to its end
  std::vector<size_t> ends;  // the zero bytes that end lists of properties and children
};

class Mapper {
 public:
  Mapper(const std::string& b, BinaryMap& m) : b_(b), m_(m) {}
  void Map() {
    pos_ = 4;
    Component(false, 0);
  }

 private:
  bool Has(size_t n) const { return pos_ + n <= b_.size(); }
  unsigned char At() const { return static_cast<unsigned char>(b_[pos_]); }
  bool Skip(size_t n) {
    if (!Has(n)) return false;
    pos_ += n;
    return true;
  }
  bool Str(std::vector<Span>* into) {
    if (!Has(1) || !Has(1u + At())) return false;
    if (into) into->push_back({pos_, 1u + At()});
    pos_ += 1u + At();
    return true;
  }
  bool Long(size_t unit) {
    int32_t n = 0;
    if (!Has(4)) return false;
    std::memcpy(&n, &b_[pos_], 4);
    pos_ += 4;
    return n >= 0 && Skip(static_cast<size_t>(n) * unit);
  }
  bool Value(int depth) {
    if (!Has(1) || depth > 300) return false;
    const size_t start = pos_;
    const int layout = Layout(At());
    ++pos_;
    bool ok = true;
    switch (layout) {
      case kListRun:
      case kSetRun:
        while (ok && Has(1) && At() != 0) ok = layout == kListRun ? Value(depth + 1) : Str(&m_.idents);
        ok = ok && Skip(1);
        break;
      case kString:
      case kIdentRun:
        ok = Str(layout == kIdentRun ? &m_.idents : nullptr);
        break;
      case kLong:
      case kWide:
        ok = Long(layout == kWide ? 2 : 1);
        break;
      case kUnmapped:
        return false;
      default:
        ok = Skip(static_cast<size_t>(layout));
    }
    if (ok) m_.values.push_back({start, pos_ - start});
    return ok;
  }
  bool Component(bool child, int depth) {
    if (depth > 300 || !Has(1)) return false;
    const size_t start = pos_;
    if ((At() & 0xF0) == 0xF0) {
      const unsigned char flags = At();
      ++pos_;
      if ((flags & 0x02) && !Value(0)) return false;
    }
    if (!Str(&m_.classes) || !Str(&m_.components)) return false;
    while (Has(1) && At() != 0)
      if (!Str(&m_.properties) || !Value(0)) return false;
    if (!Has(1)) return false;
    m_.ends.push_back(pos_++);
    while (Has(1) && At() != 0)
      if (!Component(true, depth + 1)) return false;
    if (!Has(1)) return false;
    m_.ends.push_back(pos_++);
    if (child) m_.children.push_back({start, pos_ - start});
    return true;
  }

  const std::string& b_;
  BinaryMap& m_;
  size_t pos_ = 0;
};

const Span* AnyName(Random& r, const BinaryMap& m) {
  const std::vector<Span>* kinds[] = {&m.classes, &m.components, &m.properties, &m.idents};
  for (int tries = 0; tries < 8; ++tries)
    if (const Span* s = PickFrom(r, *Pick(r, kinds)); s && s->size > 1) return s;
  return nullptr;
}

void MutateBinary(std::string& b, const std::vector<Sample>& corpus, int family, Random& r) {
  BinaryMap m;
  Mapper(b, m).Map();
  switch (family) {
    case kHugeLength:
      if (const Span* v = PickFrom(r, m.values); v && r() % 2) {
        static const unsigned char types[] = {vLString, vWString, vUTF8String, vBinary};
        const uint32_t lengths[] = {
            0x7FFFFFFF, 0xFFFFFFFF, 0x80000000, 0x40000000, static_cast<uint32_t>(b.size() - v->at), 0x10000};
        std::string huge(1, static_cast<char>(Pick(r, types)));
        Int32(huge, Pick(r, lengths));
        b.replace(v->at, v->size, huge + "abc");
      } else if (const Span* n = AnyName(r, m)) {
        b[n->at] = static_cast<char>(n->size + Below(r, 256 - n->size));  // longer than what is there
      } else {
        b += static_cast<char>(vString) + std::string(1, '\xFF');
      }
      return;
    case kWrongType:
      if (const Span* v = PickFrom(r, m.values)) return void(b.replace(v->at, v->size, AnyValue(r)));
      break;
    case kUnknownName: {
      const Span* n = AnyName(r, m);
      if (!n) break;
      if (r() % 2) {
        b[n->at + 1 + Below(r, n->size - 1)] = static_cast<char>('a' + Below(r, 26));
      } else {
        const bool isClass = std::find_if(m.classes.begin(), m.classes.end(),
                                          [&](const Span& s) { return s.at == n->at; }) != m.classes.end();
        b.replace(n->at, n->size,
                  Short(isClass   ? Pick(r, kClasses)
                        : r() % 2 ? Pick(r, kProperties)
                                  : Pick(r, kIdents)));
      }
      return;
    }
    case kNameClash:
      if (const size_t count = std::min(m.components.size(), m.classes.size()); count > 2) {
        const size_t i = 1 + Below(r, count - 2), j = i + 1 + Below(r, count - 1 - i);
        const std::string name = b.substr(m.components[i].at, m.components[i].size),
                          cls = b.substr(m.classes[i].at, m.classes[i].size);
        b.replace(m.components[j].at, m.components[j].size, name);
        if (r() % 2) b.replace(m.classes[j].at, m.classes[j].size, cls);
        return;
      }
      break;
    case kNul:
      if (const Span* n = AnyName(r, m)) return void(b[n->at + 1 + Below(r, n->size - 1)] = '\0');
      break;
    case kLongName:
      if (const Span* n = AnyName(r, m))
        return void(b.replace(n->at, n->size, Short(r() % 8 ? Ident(r, 255) : std::string())));
      break;
    case kUnbalanced:
      if (const Span* c = PickFrom(r, m.children); c && r() % 2) {
        const auto how = r() % 3;
        if (how == 0)
          b.insert(c->at + c->size, b.substr(c->at, c->size));  // twice: a clash too
        else if (how == 1)
          b.erase(c->at + c->size - 1, 1);
        else
          b.resize(c->at + c->size);
        return;
      } else if (const size_t* end = PickFrom(r, m.ends)) {
        return void(r() % 2 ? b.erase(*end, 1) : b.insert(*end, 1, '\0'));
      }
      break;
    case kNesting: {
      const int depth = Depth(r);
      if (const Span* v = PickFrom(r, m.values); v && r() % 3 == 0) {
        b.replace(v->at, v->size,
                  std::string(static_cast<size_t>(depth), static_cast<char>(vList)) + AnyValue(r) +
                      std::string(static_cast<size_t>(depth), '\0'));
        return;
      }
      const size_t at = !m.children.empty() ? PickFrom(r, m.children)->at : !m.ends.empty() ? m.ends[0] + 1 : b.size();
      const std::string level = Short(Pick(r, kNestable)) + std::string(2, '\0');
      std::string nested;
      nested.reserve(level.size() * static_cast<size_t>(depth) + static_cast<size_t>(depth));
      for (int i = 0; i < depth; ++i) nested += level;
      nested.append(r() % 4 ? static_cast<size_t>(depth) : Below(r, static_cast<size_t>(depth)), '\0');
      b.insert(std::min(at, b.size()), nested);
      return;
    }
    case kSplice: {
      const Sample& other = corpus[Below(r, corpus.size())];
      const size_t from = Below(r, other.bytes.size()), at = Below(r, b.size());
      b.replace(at, Below(r, 64), other.bytes.substr(from, 1 + Below(r, 256)));
      return;
    }
    default:
      break;
  }
  Edit(b, r);  // nothing of the kind to damage: damage something
}

// ---- form texts ----

// Where the names and values of a text are.
struct TextMap {
  struct Object {
    Span line, name, cls;  // name.size 0: a nameless one
  };
  std::vector<Object> objects;
  std::vector<Span> objectNames, classNames, properties, values, idents;
  std::vector<Span> lines, endLines;
};

bool IsIdentStart(char c) { return std::isalpha(static_cast<unsigned char>(c)) || c == '_'; }
bool IsIdentChar(char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == '_' || c == '.'; }

TextMap MapText(const std::string& t) {
  TextMap m;
  for (size_t start = 0; start < t.size();) {
    size_t end = t.find('\n', start);
    end = end == std::string::npos ? t.size() : end + 1;
    m.lines.push_back({start, end - start});
    std::vector<Span> words;
    for (size_t p = start; p < end;) {
      if (t[p] == '\'') break;  // a string: no names after it worth finding
      if (IsIdentStart(t[p])) {
        const size_t w = p;
        while (p < end && IsIdentChar(t[p])) ++p;
        words.push_back({w, p - w});
      } else {
        ++p;
      }
    }
    m.idents.insert(m.idents.end(), words.begin(), words.end());
    const auto word = [&](size_t i) { return i < words.size() ? t.substr(words[i].at, words[i].size) : std::string(); };
    if (word(0) == "object" || word(0) == "inherited" || word(0) == "inline") {
      TextMap::Object o{m.lines.back(), {}, {}};
      if (words.size() >= 2) o.cls = words[words.size() >= 3 ? 2 : 1];  // "object Name: Class" or "object Class"
      if (words.size() >= 3) m.objectNames.push_back(o.name = words[1]);
      if (o.cls.size) m.classNames.push_back(o.cls);
      m.objects.push_back(o);
    } else if (word(0) == "end") {
      m.endLines.push_back(m.lines.back());
    } else if (!words.empty()) {
      const size_t eq = t.find('=', words[0].at + words[0].size);
      if (eq < end) {
        m.properties.push_back(words[0]);
        size_t v = eq + 1;
        while (v < end && t[v] == ' ') ++v;
        size_t e = end;
        while (e > v && (t[e - 1] == '\n' || t[e - 1] == '\r')) --e;
        if (e > v) m.values.push_back({v, e - v});
      }
    }
    start = end;
  }
  return m;
}

std::string AnyTextValue(Random& r) {
  // clang-format off
  static const char* const values[] = {
      "5", "-1", "$7F", "1.5", "1e400", "'text'", "#0", "#65", "[]", "[fsBold, biHelp]", "(1 'a' [x])", "()",
      "{00FF}", "{}", "True", "nil", "Null", "clRed", "OkClick", "<>", "NameEdit", "'a' + 'b'",
      "-9223372036854775808", "2147483648", "1.0e-4930"};
  // clang-format on
  return Pick(r, values);
}

std::string HugeTextValue(Random& r) {
  static const size_t sizes[] = {256, 65536, 1 << 20};
  // clang-format off
  static const char* const numbers[] = {
      "99999999999999999999", "1e99999", "-0.0e-99999", "$FFFFFFFFFFFFFFFFF", "#99999999", "#$FFFFFFFF", "$", "1e", "--5"};
  // clang-format on
  switch (r() % 5) {
    case 0:
      return "'" + std::string(Pick(r, sizes), 'x') + "'";
    case 1: {
      std::string pieces = "'a'";
      for (size_t n = Pick(r, sizes) / 64; n > 0; --n) pieces += " +\n 'piece'";
      return pieces;
    }
    case 2:
      return "{" + std::string(2 * Pick(r, sizes), 'A') + "}";
    case 3:
      return Pick(r, numbers);
    default:
      return std::string(Pick(r, sizes), ' ') + "5";
  }
}

void MutateText(std::string& t, const std::vector<Sample>& corpus, int family, Random& r) {
  const TextMap m = MapText(t);
  const auto lineStart = [&]() -> size_t {
    return m.lines.size() > 1 ? m.lines[1 + Below(r, m.lines.size() - 1)].at : t.size();
  };
  switch (family) {
    case kHugeLength:
      if (const Span* v = PickFrom(r, m.values)) return void(t.replace(v->at, v->size, HugeTextValue(r)));
      break;
    case kWrongType:
      if (const Span* v = PickFrom(r, m.values)) return void(t.replace(v->at, v->size, AnyTextValue(r)));
      break;
    case kUnknownName: {
      const std::vector<Span>* kinds[] = {&m.classNames, &m.properties, &m.idents};
      const std::vector<Span>* kind = Pick(r, kinds);
      if (const Span* n = PickFrom(r, *kind)) {
        if (r() % 2)
          t[n->at + Below(r, n->size)] = static_cast<char>('a' + Below(r, 26));
        else
          t.replace(n->at, n->size, kind == &m.classNames ? Pick(r, kClasses) : Pick(r, kProperties));
        return;
      }
      break;
    }
    case kNameClash: {
      std::vector<TextMap::Object> named;
      for (const auto& o : m.objects)
        if (o.name.size && o.cls.size) named.push_back(o);
      if (named.size() > 2) {
        // A later one named as an earlier one, of its class or not; the class
        // follows the name on its line, so it is replaced first.
        const size_t i = 1 + Below(r, named.size() - 2), j = i + 1 + Below(r, named.size() - 1 - i);
        if (r() % 2) t.replace(named[j].cls.at, named[j].cls.size, t.substr(named[i].cls.at, named[i].cls.size));
        t.replace(named[j].name.at, named[j].name.size, t.substr(named[i].name.at, named[i].name.size));
        return;
      }
      break;
    }
    case kNul:
      if (const Span* n = PickFrom(r, m.idents); n && r() % 2) return void(t[n->at + Below(r, n->size)] = '\0');
      return void(t.insert(Below(r, t.size() + 1), 1, '\0'));
    case kLongName: {
      const std::vector<Span>* kinds[] = {&m.objectNames, &m.classNames, &m.properties, &m.idents};
      if (const Span* n = PickFrom(r, *Pick(r, kinds)))
        return void(t.replace(n->at, n->size, Ident(r, 256 + Below(r, 3000))));
      break;
    }
    case kUnbalanced: {
      const auto how = r() % 4;
      if (const Span* e = how == 0 ? PickFrom(r, m.endLines) : nullptr) return void(t.erase(e->at, e->size));
      if (const auto* o = how == 1 ? PickFrom(r, m.objects) : nullptr; o && o->line.at > 0)
        return void(t.erase(o->line.at, o->line.size));
      if (how >= 2) return void(t.insert(lineStart(), how == 2 ? "end\n" : "object Extra: TLabel\n"));
      break;
    }
    case kNesting: {
      const auto depth = static_cast<size_t>(Depth(r));
      const size_t closed = r() % 4 ? depth : Below(r, depth);
      std::string nested;
      if (r() % 3) {
        const std::string open = std::string("object ") + Pick(r, kNestable) + "\n";
        nested.reserve(open.size() * depth + 4 * closed);
        for (size_t i = 0; i < depth; ++i) nested += open;
        for (size_t i = 0; i < closed; ++i) nested += "end\n";
      } else {
        nested = "Lines.Strings = " + std::string(depth, '(') + "'x'" + std::string(closed, ')') + "\n";
      }
      return void(t.insert(lineStart(), nested));
    }
    case kSplice: {
      const Sample& other = corpus[Below(r, corpus.size())];
      const TextMap o = MapText(other.bytes);
      if (o.lines.empty()) break;
      const size_t first = Below(r, o.lines.size()), last = std::min(o.lines.size() - 1, first + Below(r, 12));
      return void(t.insert(lineStart(), other.bytes.substr(o.lines[first].at,
                                                           o.lines[last].at + o.lines[last].size - o.lines[first].at)));
    }
    default:
      break;
  }
  Edit(t, r);
}

void Apply(std::string& input, bool binary, const std::vector<Sample>& corpus, int family, Random& r) {
  if (ByteLevel(input, family, r)) return;
  if (binary)
    MutateBinary(input, corpus, family, r);
  else
    MutateText(input, corpus, family, r);
}

}  // namespace

const char* FamilyName(int family) {
  static const char* const names[] = {"truncated",   "bits flipped",    "bytes edited", "huge lengths",
                                      "wrong types", "unknown names",   "name clashes", "NULs",
                                      "long names",  "unbalanced ends", "deep nesting", "spliced"};
  return family >= 0 && family < kFamilies ? names[family] : "?";
}

std::string Mutate(const std::vector<Sample>& corpus, unsigned long long seed, int index, std::string& how) {
  Random r(seed * 0x9E3779B97F4A7C15ULL + static_cast<unsigned long long>(index));
  std::vector<size_t> valid;
  for (size_t i = 0; i < corpus.size(); ++i)
    if (corpus[i].valid) valid.push_back(i);
  const Sample& sample = corpus[!valid.empty() && r() % 10 ? valid[Below(r, valid.size())] : Below(r, corpus.size())];
  const bool binary = sample.Binary();
  std::string input = sample.bytes;
  const int family = index % kFamilies;
  how = sample.name + ": " + FamilyName(family);
  Apply(input, binary, corpus, family, r);
  if (r() % 4 == 0) {
    const int second = static_cast<int>(r() % kFamilies);
    how += std::string(", ") + FamilyName(second);
    Apply(input, binary, corpus, second, r);
  }
  return input;
}

}  // namespace fuzz
