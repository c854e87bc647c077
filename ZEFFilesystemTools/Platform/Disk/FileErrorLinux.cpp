// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Disk/FileError.h"

#include <cerrno>

namespace zef {

FileError fileErrorOfErrno(int error)
{
    switch (error) {
    case 0:
        return FileError::none;
    case ENOENT:
    case ESTALE:
        return FileError::notFound;
    case ENOTDIR:
        return FileError::notAFolder;
    case EMFILE:
    case ENFILE:
        return FileError::tooManyOpenFiles;
    case ENOMEM:
        return FileError::outOfMemory;
    case EACCES:
    case EPERM:
        return FileError::accessDenied;
    default:
        return FileError::io;
    }
}

} // namespace zef
