// mp::ISerializable: an object that writes itself onto and reads itself
// from a wide-character stream (the envelope, Command, Result).
#pragma once

#include <istream>
#include <ostream>

#include <xch_api/xch_api_export.h>

namespace mp {

class XCH_API ISerializable {
public:
    virtual ~ISerializable();
    virtual void writeObject(std::wostream& out) const = 0;
    virtual void readObject(std::wistream& in) = 0;
};

} // namespace mp
