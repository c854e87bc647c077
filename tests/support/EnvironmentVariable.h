// SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>
#include <optional>
#include <string>
#include <utility>

/// Gives an environment variable another value while this lives. Only while no other thread looks
/// at the environment.
class EnvironmentVariable {
public:
    EnvironmentVariable(std::string name, const std::string& value)
        : _name(std::move(name))
    {
        if (const auto* former = std::getenv(_name.c_str()))
            _former = former;
        set(value);
    }

    ~EnvironmentVariable()
    {
        if (_former)
            set(*_former);
        else
            unset();
    }

    EnvironmentVariable(const EnvironmentVariable&) = delete;
    EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;

    void set(const std::string& value) { ::setenv(_name.c_str(), value.c_str(), 1); }
    void unset() { ::unsetenv(_name.c_str()); }

private:
    std::string _name;
    std::optional<std::string> _former;
};
