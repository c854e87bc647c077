// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <mutex>
#include <string_view>

namespace tool {

/// Writes text to a descriptor, at once and whole.
///
/// Any thread; what two threads write doesn't mix. After a failure nothing more is written.
class Output {
public:
    static Output& standardOutput();
    static Output& standardError();

    /// Writes for as long as it takes; false if the text could not be written whole because of an
    /// error, or because the program was asked to end while nobody read.
    bool write(std::string_view text);

    /// The error number of the write that failed; 0 while none has.
    int error() const { return _error; }

    /// Takes note that nobody reads any more.
    void setClosed();

    bool isTerminal() const;
    /// Whether colours are welcome: on a terminal that knows them, unless NO_COLOR is set.
    bool showsColors() const;

private:
    explicit Output(int descriptor)
        : _descriptor(descriptor)
    {
    }

    bool waitUntilWritable() const;

    int _descriptor;
    std::mutex _mutex;
    std::atomic<int> _error{ 0 };
};

/// Makes sure that descriptors 0 to 2 are taken, so that no file that is opened later gets mixed up
/// with standard output. Whoever uses one that was closed gets an error.
void occupyStandardDescriptors();

/// Writes `zef: MESSAGE` to standard error, fit for a terminal.
void complain(std::string_view message);

/// The same about one file: `zef: PATH: REASON`.
void complain(std::string_view path, std::string_view reason);

/// Tells of a failure of standard output, unless it is only that nobody reads any more; returns the
/// status to end with.
int statusOfOutput();

} // namespace tool
