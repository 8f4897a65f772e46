#pragma once
/// \file
/// Unit Vcl_utils: colour values and names, alignments as DrawText flags,
/// key and mouse state as message flags, line breaks, colour blends and the
/// directory chooser.
#include "platform/vcl/controls/controls.h"
#include "platform/vcl/graphics/color.h"
#include "platform/vcl/stdctrls/std_label.h"
#include "velkin/velkin_api.h"

/// What the colour functions give for no colour: clNone.
constexpr Graphics::TColor HNoColor = Graphics::TColor(0x1FFFFFFF);
/// Entries in the colour-name table.
constexpr int HVCLColorCount = 43;

/// The name of the first table entry with this value, else "0x%X" of it in
/// one buffer shared by every caller (and thread): copy it before the next
/// call.
VELKIN_API const char* VCLColor2Str(Graphics::TColor color);
///@{
/// Index of the first table entry with this value or exact name, or -1.
VELKIN_API int VCLColorIndexOf(Graphics::TColor color);
VELKIN_API int VCLColorIndexOf(const char* name);
///@}
/// The value at a table index; HNoColor outside 0..42.
VELKIN_API Graphics::TColor GetVCLColor(int index);
/// The name at a table index; "" outside 0..42.
VELKIN_API const char* GetVCLColorName(int index);
/// "0x..." as hexadecimal (HNoColor when unreadable), "cl..." as a table
/// name (HNoColor when unknown), anything else as a decimal number (0 when
/// not one). Null reads as "".
VELKIN_API Graphics::TColor Str2VCLColor(const char* text);
/// Step of a blend from From towards To: From itself for 0 steps, To for
/// more than 8, otherwise each channel (To*(Steps-1) + From + (Steps+1)/2) /
/// Steps kept to 8 bits, so one step adds one and wraps 255 to 0.
VELKIN_API Graphics::TColor GetTransColor(Graphics::TColor From, Graphics::TColor To, int Steps);

/// DrawText flags of a text alignment along either axis: right/centre
/// horizontally, bottom/vertical centre otherwise.
VELKIN_API int Align2DTFlags(Stdctrls::TAlignment Alignment, bool Horizontal);
/// DrawText flags of a vertical layout; unknown values centre.
VELKIN_API int Layout2DTFlags(Stdctrls::TTextLayout Layout);
/// The opposite side; alNone, alClient and others unchanged.
VELKIN_API Controls::TAlign Align2Opposite(Controls::TAlign Align);
/// Whether a control aligned so stands upright (left or right).
VELKIN_API bool IsVertical(Controls::TAlign Align);
/// The shift keys and mouse buttons held down now.
VELKIN_API Controls::TShiftState VCLMouseShifts();
/// The flag word of a mouse message for a shift state, in the library's own
/// mapping: Shift is 8 and Ctrl 4 (the other way round from MK_SHIFT and
/// MK_CONTROL), buttons as MK_LBUTTON, MK_RBUTTON, MK_MBUTTON; Alt nothing.
VELKIN_API unsigned ShiftToWMParam(Controls::TShiftState Shift);
/// Every run of CR and LF characters becomes one LF: empty lines go.
VELKIN_API System::AnsiString VCLNormalizeNRString(const System::AnsiString& Text);
/// The directory dialog; with AllowCreate a missing folder may be typed, is
/// confirmed and made. Directory receives the choice.
VELKIN_API bool HSelectDirectory(System::AnsiString& Directory, bool AllowCreate);
