#pragma once
/// \file
/// The visible and enabled state of the controls in a container, saved, set
/// on all of them at once, and put back.
#include <memory>

#include "platform/ostrel/myarray.h"
#include "platform/vcl/controls/controls.h"
#include "platform/vcl/core/closure.h"
#include "velkin/controls/h_freewatch.h"
#include "velkin/velkin_api.h"

/// What HControlStatus acts on: bits of the mask given to Restore and Set.
enum HCS_Types : unsigned short {
  HCS_Visible = 0x0001,
  HCS_Enabled = 0x0002,
  HCS_Restore = 0x0100,  ///< from the records rather than to a given value; Restore adds it
};

/// One control's saved state. A derived record saves more (see
/// HControlStatus::CreateStorage).
class VELKIN_API HControlStatusStore {
 public:
  virtual ~HControlStatusStore() = default;
  Controls::TControl* Control = nullptr;  ///< null too once the control is freed
  bool Visible = false;
  bool Enabled = false;
};

/// A snapshot of the Visible and Enabled state of the controls inside a
/// container, owning one record per control: per container its windowless
/// children first, then each windowed child preceded by what was recorded
/// inside it. The container itself is not recorded. Set forces a state on
/// all of them and leaves the snapshot as it was, so Restore undoes it. A
/// control freed after the snapshot is skipped.
class VELKIN_API HControlStatus : public MyArray<HControlStatusStore*> {
 public:
  /// fn(status, record, param) for each record, stopping at the first false.
  using TForEachEvent =
      System::TClosure<bool(HControlStatus* status, HControlStatusStore* record, unsigned long param)>;

  HControlStatus();
  ~HControlStatus() override;

  /// Takes a new snapshot of root's controls. Depth 1 records the children,
  /// n > 1 goes n levels down (with recursive), -1 exactly two levels, and
  /// values below -1 the children only; 0 does nothing, keeping an earlier
  /// snapshot. A null root leaves no snapshot.
  void Store(Controls::TWinControl* root, bool recursive, int depth);
  /// Gives every recorded control back the saved state of each property in
  /// mask (HCS_Visible, HCS_Enabled); visibility first.
  void Restore(unsigned short mask);
  /// Sets each property in mask to value on every recorded control.
  void Set(unsigned short mask, bool value);
  /// Calls fn for each record in order; nothing without a snapshot or fn.
  void ForEach(TForEachEvent fn, unsigned long param);

  Controls::TWinControl* GetRoot() const { return root_; }
  bool GetRecursive() const { return recursive_; }
  int GetDepth() const { return depth_; }

 protected:
  /// The recursive worker of Store.
  void DoStore(Controls::TWinControl* parent, bool recursive, int depth);
  /// The callback of Restore and Set: the low 16 bits of param are the
  /// mask, the high 16 bits the value to set (non-zero: true).
  bool DoProcess(HControlStatus* status, HControlStatusStore* record, unsigned long param);
  /// A new, empty record.
  virtual HControlStatusStore* CreateStorage();
  /// Fills record from control: the control, then Visible, then Enabled.
  virtual void FillStorage(HControlStatusStore* record, Controls::TControl* control);
  void ReleaseItem(HControlStatusStore* record) override;

 private:
  void Forget(Classes::TComponent* control);
  void Clear();

  Controls::TWinControl* root_ = nullptr;
  bool recursive_ = false;
  int depth_ = 0;
  std::unique_ptr<HFreeWatch> watch_;
};
