#pragma once
/// \file
/// Unit Classes, the text form of component streams: what people read, write
/// and compare, converted to and from the binary form that programs read.
///
///     object OrderForm: TOrderForm
///       Caption = 'Order '#199#224
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
/// Strings are quoted with '' for a quote; bytes below 32 and above 126 are
/// written \#nnn outside the quotes and kept as they are (no code page is
/// involved); a long string continues on the next line after a +. Sets are
/// [a, b], lists ( ... ), bytes { hex }.
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
