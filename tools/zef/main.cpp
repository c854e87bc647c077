// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Text/Log.h"

#include "tools/zef/CommandLine.h"
#include "tools/zef/ExitStatus.h"
#include "tools/zef/Interruption.h"
#include "tools/zef/Output.h"

#include <exception>

int main(int argumentCount, char** arguments)
{
    try {
        tool::occupyStandardDescriptors();
        tool::Interruption::install();
        zef::setLogSink([](std::string_view line) { tool::complain(line); });
        return tool::runCommandLine(argumentCount, arguments);
    } catch (const std::exception& error) {
        tool::complain(error.what());
        return tool::ExitStatus::failed;
    }
}
