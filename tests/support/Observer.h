// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Objects/ZEFObject.h"

/// An object that does nothing but ask what happened to files.
class Observer final : public ZEFObject { };
