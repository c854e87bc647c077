// SPDX-License-Identifier: MIT
#include "tools/zef/Serve/BasicInfoMethods.h"

namespace tool {

void BasicInfoMethods::addTo(MethodTable& table)
{
    table.add("basicInfo", { "id" }, [](const Parameters& parameters) {
        const auto item = parameters.basicInfoItem("id");
        return jsonOfBasicInfo(*item);
    });
    table.add("resetAliasStatus", { "id" }, [](const Parameters& parameters) {
        return parameters.basicInfoItem("id")->resetAliasStatus();
    });
    table.add("conformsTo", { "uti", "to" }, [](const Parameters& parameters) {
        return zef::TypeTable::shared().conforms(parameters.text("uti"), parameters.text("to"));
    });
}

} // namespace tool
