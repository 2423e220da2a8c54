// ExcBlockGeometry: the solid geometry of one block, by reference.
//
// The geometry does not travel in the JSON. The producer (the translator
// worker) puts the block's ACIS binary (SAB) bytes into a named
// shared-memory object; the JSON carries only the block id and that
// object's name:
//     {"block_id": <uint64>, "shared_acis_buffer_name": "<uuid>"}
// The consumer (the CAD host) reads the object, load()s the bytes and
// restores the entities from them.
//
// Lifetime of the shared-memory object. The object that creates the bytes
// owns them by default (own() is true): when the producer's ExcBlockGeometry
// (and every copy sharing its buffer) is destroyed, the shared-memory object
// is removed. The producer must therefore keep it alive until the consumer
// has loaded. On the consumer, load() opens the object with ownership, so
// the consumer's ExcBlockGeometry removes it when destroyed: after a normal
// exchange nothing is left behind, whichever side finishes last. Call
// own(false) on the producer to hand the object over entirely (it then
// outlives the producer's object until a consumer loads and releases it).
//
// Producer:  ExcBlockGeometry g; g.setBlockId(id); g.setBinaryData(sab, n, true);
//            (or, with the ACIS binding loaded, g.setGeometry(entities, true));
//            write g (ExchangeObjectWrapper), keep g until the host has loaded.
// Consumer:  read the object; g->load(); if (g->isLoaded()) use g->binaryData()
//            (or g->getGeometry(entities)).
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <xch_api/xch_api_exchange_object.h>
#include <xch_api/xch_api_export.h>
#include <xch_api/xch_api_shared_byte_buffer.h>

class ENTITY_LIST; // the ACIS kernel's entity list (see xch_api_geometry_kernel.h)

namespace xch {

class XCH_API ExcBlockGeometry : public ExchangeObjectImpl<ExcBlockGeometry> {
public:
    ExcBlockGeometry();
    // Copies share the buffer (and so the shared-memory object's lifetime).
    ExcBlockGeometry(const ExcBlockGeometry&);
    ExcBlockGeometry& operator=(const ExcBlockGeometry&);
    ~ExcBlockGeometry() override;

    static const std::wstring& objName();

    // The id of the ExcBlock whose geometry this is.
    std::uint64_t blockId() const { return m_blockId; }
    void setBlockId(std::uint64_t blockId) { m_blockId = blockId; }

    // The shared-memory object's name: the buffer's when there is one,
    // otherwise the name read from JSON (or set here).
    const std::wstring& sharedAcisBufferName() const;
    void setSharedAcisBufferName(const std::wstring& name) { m_sharedAcisBufferName = name; }

    // Whether a buffer created by setBinaryData removes its shared-memory
    // object when destroyed (default true). Passed on to an existing buffer.
    bool own() const { return m_own; }
    void own(bool own);

    // Stages `size` bytes of SAB data in a new buffer named by a fresh UUID
    // (replacing any earlier buffer) and writes them into shared memory,
    // zlib-compressed when `compress` is set. Returns false, after logging
    // "Failed to write geometry into shared ACIS buffer: <reason>", when the
    // shared-memory object cannot be written. With size 0 an empty object
    // is created, which loads as no bytes.
    bool setBinaryData(const char* data, std::size_t size, bool compress);

    // Saves `entities` through the ACIS binding (xch_api_acis, see
    // xch_api_geometry_kernel.h) into a new buffer named by a fresh UUID,
    // then into shared memory as setBinaryData does. Returns false, after
    // logging "Failed to write geometry into shared ACIS buffer: <reason>"
    // (the kernel's message), when saving or writing fails or no binding
    // is loaded.
    bool setGeometry(const ENTITY_LIST& entities, bool compress);

    // Restores the entities of the buffer (after load() on the consumer)
    // and appends them to `entities`. Returns false, after logging "Failed
    // to get geometry from shared memory buffer: <reason>", when there is
    // no buffer ("Invalid buffer object."), the kernel cannot restore the
    // data or no binding is loaded; `entities` is then unchanged.
    bool getGeometry(ENTITY_LIST& entities) const;

    // The staged bytes: after load() the bytes from shared memory, after
    // setBinaryData the bytes given (uncompressed). Empty without a buffer.
    const std::vector<char>& binaryData() const;

    // The staging buffer, null until setBinaryData or load() creates it.
    const std::shared_ptr<ExcSharedByteBuffer>& buffer() const { return m_buffer; }

    // Fetches the bytes named by sharedAcisBufferName(). Without a buffer
    // one is created for that name with ownership (see the lifetime note
    // above). Never throws: a failure (missing object, unreadable or corrupt
    // data) is logged at error level with its text and leaves the object
    // not loaded.
    void load() override;
    // Loaded and holding a buffer.
    bool isLoaded() const override;

    // Reading logs (error level) a non-object value, a missing or
    // non-uint64 "block_id" and a missing or non-string name, and keeps
    // the fields it could not read. Writing without a buffer logs and
    // still writes both keys.
    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    // Replaces the buffer by a new one named by a fresh UUID, lets `stage`
    // fill its stream, then flushes it into shared memory.
    template <class Stage>
    bool stageAndFlush(bool compress, Stage stage);

    std::wstring m_sharedAcisBufferName;
    std::uint64_t m_blockId = 0;
    bool m_own = true;
    std::shared_ptr<ExcSharedByteBuffer> m_buffer;
};

} // namespace xch
