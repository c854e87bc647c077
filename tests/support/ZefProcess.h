// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

/// A running zef program, the one beside the test program, whose input and outputs the test has in
/// its hands. Waiting ends with what is waited for, and throws if the program does nothing for a
/// minute.
class ZefProcess {
public:
    /// What the program's input and outputs are: three pipes, or one terminal.
    enum class Streams { pipes, terminal };

    struct Settings {
        Streams streams = Streams::pipes;
        /// The terminal's width.
        unsigned short columns = 200;
        /// Descriptors that the program finds closed.
        std::vector<int> closed{};
        /// Whether the reader of the program's output, a pipe, is gone before it starts.
        bool nobodyReads = false;
        /// Environment variables to set, or to remove where there is no value.
        std::map<std::string, std::optional<std::string>> environment{};
        /// The folder to run in; the test's own when empty.
        std::string folder{};
        /// Takes away what root may do beyond other users, its number apart (capabilities(7)).
        bool withoutPrivileges = false;
    };

    /// What a whole run wrote, and its status.
    struct Result {
        std::string output;
        std::string errors;
        int status;
    };

    /// A run from its start to its end, with `input` as its whole input.
    static Result run(const std::vector<std::string>& arguments, std::string_view input = {},
        const Settings& settings = noSettings());

    explicit ZefProcess(const std::vector<std::string>& arguments);
    ZefProcess(const std::vector<std::string>& arguments, const Settings& settings);
    /// Ends the program if it still runs.
    ~ZefProcess();
    ZefProcess(const ZefProcess&) = delete;
    ZefProcess& operator=(const ZefProcess&) = delete;

    /// Sends bytes to the program's input, and takes in what it writes meanwhile.
    void send(std::string_view bytes);
    /// Sends as much as the program takes while nobody reads what it writes; returns when neither
    /// side gets on any more.
    void sendUntilStuck(std::string_view line);
    void closeInput();
    void closeOutput();
    void signal(int number) const;
    /// Makes the program stand still from now until `goOn`.
    void standStill() const;
    void goOn() const;

    /// The next line of the program's output without its end; nothing when the output has ended.
    std::optional<std::string> nextLine();
    /// Takes lines until one contains `text`, and returns that; nothing when the output has ended.
    std::optional<std::string> lineWith(std::string_view text);
    /// Everything that is still to come, up to the end of the output.
    std::string rest();

    /// Waits until the program ends; its exit status, or minus the signal that ended it.
    int status();
    /// What the program wrote to standard error until its end.
    std::string errorText();

private:
    class Pipes;

    static const Settings& noSettings();

    void startOnPipes(const std::vector<std::string>& arguments, const Settings& settings);
    void startOnTerminal(const std::vector<std::string>& arguments, const Settings& settings);
    std::optional<std::string> takeLine();
    /// Waits until something can be read, or written if there is anything to send, and does it.
    void pump(std::string_view& toSend);
    void pump();
    void readInto(std::string& text, int& descriptor);

    pid_t _process = -1;
    int _input = -1;
    int _output = -1;
    int _error = -1;
    std::string _outputText;
    std::string _errorText;
    std::optional<int> _status;
};
