#include <xch_api/xch_api_exchange_wrapper.h>

#include <algorithm>
#include <mutex>
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

// The bodies this process wrote into shared memory. Bodies that no reader
// took are removed when the library unloads.
class WrittenBodies {
public:
    static WrittenBodies& instance() {
        static WrittenBodies bodies;
        return bodies;
    }

    void add(const std::wstring& name) {
        std::lock_guard<std::mutex> lock(m_mutex);
        if (m_names.size() >= kPruneAt) {
            // Forget the bodies that readers have already taken.
            m_names.erase(std::remove_if(m_names.begin(), m_names.end(),
                                         [](const std::wstring& n) { return !mp::SharedBuffer<char>::exists(n); }),
                          m_names.end());
        }
        m_names.push_back(name);
    }

    std::size_t discard() {
        std::lock_guard<std::mutex> lock(m_mutex);
        std::size_t removed = 0;
        for (const std::wstring& name : m_names) {
            try {
                if (mp::SharedBuffer<char>::remove(name)) ++removed;
            } catch (...) {
            }
        }
        m_names.clear();
        return removed;
    }

    ~WrittenBodies() { discard(); }

private:
    static constexpr std::size_t kPruneAt = 1024;
    std::mutex m_mutex;
    std::vector<std::wstring> m_names;
};

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
    mp::SharedBuffer<char> buffer(name, mp::SharedBuffer<char>::OpenMode::Create);
    buffer.write(bytes.data(), bytes.size());
    WrittenBodies::instance().add(name);
    return name;
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

void ExchangeObjectWrapper::writeObject(std::wostream& out) const {
    VX_TRACE();
    if (!m_pObject)
        throw std::invalid_argument("ExchangeObjectWrapper::writeObject > m_pObject == nullptr");

    JsonDocument doc;
    auto& allocator = doc.GetAllocator();
    doc.SetObject();
    doc.AddMember(JsonValue(kNameKey, allocator), JsonValue(m_pObject->name().c_str(), allocator), allocator);
    JsonValue data;
    if (m_pObject->binary()) {
        doc.AddMember(JsonValue(kBinaryKey, allocator), JsonValue(true), allocator);
        data.SetString(writeBody(*m_pObject).c_str(), allocator);
    } else {
        m_pObject->writeObject(data, allocator);
    }
    doc.AddMember(JsonValue(kDataKey, allocator), data, allocator);
    JsonTextIO::write(out, doc, false);
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
        if (!m_delayedLoading)
            m_pObject->load();
        return;
    }
    m_pObject->readObject(data->value);
}

std::size_t ExchangeObjectWrapper::discardUnreadBodies() { return WrittenBodies::instance().discard(); }

} // namespace xch
