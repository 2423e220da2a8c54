// Small helpers the example model pieces share.
#pragma once

#include <cstdint>
#include <memory>
#include <sstream>
#include <string>

#include <xch_api/xch_api_entity.h>

namespace example {

// Face `subentId` of block `blockId`, reached through one reference.
inline std::shared_ptr<xch::ExcEntity> face(std::uint64_t blockId, std::uint64_t subentId) {
    auto path = std::make_shared<xch::ExcFullSubentPath>(subentId);
    path->setSubentType(xch::ExcFullSubentPath::Face);
    path->refs().push_back(L"ref-" + std::to_wstring(blockId));
    return std::make_shared<xch::ExcEntity>(path);
}

// A number as the examples print it.
inline std::wstring number(double value) {
    std::wostringstream out;
    out << value;
    return out.str();
}

} // namespace example
