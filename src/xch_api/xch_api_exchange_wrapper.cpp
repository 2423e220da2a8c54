#include <xch_api/xch_api_exchange_wrapper.h>

#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <logging/vx_link_logger.h>
#include <mp/mp_shared_buffer.h>
#include <xch_api/xch_api_compressor.h>
#include <xch_api/xch_api_json_binary_io.h>
#include <xch_api/xch_api_json_text_io.h>

namespace xch {

namespace {

const wchar_t* const kNameKey = L"exchange_object_name";
const wchar_t* const kBinaryKey = L"binary";
const wchar_t* const kDataKey = L"exchange_object_data";

// Places the object's body in a new shared-memory buffer and returns its
// name.
std::wstring writeBody(const IExchangeObject& object) {
    JsonDocument body;
    object.writeObject(body, body.GetAllocator());
    std::string bytes;
    JsonBinaryIO::write(bytes, body);
    if (object.compress()) {
        std::string packed;
        Compressor::compress(packed, bytes.data(), bytes.size(), -1);
        bytes.swap(packed);
    }
    std::wstring name = IExchangeObject::generateUUID();
    // Logged before the buffer exists, so that a log names every buffer a
    // process may leave behind, even when it dies while writing it.
    VX_LOG(vx_link::LevelDebug,
           "Writing shared memory body " << vx_link::utf8(name) << " of " << bytes.size() << " bytes");
    mp::SharedBuffer<char> buffer(name, mp::SharedBuffer<char>::OpenMode::Create);
    buffer.write(bytes.data(), bytes.size());
    return name;
}

void discardBody(const std::wstring& name) {
    try {
        mp::SharedBuffer<char>::remove(name);
    } catch (...) {
    }
}

} // namespace

ExchangeObjectWrapper::ExchangeObjectWrapper() = default;

ExchangeObjectWrapper::ExchangeObjectWrapper(const std::shared_ptr<IExchangeObject>& object)
    : m_pObject(object) {}

ExchangeObjectWrapper::~ExchangeObjectWrapper() = default;

void ExchangeObjectWrapper::set(const std::shared_ptr<IExchangeObject>& object) { m_pObject = object; }

const std::shared_ptr<IExchangeObject>& ExchangeObjectWrapper::get() const { return m_pObject; }

void ExchangeObjectWrapper::setDelayedLoading(bool delayed) { m_delayedLoading = delayed; }

bool ExchangeObjectWrapper::delayedLoading() const { return m_delayedLoading; }

void ExchangeObjectWrapper::setReleaseAfterLoad(bool release) { m_releaseAfterLoad = release; }

bool ExchangeObjectWrapper::releaseAfterLoad() const { return m_releaseAfterLoad; }

void ExchangeObjectWrapper::writeObject(std::wostream& out) const {
    VX_TRACE();
    if (!m_pObject)
        throw std::invalid_argument("ExchangeObjectWrapper::writeObject > m_pObject == nullptr");

    JsonDocument doc;
    auto& allocator = doc.GetAllocator();
    doc.SetObject();
    doc.AddMember(JsonValue(kNameKey, allocator), JsonValue(m_pObject->name().c_str(), allocator), allocator);
    JsonValue data;
    std::wstring body;
    if (m_pObject->binary()) {
        doc.AddMember(JsonValue(kBinaryKey, allocator), JsonValue(true), allocator);
        body = writeBody(*m_pObject);
        data.SetString(body.c_str(), allocator);
    } else {
        m_pObject->writeObject(data, allocator);
    }
    doc.AddMember(JsonValue(kDataKey, allocator), data, allocator);
    try {
        JsonTextIO::write(out, doc, false);
    } catch (...) {
        // Nobody can learn the name of a body whose envelope was not
        // written: remove it rather than leave it behind.
        if (!body.empty()) discardBody(body);
        throw;
    }
}

void ExchangeObjectWrapper::readObject(std::wistream& in) {
    VX_TRACE();
    JsonDocument doc;
    JsonTextIO::read(in, doc);
    if (!doc.IsObject())
        throw std::invalid_argument("ExchangeObjectWrapper::readObject: invalid json document");

    m_pObject.reset();
    auto name = doc.FindMember(kNameKey);
    if (name != doc.MemberEnd() && name->value.IsString())
        m_pObject = ExchangeObjectRegistry::instance().get(
            std::wstring(name->value.GetString(), name->value.GetStringLength()));
    if (!m_pObject)
        return;

    auto data = doc.FindMember(kDataKey);
    if (data == doc.MemberEnd()) {
        VX_LOG(vx_link::LevelError, "ExchangeObjectWrapper JSON object has no Exchange Object data.");
        return;
    }
    auto binary = doc.FindMember(kBinaryKey);
    if (binary != doc.MemberEnd() && binary->value.IsTrue()) {
        if (!data->value.IsString()) {
            VX_LOG(vx_link::LevelError,
                   "ExchangeObjectWrapper JSON object should have UUID in Exchange Object Data field (if binary).");
            return;
        }
        m_pObject->setSource(std::wstring(data->value.GetString(), data->value.GetStringLength()));
        m_pObject->setReleaseAfterLoad(m_releaseAfterLoad);
        if (!m_delayedLoading)
            m_pObject->load();
        return;
    }
    m_pObject->readObject(data->value);
}

} // namespace xch
