#pragma once
/// \file
/// Prelude: the framework's units, in scope.
#include "platform/vcl/controls/controls.h"
#include "platform/vcl/controls/messages.h"
#include "platform/vcl/core/class_registry.h"
#include "platform/vcl/core/classes.h"
#include "platform/vcl/core/component.h"
#include "platform/vcl/core/event_handlers.h"
#include "platform/vcl/core/package.h"
#include "platform/vcl/core/system.h"
#include "platform/vcl/core/sysutils.h"
#include "platform/vcl/graphics/graphics.h"

using namespace System;
using namespace Sysutils;
using namespace Classes;
using namespace Graphics;
using namespace Controls;
