// Everything the command handlers share to talk to the host: resources and
// localized strings, system-variable guards, tolerances, result-buffer,
// selection-set, coordinate, message, entity and block helpers.
#pragma once

#include "framework/BlockUtils.h"
#include "framework/CoordUtils.h"
#include "framework/EntityUtils.h"
#include "framework/MessageUtils.h"
#include "framework/ModuleResources.h"
#include "framework/ResbufUtils.h"
#include "framework/SelectionUtils.h"
#include "framework/SysVarGuards.h"
#include "framework/Tolerances.h"
