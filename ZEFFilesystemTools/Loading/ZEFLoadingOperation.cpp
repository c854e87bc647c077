// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Loading/ZEFLoadingOperation.h"

namespace {

constexpr std::size_t initialCapacity = 300;

} // namespace

const zef::Class ZEFLoadingOperation::classObject{ "ZEFLoadingOperation",
    &zef::Operation::classObject };

ZEFLoadingOperation::ZEFLoadingOperation()
    : _loadingArrayLock(zef::makeRef<zef::Lock>())
    , _loadingArray(zef::makeRef<ZEFFileItemArray>(initialCapacity))
{
}

ZEFLoadingOperation::~ZEFLoadingOperation() = default;

void ZEFLoadingOperation::setLoadingArray(zef::Ref<ZEFFileItemArray> array)
{
    _loadingArray = std::move(array);
}

void ZEFLoadingOperation::setLoadingArrayLock(zef::Ref<zef::Lock> lock)
{
    _loadingArrayLock = std::move(lock);
}
