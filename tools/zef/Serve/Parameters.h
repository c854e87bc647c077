// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/BasicInfo/ZEFBasicInfoFileItem.h"
#include "ZEFFilesystemTools/FileItems/ZEFArchiveDictionary.h"
#include "ZEFFilesystemTools/Loading/ZEFLoadingOperation.h"

#include "tools/zef/JSON/JSONValue.h"

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

namespace tool {

/// The parameters of one request, by name. What is missing or wrong throws `RPCError`; null stands
/// for left out.
class Parameters {
public:
    /// `values` (borrowed) has to be an object without other names than `known`.
    Parameters(const JSONValue& values, const std::vector<std::string>& known);

    bool has(const std::string& name) const { return find(name); }
    /// The one of these names that is there; empty when none is. Several are an error.
    std::string choice(std::initializer_list<const char*> names) const;

    std::string text(const std::string& name) const;
    std::uint64_t number(const std::string& name) const;
    /// A whole number, which may be negative.
    std::ptrdiff_t integer(const std::string& name) const;
    double seconds(const std::string& name) const;
    bool boolean(const std::string& name) const;
    zef::FileURL url(const std::string& name) const;
    /// The living item with this number.
    zef::Ref<ZEFFileItem> item(const std::string& name) const;
    /// The living items with the numbers in a list.
    zef::Ref<ZEFFileItemArray> items(const std::string& name) const;
    /// As `item`; a plain one is an error.
    zef::Ref<ZEFBasicInfoFileItem> basicInfoItem(const std::string& name) const;

    zef::Ref<ZEFArchiveDictionary> archive(const std::string& name) const;

    /// The item as one with basic info; a plain one is an error.
    static ZEFBasicInfoFileItem& withBasicInfo(ZEFFileItem&);

    [[noreturn]] static void refuse(const std::string& message);

private:
    static std::uint64_t number(const std::string& name, const JSONValue& given);
    static zef::Ref<ZEFFileItem> item(std::uint64_t number);
    const JSONValue* find(const std::string& name) const;
    const JSONValue& value(const std::string& name) const;

    const JSONValue& _values;
};

} // namespace tool
