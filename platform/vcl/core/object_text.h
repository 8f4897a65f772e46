#pragma once
/// \file
/// Unit Classes, the text form of component streams: what people read, write
/// and compare, converted to and from the binary form that programs read.
///
///     object OrderForm: TOrderForm
///       Caption = 'Заказ'#13#10'№ 1'
///       Font.Style = [fsBold]
///       Items.Strings = (
///         'one'
///         'two')
///       OnClick = FormClick
///       object OkButton: TButton
///         Default = True
///       end
///     end
///
/// Strings are quoted with '' for a quote; a long string continues on the
/// next line after a +. Sets are [a, b], lists ( ... ), bytes { hex }.
///
/// A form text is UTF-8, so it means the same in a process of any code page:
/// the bytes inside quotes are UTF-8 (a UTF-8 byte order mark at the start
/// is passed over). A text whose bytes are not all well-formed UTF-8 was
/// written in a code page, as older versions wrote them: its quoted bytes
/// are read in the code page of the process converting it. \#nnn (decimal) and
/// \#$hhhh (hexadecimal) are UTF-16 units, whatever the code page: \#233 is
/// always é, a character beyond U+FFFF is its two surrogates. (Older versions
/// took codes from 128 to 255 as bytes of the code page; such texts now read
/// those codes as U+0080 to U+00FF.) ASCII strings go to the binary form as
/// vaString/vaLString bytes, other strings as vaUTF8String (vaWString when a
/// surrogate stands alone).
///
/// Written as text, printable ASCII and every character from U+00A0 on go into
/// quotes, the latter as UTF-8; controls and lone surrogates are written as
/// \#nnn. vaString/vaLString bytes are taken as the converting process's code
/// page. So text to binary to text gives back a text that converts to the
/// same binary in any code page.
#include "platform/vcl/core/streams.h"

namespace Classes {

/// Text that is not a well-formed description; the message starts with the
/// line: "Line 7: ...".
class VCL_API EParserError : public Sysutils::Exception {
  VCL_CLASS();

 public:
  using Exception::Exception;
};

/// Reads a binary component stream at input's position and writes its text
/// at output's. Raises EReadError for a malformed stream, or one nested deeper
/// than MaxStreamNesting (filer.h).
VCL_API void ObjectBinaryToText(TStream* input, TStream* output);
/// Reads a text description at input's position and writes the binary
/// stream at output's. Raises EParserError for malformed text: nested deeper
/// than MaxStreamNesting, or with a name longer than the 255 bytes the binary
/// form holds.
VCL_API void ObjectTextToBinary(TStream* input, TStream* output);

}  // namespace Classes
