// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <set>
#include <string>

#include <sys/types.h>

/// Another process that changes files at random below one folder, as programs and people do.
///
/// Made by fork(2): make it before there are threads. It ends with this object.
class Meddler {
public:
    /// Works below `root`, in whatever folders it finds there.
    explicit Meddler(std::string root);
    ~Meddler();
    Meddler(const Meddler&) = delete;
    Meddler& operator=(const Meddler&) = delete;

    /// Begins `count` operations that follow from `seed`, and returns at once.
    void begin(std::uint64_t seed, int count);

    /// Stops this whole process by SIGSTOP while the other one does `count` operations.
    void doWhileStopped(std::uint64_t seed, int count);

    /// Waits until the operations that were begun are done.
    void finish();

    /// The numbers of the files that ever had several names, even if only for a moment.
    const std::set<std::uint64_t>& filesWithSeveralNames() const { return _filesWithSeveralNames; }
    /// For a new tree.
    void forgetFiles() { _filesWithSeveralNames.clear(); }

private:
    struct Request;
    struct Answer;

    void send(const Request&);
    [[noreturn]] void work();

    std::string _root;
    pid_t _process = -1;
    int _requests = -1;
    int _answers = -1;
    std::set<std::uint64_t> _filesWithSeveralNames;
};
