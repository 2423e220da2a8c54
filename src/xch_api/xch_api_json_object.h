// IJsonObject: a class that writes itself into a JSON value and reads itself
// back. Every exchange class, nested or top-level, implements it.
#pragma once

#include <xch_api/xch_api_json.h>

namespace xch {

class XCH_API IJsonObject {
public:
    virtual ~IJsonObject();
    // Fills this object from `value`. Readers are lenient: a missing or
    // mistyped member leaves its field unchanged; a value of the wrong kind
    // is logged and ignored.
    virtual void readObject(const JsonValue& value) = 0;
    // Writes this object into `value`, allocating from the document's
    // allocator.
    virtual void writeObject(JsonValue& value, JsonAllocator& allocator) const = 0;
};

} // namespace xch
