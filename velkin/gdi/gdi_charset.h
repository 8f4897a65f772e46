#pragma once
/// \file
/// Font character sets and their code pages.
#include "velkin/velkin_api.h"

/// Font character sets as the library numbers them. The names HFCS_hangeul and
/// HFCS_Chine are kept as they always were.
enum HFontCharset : unsigned char {
  HFCS_Ansi = 0,
  HFCS_Default = 1,
  HFCS_Symbol = 2,
  HFCS_ShiftJIS = 3,
  HFCS_GB2312 = 4,
  HFCS_hangeul = 5,
  HFCS_Chine = 6,
  HFCS_OEM = 7,
  HFCS_Johab = 8,
  HFCS_Hebrew = 9,
  HFCS_Arabic = 10,
  HFCS_Greek = 11,
  HFCS_Turkish = 12,
  HFCS_Thai = 13,
  HFCS_EastEurope = 14,
  HFCS_Russian = 15,
  HFCS_Mac = 16,
  HFCS_Baltic = 17
};

/// One row of the charset table: the enumerator, the byte written into
/// lfCharSet and a display name. The table ends with a row whose name is null.
struct HFontCharsetInfo {
  HFontCharset Charset;
  unsigned char Value;
  const char* Name;
};

/// The table, 18 rows plus the end row. Rows 0 and 1 cross over on purpose:
/// HFCS_Default is written as byte 0 and HFCS_Ansi as byte 1, and every
/// conversion follows the table, so a charset always reads back as itself.
VELKIN_API const HFontCharsetInfo* hfCharsetTable();

/// The enumerator of row 1..17; HFCS_Default for any other row (0 included).
VELKIN_API HFontCharset hfIndex2Charset(int index);
/// The first row holding the enumerator; -1 when none does.
VELKIN_API int hfCharset2Index(HFontCharset charset);
/// The row's lfCharSet byte; 1 when the enumerator is not in the table.
VELKIN_API unsigned char hfCharset2Value(HFontCharset charset);
/// The enumerator of the first row with that byte; HFCS_Default when none.
VELKIN_API HFontCharset hfValue2Charset(unsigned char value);
