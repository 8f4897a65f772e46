#pragma once
/// \file
/// Unit H_dynarray: controls lifted out of template forms, placed into other
/// parents, stacked by alignment and handed back to their forms.
#include "platform/ostrel/myarray.h"
#include "platform/vcl/forms/forms.h"
#include "velkin/velkin_api.h"

/// One placement: the template form's first control, where it went, the
/// application's key and the designed alignment and bounds to go back to.
struct HDynamicControl {
  /// Removing the record also destroys Form. Never set by the array.
  bool OwnsForm;
  Forms::TForm* Form;
  Controls::TControl* Control;
  Controls::TWinControl* Parent;
  /// The application's key: a number or a string, as the comparer reads it.
  void* Data;
  Controls::TAlign Align;
  int Left, Top, Width, Height;
};

/// Placements of template controls, in insertion order or kept sorted by a
/// comparer. Destroying the array leaves the controls where they are; DeleteNum
/// and DeleteAll hand them back first (through BaseArray they do not).
class VELKIN_API HDynamicArray : public MyValArray<HDynamicControl> {
 public:
  using Comparer = MyValArray<HDynamicControl>::Comparer;

  /// Tag is kept for the application; the array does not read it.
  HDynamicArray(Comparer Compare, int Tag);

  /// Moves Form's first control into Parent. With an alignment other than
  /// alNone the control is stacked after Parent's children of that alignment
  /// and Left/Top are ignored; with alNone it goes to Left/Top (-1 keeps the
  /// designed one). Form's OnShow runs with a null sender once it is in a
  /// parent. The stored record, valid until the array next changes, or null
  /// for a missing or empty form.
  HDynamicControl* NewControl(void* Data, Forms::TForm* Form, Controls::TWinControl* Parent, Controls::TAlign Align,
                              int Left, int Top);
  /// Hands the control back to its form with its designed alignment and
  /// bounds (after the form's OnHide, null sender); destroys the form when
  /// the record owns it. The record stays in the array.
  void RemoveControl(HDynamicControl* Record);
  /// RemoveControl, then the record leaves the array; false for a bad index.
  bool DeleteNum(int Index);
  /// RemoveControl on every record in index order, then empties the array.
  void DeleteAll();

  /// Index of a record whose Data equals the key (binary search by Compare,
  /// or by number without one), or -1.
  int Locate(void* Data) const;
  /// Index of the first record placing Control, or -1 (also for null).
  int LocateByControl(const Controls::TControl* Control) const;
  /// Index of the first record placed into Parent, or -1 (also for null).
  int LocateByParent(const Controls::TWinControl* Parent) const;

  /// Data as 32-bit numbers, a minus b (wrapping as 32-bit arithmetic does).
  static int idNumberCmp(const HDynamicControl* a, const HDynamicControl* b);
  /// Data as zero-terminated strings, case folded.
  static int idStringCmp(const HDynamicControl* a, const HDynamicControl* b);

  /// The order of the array; null keeps insertion order. Changing it does
  /// not re-sort the records already stored.
  Comparer GetCompare() const { return compare_; }
  void SetCompare(Comparer value) { compare_ = value; }
  int GetTag() const { return tag_; }
  void SetTag(int value) { tag_ = value; }

 private:
  Comparer compare_;
  int tag_;
};
