// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/BasicInfo/ZEFBasicInfoFileItem.h"
#include "ZEFFilesystemTools/FileItems/ZEFArchiveDictionary.h"
#include "ZEFFilesystemTools/FileItems/ZEFFileItem.h"
#include "ZEFFilesystemTools/FileManager/ZEFFileManager.h"
#include "ZEFFilesystemTools/Loading/ZEFAsynchronousFileLoader.h"
#include "ZEFFilesystemTools/Loading/ZEFFileLoadOperation.h"
#include "ZEFFilesystemTools/Loading/ZEFFilters.h"
#include "ZEFFilesystemTools/Platform/Locator/Locator.h"
#include "ZEFFilesystemTools/Platform/RunLoop/RunLoop.h"
#include "ZEFFilesystemTools/Platform/Text/LocalizedString.h"
#include "ZEFFilesystemTools/Platform/Text/Log.h"
#include "ZEFFilesystemTools/Platform/Threads/OperationQueue.h"
#include "ZEFFilesystemTools/Platform/Time/DateChrono.h"
#include "ZEFFilesystemTools/Platform/Types/TypeTable.h"
#include "ZEFFilesystemTools/Subscriptions/ZEFDirectorySubscription.h"
