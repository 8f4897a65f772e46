#pragma once
/// \file
/// Unit Xmessagebox: a message box laid out by the library and run from a
/// dialog template written in memory, with buttons and a check box that the
/// system's own message box does not have.
#include "velkin/dialogs/dialog_owner.h"
#include "velkin/velkin_api.h"

///@{
/// Bits of XMessageBox's style word beyond the system message box's: a
/// Continue/Abort button set (in the button-set nibble), a fifth and sixth
/// default button, the "Don't ask me again" / "Don't tell me again" check box,
/// Yes to All and No to All beside Yes and No, texts from the built-in English
/// rather than the string tables, and no beep.
constexpr unsigned XMB_CONTINUEABORT = 0x00000008;
constexpr unsigned XMB_DEFBUTTON5 = 0x00000400;
constexpr unsigned XMB_DEFBUTTON6 = 0x00000500;
constexpr unsigned XMB_DONOTASKAGAIN = 0x01000000;
constexpr unsigned XMB_DONOTTELLAGAIN = 0x02000000;
constexpr unsigned XMB_YESTOALL = 0x04000000;
constexpr unsigned XMB_NOTOALL = 0x08000000;
constexpr unsigned XMB_NORESOURCE = 0x10000000;
constexpr unsigned XMB_NOSOUND = 0x80000000;
///@}

///@{
/// Results of the extra buttons. Continue also answers IDYESTOALL.
constexpr int IDYESTOALL = 11;
constexpr int IDNOTOALL = 12;
///@}

/// Shows a modal message box and returns the id of the button that closed it,
/// ORed with the check box's bit (XMB_DONOTASKAGAIN or XMB_DONOTTELLAGAIN)
/// when the box was shown and ticked. A null owner means the desktop; an
/// owner that is not a window raises Sysutils::Exception. A null or empty
/// caption means the executable's full path. A system-modal stop or
/// exclamation box (style bits 0x1010) is the system's own message box.
/// Returns IDCANCEL when the template's memory cannot be had, and the dialog
/// manager's -1 when it fails. From the GUI thread only, and not nested: the
/// box's working state is the unit's own. A style word naming no button, or
/// Yes/No to All on the OK or the Continue/Abort set, is a programming error:
/// it ends the process with an assertion message.
VELKIN_API int XMessageBox(void* owner, const char* text, const char* caption, unsigned style, unsigned helpContext);

/// The same box owned by a control's window (made when it has none yet); a
/// null control means the desktop.
template <DialogOwnerControl C>
int XMessageBox(C* owner, const char* text, const char* caption, unsigned style, unsigned helpContext) {
  return XMessageBox(DialogOwnerWindow(owner), text, caption, style, helpContext);
}
