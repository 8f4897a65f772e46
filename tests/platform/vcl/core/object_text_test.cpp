// The text form of component streams: a description with every kind of value
// goes to binary and back unchanged, and binary to text and back to the same
// bytes; strings are Unicode in both forms whatever the code page (run again
// under the Cyrillic code page and in a program whose code page is UTF-8);
// malformed text is refused with its line; cut or damaged input of either
// form never crashes.
#include "platform/vcl/core/object_text.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "platform/vcl/core/filer.h"
#include "tests/platform/vcl/test_helpers.h"

namespace {

using namespace Classes;

using vcl_test::Convert;

std::string ToBinary(const std::string& text) { return Convert(&ObjectTextToBinary, text); }
std::string ToText(const std::string& binary) { return Convert(&ObjectBinaryToText, binary); }

// Written as the converter writes it, so that it comes back the same.
const std::string kSample =
    "object OrderForm: TOrderForm\r\n"
    "  Left = -192\r\n"
    "  Tag = 4000000000\r\n"
    "  Caption = 'It''s Заказ'\r\n"
    "  Ratio = 0.1\r\n"
    "  Big = 1.5e+300\r\n"
    "  Whole = 2.0\r\n"
    "  Hint =\r\n"
    "    'A long hint that goes on and on, past the width of a line, so it' +\r\n"
    "    ' is split into pieces'#13#10'with breaks'\r\n"
    "  Empty = ''\r\n"
    "  Wide = 'xжy'#55357\r\n"
    "  Font.Style = [fsBold, fsItalic]\r\n"
    "  Anchors = []\r\n"
    "  Visible = False\r\n"
    "  Color = clBtnFace\r\n"
    "  Menu = nil\r\n"
    "  Items.Strings = (\r\n"
    "    'one'\r\n"
    "    2\r\n"
    "    (\r\n"
    "      'nested'))\r\n"
    "  Nothing = ()\r\n"
    "  Glyph.Data = {\r\n"
    "    00010203040506070809101112131415161718192021222324252627282930313233\r\n"
    "    FF}\r\n"
    "  OnClick = FormClick\r\n"
    "  object Panel1: TPanel\r\n"
    "    object TButton\r\n"
    "    end\r\n"
    "  end\r\n"
    "  inherited Base: TBase [3]\r\n"
    "  end\r\n"
    "end\r\n";

TEST(ObjectText, RoundTripsBothWays) {
  const std::string binary = ToBinary(kSample);
  EXPECT_EQ(0, binary.compare(0, 4, "TPF0"));
  const std::string text = ToText(binary);
  // The sample's hex line is 68 digits; the converter writes 64 a line.
  std::string expected = kSample;
  const std::string hexLines = "    00010203040506070809101112131415161718192021222324252627282930313233\r\n    FF}";
  expected.replace(expected.find(hexLines), hexLines.size(),
                   "    0001020304050607080910111213141516171819202122232425262728293031\r\n    3233FF}");
  EXPECT_EQ(expected, text);
  EXPECT_EQ(binary, ToBinary(text)) << "binary to text and back: the same bytes";

  // Line breaks of any kind, and spacing, do not matter.
  std::string loose = expected;
  for (size_t at; (at = loose.find("\r\n")) != std::string::npos;) loose.replace(at, 2, "\n  ");
  EXPECT_EQ(binary, ToBinary(loose));
}

// The binary value of a property S, and the text of one holding value.
std::string BinaryValue(const std::string& value) {
  const std::string binary = ToBinary("object A: TA\r\n  S = " + value + "\r\nend\r\n");
  return binary.substr(11, binary.size() - 13);  // between the property's name and the two ends
}
std::string TextOf(const std::string& value) { return ToText("TPF0\2TA\1A\1S" + value + std::string(2, '\0')); }
std::string Utf8Value(const std::string& utf8) {
  const int n = static_cast<int>(utf8.size());
  return '\x14' + std::string(reinterpret_cast<const char*>(&n), 4) + utf8;
}

TEST(ObjectText, StringsAreUnicodeInBothFormsWhateverTheCodePage) {
  // ASCII stays bytes; anything else becomes UTF-8, whether in the text as
  // UTF-8 or as codes, which are UTF-16 units; in the text again, letters
  // are UTF-8 and controls codes.
  const struct {
    std::string text, binary, back;
  } cases[] = {
      {"'plain'#9'text'", std::string("\x06\x0Aplain\ttext"), "'plain'#9'text'"},
      {"'Größe'", Utf8Value("Größe"), "'Größe'"},
      {"'Caf'#233", Utf8Value("Café"), "'Café'"},
      {"#$65E5#26412", Utf8Value("日本"), "'日本'"},
      {"#55357#56832' '#128#160", Utf8Value("😀 \xC2\x80\xC2\xA0"), "'😀 '#128'\xC2\xA0'"},
      {"'a'#55357", std::string("\x12\x02\0\0\0a\0\x3D\xD8", 9), "'a'#55357"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(c.binary, BinaryValue(c.text)) << c.text;
    EXPECT_EQ("object A: TA\r\n  S = " + c.back + "\r\nend\r\n", TextOf(c.binary)) << c.text;
  }
  EXPECT_EQ(ToBinary("object A: TA\n  S = 'Größe'\nend\n"), ToBinary("\xEF\xBB\xBFobject A: TA\n  S = 'Größe'\nend\n"))
      << "a byte order mark is passed over";

  // A text that is not UTF-8, written in a code page by an older version, and
  // bytes that name no encoding, are read in the process's code page.
  const int column = vcl_test::CodePageColumn();
  if (column < 0) GTEST_SKIP() << "the cases know code pages 1251, 1252 and UTF-8, not " << GetACP();
  const char* const read[] = {"'GrцЯe За'", "'Größe Çà'", "'Gr\uFFFD\uFFFDe \uFFFD\uFFFD'"};
  const std::string want = "object A: TA\r\n  S = " + std::string(read[column]) + "\r\nend\r\n";
  EXPECT_EQ(want, ToText(ToBinary("object A: TA\r\n  S = 'Gr\366\337e \307\340'\r\nend\r\n")));
  EXPECT_EQ(want, TextOf("\6\10Gr\366\337e \307\340"));
}

TEST(ObjectText, MalformedTextIsRefusedWithItsLine) {
  // A name longer than the 255 bytes of a name in the binary form, in each place a name goes.
  const std::string longName(300, 'N');
  const std::string tooLong = "name too long: " + longName.substr(0, 32) + "... (300 characters, at most 255)";
  const struct {
    std::string text;
    std::string message;
  } cases[] = {
      {"", "Line 1: 'object' expected but end of text found"},
      {"object A: TA\r\n  X = 1\r\n", "Line 3: 'end' expected but end of text found"},
      {"object A: TA\n  X = 'open\nend\n", "Line 2: unterminated string"},
      {"object A: TA\n  X =\nend\n", "Line 3: a value expected but 'end' found"},
      {"object A: TA\n  X = [a b]\nend\n", "Line 2: ',' or ']' expected but 'b' found"},
      {"object A: TA\n  X = [a,]\nend\n", "Line 2: a set element expected but ']' found"},
      {"object A: TA\n  X = {0G}\nend\n", "Line 2: a hexadecimal digit expected but 'G' found"},
      {"object A: TA\n  X = {0}\nend\n", "Line 2: an odd number of hexadecimal digits"},
      {"object A: TA\n  X = #70000\nend\n", "Line 2: a character code from 0 to 65535 expected after #"},
      {"object A: TA\n  X = 'a' +\nend\n", "Line 3: a string expected after + but 'end' found"},
      {"object A: TA\n  X = 99999999999999999999\nend\n", "Line 2: integer 99999999999999999999 out of range"},
      {"object A: TA\n  X = <\n  >\nend\n", "Line 2: collections are not supported"},
      {"object A: TA\nend\nend\n", "Line 3: end of text expected but 'end' found"},
      {"object A TA\nend\n", "Line 2: '=' expected but 'end' found"},
      {"object " + longName + ": TA\nend\n", "Line 1: " + tooLong},
      {"object A: TA\n  object B: " + longName + "\n  end\nend\n", "Line 2: " + tooLong},
      {"object A: TA\n  " + longName + " = 1\nend\n", "Line 2: " + tooLong},
      {"object A: TA\n  X = [a, " + longName + "]\nend\n", "Line 2: " + tooLong},
      {"object A: TA\n  X = " + longName + "\nend\n", "Line 2: " + tooLong},
      {std::string("object A: TA\n  X = \0\nend\n", 25), "Line 2: a value expected but character #0 found"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(c.message, vcl_test::ErrorOf<EParserError>([&] { ToBinary(c.text); })) << c.text;
}

TEST(ObjectText, DamagedInputNeverCrashes) {
  const std::string binary = ToBinary(kSample);
  std::mt19937 random(7);
  int refused = 0;
  for (int i = 0; i < 600; ++i) {
    const bool text = i % 2 == 0;
    std::string input = text ? kSample : binary;
    if (i % 3 == 0)
      input.resize(random() % input.size());
    else
      for (int k = 0; k < 3; ++k) input[random() % input.size()] = static_cast<char>(random());
    try {
      text ? ToBinary(input) : ToText(input);
    } catch (const EParserError&) {
      ++refused;
    } catch (const EReadError&) {
      ++refused;
    }
  }
  EXPECT_GT(refused, 200) << "most damaged inputs are refused, none crashes";
}

}  // namespace
