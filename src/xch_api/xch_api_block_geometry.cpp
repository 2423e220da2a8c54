#include <xch_api/xch_api_block_geometry.h>

#include <stdexcept>

#include <xch_api/xch_api_geometry_kernel.h>
#include <xch_api/xch_api_json_members.h>

namespace xch {

namespace {

// A key this class cannot do without: a missing key or a value of the wrong
// type is logged (error level) and the field keeps its value.
struct Required {
    const char* message;

    template <class T>
    bool write(JsonValue& v, JsonAllocator& a, const T& x) const {
        json::Codec<T>::write(v, a, x);
        return true;
    }
    template <class T>
    void read(const JsonValue& v, T& x) const {
        if (!json::Codec<T>::read(v, x)) missing();
    }
    void missing() const { VX_LOG(2, message); }
};

// Reads a members list whose keys all carry a Required rule, telling the
// rule when its key is absent.
class RequiredKeysReader {
public:
    explicit RequiredKeysReader(const JsonValue& object) : m_reader(object) {}

    template <class T, class Rule>
    void operator()(const wchar_t* key, T& field, const Rule& rule) {
        if (const JsonValue* member = m_reader.find(key))
            rule.read(*member, field);
        else
            rule.missing();
    }

private:
    json::Reader m_reader;
};

// "shared_acis_buffer_name" is written from sharedAcisBufferName() (the
// buffer's name when there is one) and read into the stored name.
struct BufferNameKey : Required {
    bool write(JsonValue& v, JsonAllocator& a, const ExcBlockGeometry& g) const {
        return Required::write(v, a, g.sharedAcisBufferName());
    }
    void read(const JsonValue& v, ExcBlockGeometry& g) const {
        std::wstring name;
        if (json::Codec<std::wstring>::read(v, name))
            g.setSharedAcisBufferName(name);
        else
            missing();
    }
};

const char* const NoKernel = "no ACIS kernel binding (xch_api_acis) is loaded.";

// A staging buffer of the installed kernel's kind, else a plain byte buffer.
std::shared_ptr<ExcSharedByteBuffer> makeBuffer(const std::wstring& name, bool owner) {
    if (const GeometryKernel* kernel = GeometryKernel::installed()) return kernel->makeBuffer(name, owner);
    return std::make_shared<ExcSharedByteBuffer>(name, owner);
}

const std::vector<char>& noBytes() {
    static const std::vector<char> empty;
    return empty;
}

} // namespace

ExcBlockGeometry::ExcBlockGeometry() = default;
ExcBlockGeometry::ExcBlockGeometry(const ExcBlockGeometry&) = default;
ExcBlockGeometry& ExcBlockGeometry::operator=(const ExcBlockGeometry&) = default;
ExcBlockGeometry::~ExcBlockGeometry() = default;

const std::wstring& ExcBlockGeometry::objName() {
    static const std::wstring name = L"exc_block_geometry";
    return name;
}

const std::wstring& ExcBlockGeometry::sharedAcisBufferName() const {
    return m_buffer ? m_buffer->name() : m_sharedAcisBufferName;
}

void ExcBlockGeometry::own(bool own) {
    m_own = own;
    if (m_buffer) m_buffer->setOwner(own);
}

template <class Stage>
bool ExcBlockGeometry::stageAndFlush(bool compress, Stage stage) {
    m_buffer = makeBuffer(generateUUID(), m_own);
    m_sharedAcisBufferName = m_buffer->name();
    std::string error;
    try {
        if (stage(*m_buffer, error)) {
            m_buffer->flush(compress);
            return true;
        }
    } catch (const std::runtime_error& e) {
        error = e.what();
    }
    VX_LOG(2, "Failed to write geometry into shared ACIS buffer: " << error);
    return false;
}

bool ExcBlockGeometry::setBinaryData(const char* data, std::size_t size, bool compress) {
    return stageAndFlush(compress, [&](ExcSharedByteBuffer& buffer, std::string&) {
        buffer.write(data, size);
        return true;
    });
}

bool ExcBlockGeometry::setGeometry(const ENTITY_LIST& entities, bool compress) {
    return stageAndFlush(compress, [&](ExcSharedByteBuffer& buffer, std::string& error) {
        const GeometryKernel* kernel = GeometryKernel::installed();
        if (!kernel) error = NoKernel;
        return kernel && kernel->save(entities, buffer, error);
    });
}

bool ExcBlockGeometry::getGeometry(ENTITY_LIST& entities) const {
    std::string error = "Invalid buffer object.";
    const GeometryKernel* kernel = GeometryKernel::installed();
    if (m_buffer && !kernel) error = NoKernel;
    if (m_buffer && kernel && kernel->restore(*m_buffer, entities, error)) return true;
    VX_LOG(2, "Failed to get geometry from shared memory buffer: " << error);
    return false;
}

const std::vector<char>& ExcBlockGeometry::binaryData() const {
    return m_buffer ? m_buffer->data() : noBytes();
}

void ExcBlockGeometry::load() {
    VX_TRACE();
    if (!m_buffer) m_buffer = makeBuffer(m_sharedAcisBufferName, true);
    try {
        m_buffer->load();
        m_loaded = true;
    } catch (const std::runtime_error& e) {
        // mp::SharedMemoryException for a missing or unreadable object,
        // std::runtime_error from inflating corrupt data.
        VX_LOG(2, e.what());
        m_loaded = false;
    }
}

bool ExcBlockGeometry::isLoaded() const {
    return m_loaded && m_buffer;
}

template <class Io, class Self>
void ExcBlockGeometry::members(Io& io, Self& self) {
    io(L"block_id", self.m_blockId, Required{"ExcBlockGeometry: Failed to read block Id from JSON object."});
    io(L"shared_acis_buffer_name", self,
       BufferNameKey{{"ExcBlockGeometry: Failed to read shared memory buffer name."}});
}

void ExcBlockGeometry::readObject(const JsonValue& value) {
    VX_TRACE();
    if (!json::expectObject(value, "ExcBlockGeometry")) return;
    RequiredKeysReader reader(value);
    members(reader, *this);
}

void ExcBlockGeometry::writeObject(JsonValue& value, JsonAllocator& allocator) const {
    VX_TRACE();
    if (!m_buffer)
        VX_LOG(2, "ExcBlockGeometry: ACIS buffer was not initialized in shared memory.");
    json::writeMembers(value, allocator, *this);
}

static StaticExchangeObject<ExcBlockGeometry> s_blockGeometryPrototype;

} // namespace xch
