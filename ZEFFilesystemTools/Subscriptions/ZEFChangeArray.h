// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/FileItems/ZEFChangeRecord.h"
#include "ZEFFilesystemTools/FileItems/ZEFFileItem.h"
#include "ZEFFilesystemTools/Platform/Objects/Array.h"

/// Change records in the order in which they were found. Every subscriber gets the same object.
using ZEFChangeArray = zef::Array<ZEFChangeRecord>;
