// SPDX-License-Identifier: MIT
#include "benchmarks/support/WalkPeers.h"

#ifdef ZEF_HAS_QT

#include <QDirIterator>
#include <QFileInfo>

bool peers::hasQt()
{
    return true;
}

std::size_t peers::qt(const std::string& path)
{
    std::vector<QFileInfo> found;
    QDirIterator entries(QString::fromLocal8Bit(path.c_str()),
        QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
        QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        entries.next();
        found.push_back(entries.fileInfo());
        static_cast<void>(found.back().size());
    }
    return found.size();
}

#else

bool peers::hasQt()
{
    return false;
}

std::size_t peers::qt(const std::string&)
{
    return 0;
}

#endif
