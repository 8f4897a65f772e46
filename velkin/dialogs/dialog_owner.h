#pragma once
/// \file
/// Owners of the library's dialogs: a window handle, or a control of the
/// framework whose window is then used.
#include <type_traits>

#include "platform/vcl/controls/win_control.h"
#include "velkin/velkin_api.h"

/// A control with a window (a form, a panel...) as a dialog's owner. The typed
/// overloads take it as a template parameter so that a form pointer, which
/// also converts to void*, picks them as the exact match.
template <class C>
concept DialogOwnerControl = std::is_base_of_v<Controls::TWinControl, C>;

/// The window of owner, made when it has none yet; null for a null owner.
template <DialogOwnerControl C>
void* DialogOwnerWindow(C* owner) {
  return owner ? owner->GetHandle() : nullptr;
}

/// Raises Sysutils::Exception, saying the owner is not a window and naming the
/// handle, when window is neither null nor a window: a box owned by it could
/// not be shown, and a form passed as a handle would fail silently.
VELKIN_API void CheckDialogOwner(void* window);
