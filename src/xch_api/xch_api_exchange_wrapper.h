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
// Lifetime of shared-memory bodies. A body must outlive its writer: the
// reader may load it later (delayed loading), after the writing process has
// exited, from a clone, or more than once. So nothing removes a body by
// default, neither the writer, nor the reader, nor process exit. Cleanup
// is explicit:
//  * the reading side opts in with setReleaseAfterLoad(true): a successful
//    load() then removes the body it read (a failed one leaves it for
//    inspection or a retry);
//  * mp::removeExchangeBuffersOlderThan (mp_shared_cleanup.h) and
//    `xch shm clean` remove this user's exchange buffers by age, for
//    bodies that nobody loaded (a reader that died, an envelope lost).
// Every body written is logged at debug level (5) with its name before it
// is created, so that a log names the buffers a process may have left.
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

    // When true, an object read from a binary envelope removes its body
    // from shared memory once load() has succeeded (at once, or later with
    // delayed loading): IExchangeObject::setReleaseAfterLoad. Default false.
    void setReleaseAfterLoad(bool release);
    bool releaseAfterLoad() const;

    // Writes the envelope as compact JSON text. Throws std::invalid_argument
    // without an object, std::runtime_error when the text cannot be
    // written, mp::SharedMemoryException when a body cannot be placed.
    void writeObject(std::wostream& out) const override;

    // Reads one envelope (the whole stream). Throws std::invalid_argument
    // when the text is not a JSON object; errors of the object's own
    // reading or loading propagate.
    void readObject(std::wistream& in) override;

private:
    std::shared_ptr<IExchangeObject> m_pObject;
    bool m_delayedLoading = false;
    bool m_releaseAfterLoad = false;
};

} // namespace xch
