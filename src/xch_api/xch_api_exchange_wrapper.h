// ExchangeObjectWrapper: the envelope in which one registered exchange
// object crosses the process boundary on a wide-character stream.
//
// The envelope is compact JSON text
//     {"exchange_object_name": "<type>", "binary": true, "exchange_object_data": ...}
// Inline objects carry their own JSON as "exchange_object_data" ("binary"
// is not written). Binary objects are encoded as binary JSON, gzip-
// compressed when the type asks for it, and left in a new shared-memory
// buffer whose UUID text is the "exchange_object_data".
//
// Reading asks the registry for the named type and fills a fresh object:
// inline data at once, a binary body at once or, with delayed loading, when
// the caller calls load() on the object.
//
// Lifetime of shared-memory bodies:
//  * The reader removes a body as soon as load() has copied its bytes, so
//    a normal exchange leaves no shared-memory objects behind.
//  * The writer remembers the bodies it created. Those that were never
//    read are removed when the writing process unloads the library (at
//    normal process exit), or earlier by discardUnreadBodies(). A body
//    therefore lives at most as long as its producer process: a consumer
//    that loads with delay must do so while the producer is running.
#pragma once

#include <istream>
#include <memory>
#include <ostream>

#include <mp/mp_serializable.h>
#include <xch_api/xch_api_exchange_object.h>

namespace xch {

class XCH_API ExchangeObjectWrapper : public mp::ISerializable {
public:
    ExchangeObjectWrapper();
    explicit ExchangeObjectWrapper(const std::shared_ptr<IExchangeObject>& object);
    ~ExchangeObjectWrapper() override;

    // The object to write.
    void set(const std::shared_ptr<IExchangeObject>& object);
    // The object written, or after readObject the object read (empty for
    // an unknown or missing type name).
    const std::shared_ptr<IExchangeObject>& get() const;

    // When true, readObject leaves a binary body in shared memory; the
    // caller calls load() on the object when it needs the data.
    void setDelayedLoading(bool delayed);
    bool delayedLoading() const;

    // Writes the envelope as compact JSON text. Throws std::invalid_argument
    // without an object, std::runtime_error when the text cannot be
    // written, mp::SharedMemoryException when a body cannot be placed.
    void writeObject(std::wostream& out) const override;

    // Reads one envelope (the whole stream). Throws std::invalid_argument
    // when the text is not a JSON object; errors of the object's own
    // reading or loading propagate.
    void readObject(std::wistream& in) override;

    // Removes the shared-memory bodies written by this process that no
    // reader has taken yet. Returns how many were removed.
    static std::size_t discardUnreadBodies();

private:
    std::shared_ptr<IExchangeObject> m_pObject;
    bool m_delayedLoading = false;
};

} // namespace xch
