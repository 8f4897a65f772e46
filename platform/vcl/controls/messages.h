#pragma once
/// \file
/// The framework's own window message numbers.
#include <windows.h>

/// The framework's own window messages. Numbers are fixed: host code and
/// tracing tables compare against them, and streamed forms never store them.
namespace Controls {

/// Component messages, sent by the framework to its controls.
constexpr unsigned int CM_BASE = 0xB000;
constexpr unsigned int CM_ACTIVATE = CM_BASE + 0;
constexpr unsigned int CM_DEACTIVATE = CM_BASE + 1;
constexpr unsigned int CM_GOTFOCUS = CM_BASE + 2;
constexpr unsigned int CM_LOSTFOCUS = CM_BASE + 3;
constexpr unsigned int CM_CANCELMODE = CM_BASE + 4;
constexpr unsigned int CM_DIALOGKEY = CM_BASE + 5;
constexpr unsigned int CM_DIALOGCHAR = CM_BASE + 6;
constexpr unsigned int CM_FOCUSCHANGED = CM_BASE + 7;
constexpr unsigned int CM_PARENTFONTCHANGED = CM_BASE + 8;
constexpr unsigned int CM_PARENTCOLORCHANGED = CM_BASE + 9;
constexpr unsigned int CM_HITTEST = CM_BASE + 10;
constexpr unsigned int CM_VISIBLECHANGED = CM_BASE + 11;
constexpr unsigned int CM_ENABLEDCHANGED = CM_BASE + 12;
constexpr unsigned int CM_COLORCHANGED = CM_BASE + 13;
constexpr unsigned int CM_FONTCHANGED = CM_BASE + 14;
constexpr unsigned int CM_CURSORCHANGED = CM_BASE + 15;
constexpr unsigned int CM_CTL3DCHANGED = CM_BASE + 16;
constexpr unsigned int CM_PARENTCTL3DCHANGED = CM_BASE + 17;
constexpr unsigned int CM_TEXTCHANGED = CM_BASE + 18;
constexpr unsigned int CM_MOUSEENTER = CM_BASE + 19;
constexpr unsigned int CM_MOUSELEAVE = CM_BASE + 20;
constexpr unsigned int CM_MENUCHANGED = CM_BASE + 21;
constexpr unsigned int CM_APPKEYDOWN = CM_BASE + 22;
constexpr unsigned int CM_APPSYSCOMMAND = CM_BASE + 23;
constexpr unsigned int CM_BUTTONPRESSED = CM_BASE + 24;
constexpr unsigned int CM_SHOWINGCHANGED = CM_BASE + 25;
constexpr unsigned int CM_ENTER = CM_BASE + 26;
constexpr unsigned int CM_EXIT = CM_BASE + 27;
constexpr unsigned int CM_DESIGNHITTEST = CM_BASE + 28;
constexpr unsigned int CM_ICONCHANGED = CM_BASE + 29;
constexpr unsigned int CM_WANTSPECIALKEY = CM_BASE + 30;
constexpr unsigned int CM_INVOKEHELP = CM_BASE + 31;
constexpr unsigned int CM_WINDOWHOOK = CM_BASE + 32;
constexpr unsigned int CM_RELEASE = CM_BASE + 33;
constexpr unsigned int CM_SHOWHINTCHANGED = CM_BASE + 34;
constexpr unsigned int CM_PARENTSHOWHINTCHANGED = CM_BASE + 35;
constexpr unsigned int CM_SYSCOLORCHANGE = CM_BASE + 36;
constexpr unsigned int CM_WININICHANGE = CM_BASE + 37;
constexpr unsigned int CM_FONTCHANGE = CM_BASE + 38;
constexpr unsigned int CM_TIMECHANGE = CM_BASE + 39;
constexpr unsigned int CM_TABSTOPCHANGED = CM_BASE + 40;
constexpr unsigned int CM_UIACTIVATE = CM_BASE + 41;
constexpr unsigned int CM_UIDEACTIVATE = CM_BASE + 42;
constexpr unsigned int CM_DOCWINDOWACTIVATE = CM_BASE + 43;
constexpr unsigned int CM_CONTROLLISTCHANGE = CM_BASE + 44;
constexpr unsigned int CM_GETDATALINK = CM_BASE + 45;
constexpr unsigned int CM_CHILDKEY = CM_BASE + 46;
constexpr unsigned int CM_DRAG = CM_BASE + 47;
constexpr unsigned int CM_HINTSHOW = CM_BASE + 48;
constexpr unsigned int CM_DIALOGHANDLE = CM_BASE + 49;
constexpr unsigned int CM_ISTOOLCONTROL = CM_BASE + 50;
constexpr unsigned int CM_RECREATEWND = CM_BASE + 51;
constexpr unsigned int CM_INVALIDATE = CM_BASE + 52;
constexpr unsigned int CM_SYSFONTCHANGED = CM_BASE + 53;
constexpr unsigned int CM_CONTROLCHANGE = CM_BASE + 54;
constexpr unsigned int CM_CHANGED = CM_BASE + 55;
constexpr unsigned int CM_DOCKCLIENT = CM_BASE + 56;
constexpr unsigned int CM_UNDOCKCLIENT = CM_BASE + 57;
constexpr unsigned int CM_FLOAT = CM_BASE + 58;
constexpr unsigned int CM_BORDERCHANGED = CM_BASE + 59;
constexpr unsigned int CM_BIDIMODECHANGED = CM_BASE + 60;
constexpr unsigned int CM_PARENTBIDIMODECHANGED = CM_BASE + 61;
constexpr unsigned int CM_ALLCHILDRENFLIPPED = CM_BASE + 62;
constexpr unsigned int CM_ACTIONUPDATE = CM_BASE + 63;
constexpr unsigned int CM_ACTIONEXECUTE = CM_BASE + 64;
constexpr unsigned int CM_HINTSHOWPAUSE = CM_BASE + 65;
constexpr unsigned int CM_DOCKNOTIFICATION = CM_BASE + 66;
constexpr unsigned int CM_MOUSEWHEEL = CM_BASE + 67;
/// WM_SYSCHAR's character as a code point (WParam), as WM_UNICHAR is
/// WM_CHAR's: how the framework's loops give an 8-bit window of a UTF-8
/// program an Alt+letter whole.
constexpr unsigned int CM_SYSUNICHAR = CM_BASE + 0x100;

/// Notification messages: a parent reflects a child's WM_ notification back to
/// the child as CN_BASE plus the original message number.
constexpr unsigned int CN_BASE = 0xBC00;
constexpr unsigned int CN_CHARTOITEM = CN_BASE + WM_CHARTOITEM;
constexpr unsigned int CN_COMMAND = CN_BASE + WM_COMMAND;
constexpr unsigned int CN_COMPAREITEM = CN_BASE + WM_COMPAREITEM;
constexpr unsigned int CN_CTLCOLORBTN = CN_BASE + WM_CTLCOLORBTN;
constexpr unsigned int CN_CTLCOLORDLG = CN_BASE + WM_CTLCOLORDLG;
constexpr unsigned int CN_CTLCOLOREDIT = CN_BASE + WM_CTLCOLOREDIT;
constexpr unsigned int CN_CTLCOLORLISTBOX = CN_BASE + WM_CTLCOLORLISTBOX;
constexpr unsigned int CN_CTLCOLORMSGBOX = CN_BASE + WM_CTLCOLORMSGBOX;
constexpr unsigned int CN_CTLCOLORSCROLLBAR = CN_BASE + WM_CTLCOLORSCROLLBAR;
constexpr unsigned int CN_CTLCOLORSTATIC = CN_BASE + WM_CTLCOLORSTATIC;
constexpr unsigned int CN_DELETEITEM = CN_BASE + WM_DELETEITEM;
constexpr unsigned int CN_DRAWITEM = CN_BASE + WM_DRAWITEM;
constexpr unsigned int CN_HSCROLL = CN_BASE + WM_HSCROLL;
constexpr unsigned int CN_MEASUREITEM = CN_BASE + WM_MEASUREITEM;
constexpr unsigned int CN_PARENTNOTIFY = CN_BASE + WM_PARENTNOTIFY;
constexpr unsigned int CN_VKEYTOITEM = CN_BASE + WM_VKEYTOITEM;
constexpr unsigned int CN_VSCROLL = CN_BASE + WM_VSCROLL;
constexpr unsigned int CN_KEYDOWN = CN_BASE + WM_KEYDOWN;
constexpr unsigned int CN_KEYUP = CN_BASE + WM_KEYUP;
constexpr unsigned int CN_CHAR = CN_BASE + WM_CHAR;
constexpr unsigned int CN_SYSKEYDOWN = CN_BASE + WM_SYSKEYDOWN;
constexpr unsigned int CN_SYSCHAR = CN_BASE + WM_SYSCHAR;
constexpr unsigned int CN_NOTIFY = CN_BASE + WM_NOTIFY;

}  // namespace Controls
