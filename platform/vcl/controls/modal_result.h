#pragma once
/// \file
/// The result of a modal form: which button ended it.

namespace Controls {

/// mrNone keeps a modal form open; any other value ends ShowModal with it.
using TModalResult = int;
constexpr TModalResult mrNone = 0;
constexpr TModalResult mrOk = 1;
constexpr TModalResult mrCancel = 2;
constexpr TModalResult mrAbort = 3;
constexpr TModalResult mrRetry = 4;
constexpr TModalResult mrIgnore = 5;
constexpr TModalResult mrYes = 6;
constexpr TModalResult mrNo = 7;
constexpr TModalResult mrAll = 8;
constexpr TModalResult mrNoToAll = 9;
constexpr TModalResult mrYesToAll = 10;

}  // namespace Controls
