// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace tool {

/// A value that was read from JSON.
class JSONValue {
public:
    /// A number with a fraction, an exponent or more digits than 64 bits hold.
    struct Fraction {
        double value;
        /// As it is written: `value` may have lost digits.
        std::string text;
    };
    using List = std::vector<JSONValue>;
    using Object = std::vector<std::pair<std::string, JSONValue>>;

    using Variant = std::variant<std::monostate, bool, std::uint64_t, std::int64_t, Fraction,
        std::string, List, Object>;

    JSONValue() = default;
    explicit JSONValue(Variant value);

    /// The value, which is borrowed, if it is of this type: nothing (`std::monostate`), a boolean,
    /// a whole number from 0 up (`std::uint64_t`), another whole number (`std::int64_t`), a
    /// `Fraction`, a text, a `List` or an `Object`; else null.
    template <typename Value> const Value* as() const { return std::get_if<Value>(&_value); }
    template <typename Value> Value* as() { return std::get_if<Value>(&_value); }

    bool isNull() const { return as<std::monostate>(); }
    /// The value of any number; nothing for what is not one.
    std::optional<double> number() const;

    /// The member of an object, the last one of this name; null when it is not there, or this is
    /// not an object.
    const JSONValue* member(std::string_view name) const;
    JSONValue* member(std::string_view name)
    {
        return const_cast<JSONValue*>(std::as_const(*this).member(name));
    }

private:
    Variant _value;
};

} // namespace tool
