#pragma once
/// \file
/// Unit Filectrl: the directory dialog.
#include "platform/pellum/pellum_api.h"
#include "platform/vcl/core/ansistring.h"
#include "platform/vcl/core/set.h"

namespace Filectrl {

/// What the directory dialog allows for a directory that does not exist.
enum TSelectDirOpt {
  sdAllowCreate,    ///< a missing directory may be chosen
  sdPerformCreate,  ///< and is made (with every missing level) before the dialog returns
  sdPrompt          ///< after the user says yes to making it
};
/// A set of TSelectDirOpt.
using TSelectDirOpts = System::Set<TSelectDirOpt, sdAllowCreate, sdPrompt>;

/// Lets the user pick a directory in a modal dialog: the path typed or
/// reached through the folder list and the drive list. Starts at directory
/// when it exists, else at the current directory. True, with directory set,
/// when the user confirms; false, with directory as it was, otherwise. OK on
/// a missing directory is refused (the dialog stays) unless the options allow
/// it. helpContext is kept by the dialog for a help system.
PELLUM_API bool SelectDirectory(System::AnsiString& directory, TSelectDirOpts options, int helpContext);

}  // namespace Filectrl
