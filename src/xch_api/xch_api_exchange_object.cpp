#include <xch_api/xch_api_exchange_object.h>

#include <vector>

#include <logging/vx_link_logger.h>
#include <mp/mp_shared_buffer.h>
#include <xch_api/internal/platform.h>
#include <xch_api/xch_api_compressor.h>
#include <xch_api/xch_api_json_binary_io.h>

namespace xch {

IJsonObject::~IJsonObject() = default;

IExchangeObject::IExchangeObject() = default;
IExchangeObject::IExchangeObject(const IExchangeObject& other) = default;
IExchangeObject::IExchangeObject(IExchangeObject&& other) noexcept = default;
IExchangeObject& IExchangeObject::operator=(const IExchangeObject& other) = default;
IExchangeObject& IExchangeObject::operator=(IExchangeObject&& other) noexcept = default;
IExchangeObject::~IExchangeObject() = default;

bool IExchangeObject::binary() const { return false; }
bool IExchangeObject::compress() const { return false; }
bool IExchangeObject::isLoaded() const { return m_loaded; }

void IExchangeObject::setSource(const std::wstring& source) {
    if (&source != &m_source)
        m_source = source;
}

namespace {

// Removes a body that has been loaded. The data is already in the object,
// so a failure here is only reported.
void releaseSource(const std::wstring& name) {
    try {
        if (mp::SharedBuffer<char>::remove(name))
            VX_LOG(vx_link::LevelDebug, "Released shared memory body " << vx_link::utf8(name));
    } catch (const std::exception& e) {
        VX_LOG(vx_link::LevelWarning, "Cannot release shared memory body: " << e.what());
    }
}

} // namespace

void IExchangeObject::load() {
    VX_TRACE();
    if (m_loaded || m_source.empty() || !binary())
        return;

    // The body is decoded straight from the mapping (or inflated from it):
    // no copy of the shared bytes is made.
    JsonDocument doc;
    {
        mp::SharedBuffer<char>::View body =
            mp::SharedBuffer<char>(m_source, mp::SharedBuffer<char>::OpenMode::Open).view();
        if (Compressor::isCompressed(body.data(), body.size())) {
            std::vector<char> inflated;
            Compressor::decompress(inflated, body.data(), body.size());
            JsonBinaryIO::read(inflated.data(), inflated.size(), doc);
        } else {
            JsonBinaryIO::read(body.data(), body.size(), doc);
        }
    }
    readObject(doc);
    m_loaded = true;
    if (m_releaseAfterLoad) releaseSource(m_source);
}

std::wstring IExchangeObject::generateUUID() {
    std::uint8_t bytes[16];
    platform::randomBytes(bytes, sizeof bytes);
    bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0F) | 0x40);
    bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3F) | 0x80);
    static const wchar_t digits[] = L"0123456789abcdef";
    std::wstring text;
    text.reserve(36);
    for (int i = 0; i < 16; ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10)
            text += L'-';
        text += digits[bytes[i] >> 4];
        text += digits[bytes[i] & 0x0F];
    }
    return text;
}

ExchangeObjectRegistry& ExchangeObjectRegistry::instance() {
    static ExchangeObjectRegistry registry;
    return registry;
}

ExchangeObjectRegistry::ExchangeObjectRegistry() = default;
ExchangeObjectRegistry::ExchangeObjectRegistry(const ExchangeObjectRegistry&) = default;
ExchangeObjectRegistry& ExchangeObjectRegistry::operator=(const ExchangeObjectRegistry&) = default;
ExchangeObjectRegistry::~ExchangeObjectRegistry() = default;

void ExchangeObjectRegistry::add(IExchangeObject* object) {
    if (!object)
        return;
    m_prototypes[object->name()] = object;
}

void ExchangeObjectRegistry::remove(IExchangeObject* object) {
    if (!object)
        return;
    m_prototypes.erase(object->name());
}

std::shared_ptr<IExchangeObject> ExchangeObjectRegistry::get(const std::wstring& typeName) const {
    auto it = m_prototypes.find(typeName);
    if (it == m_prototypes.end())
        return nullptr;
    return it->second->clone();
}

} // namespace xch
