#include "velkin/gdi/gdi_charset.h"

namespace {
const HFontCharsetInfo kCharsets[] = {
    {HFCS_Default, 0, "DEFAULT_CHARSET"},
    {HFCS_Ansi, 1, "ANSI_CHARSET"},
    {HFCS_Symbol, 2, "SYMBOL_CHARSET"},
    {HFCS_ShiftJIS, 128, "SHIFTJIS_CHARSET"},
    {HFCS_GB2312, 134, "GB2312_CHARSET"},
    {HFCS_hangeul, 129, "HANGEUL_CHARSET"},
    {HFCS_Chine, 136, "CHINESEBIG5_CHARSET"},
    {HFCS_OEM, 255, "OEM_CHARSET"},
    {HFCS_Johab, 130, "JOHAB_CHARSET"},
    {HFCS_Hebrew, 177, "HEBREW_CHARSET"},
    {HFCS_Arabic, 178, "ARABIC_CHARSET"},
    {HFCS_Greek, 161, "GREEK_CHARSET"},
    {HFCS_Turkish, 162, "TURKISH_CHARSET"},
    {HFCS_Thai, 222, "THAI_CHARSET"},
    {HFCS_EastEurope, 238, "EASTEUROPE_CHARSET"},
    {HFCS_Russian, 204, "RUSSIAN_CHARSET"},
    {HFCS_Mac, 77, "MAC_CHARSET"},
    {HFCS_Baltic, 186, "BALTIC_CHARSET"},
    {HFCS_Default, 0, nullptr},
};
constexpr int kRows = 18;
}  // namespace

const HFontCharsetInfo* hfCharsetTable() { return kCharsets; }

HFontCharset hfIndex2Charset(int index) {
  return index >= 1 && index < kRows ? kCharsets[index].Charset : HFCS_Default;
}

int hfCharset2Index(HFontCharset charset) {
  for (int i = 0; kCharsets[i].Name; ++i)
    if (kCharsets[i].Charset == charset) return i;
  return -1;
}

unsigned char hfCharset2Value(HFontCharset charset) {
  const int i = hfCharset2Index(charset);
  return i >= 0 ? kCharsets[i].Value : 1;
}

HFontCharset hfValue2Charset(unsigned char value) {
  for (int i = 0; kCharsets[i].Name; ++i)
    if (kCharsets[i].Value == value) return kCharsets[i].Charset;
  return HFCS_Default;
}
