#include <mp/mp_exception.h>
#include <mp/mp_serializable.h>

namespace mp {

ISerializable::~ISerializable() = default;

Exception::Exception(const std::string& what) : std::runtime_error(what) {}
Exception::~Exception() = default;

SharedMemoryException::SharedMemoryException(const std::string& what) : Exception(what) {}
SharedMemoryException::~SharedMemoryException() = default;

} // namespace mp
