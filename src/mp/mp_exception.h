// Exceptions of the multi-process support layer.
#pragma once

#include <stdexcept>
#include <string>

#include <xch_api/xch_api_export.h>

namespace mp {

// Base of every error raised by the multi-process layer.
class XCH_API Exception : public std::runtime_error {
public:
    explicit Exception(const std::string& what);
    ~Exception() override;
};

// A shared-memory object could not be named, created, opened, read,
// written or removed.
class XCH_API SharedMemoryException : public Exception {
public:
    explicit SharedMemoryException(const std::string& what);
    ~SharedMemoryException() override;
};

} // namespace mp
