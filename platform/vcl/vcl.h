#pragma once
/// \file
/// Prelude: the framework's units, in scope.
#include "platform/vcl/class_registry.h"
#include "platform/vcl/classes.h"
#include "platform/vcl/component.h"
#include "platform/vcl/controls.h"
#include "platform/vcl/graphics.h"
#include "platform/vcl/messages.h"
#include "platform/vcl/package.h"
#include "platform/vcl/system.h"
#include "platform/vcl/sysutils.h"

using namespace System;
using namespace Sysutils;
using namespace Classes;
using namespace Graphics;
using namespace Controls;
