// The worker's answer to a command.
#include <xch_api/xch_api_result.h>

#include <logging/vx_link_logger.h>
#include <xch_api/internal/protocol_io.h>

namespace xch {

template <>
const EnumTable<Result::ECode>& enumTable<Result::ECode>() {
    static const EnumTable<Result::ECode> table{
        {Result::Unknown, L"unknown"}, {Result::Ok, L"ok"},
        {Result::Warning, L"warning"}, {Result::Error, L"error"},
        {Result::Interrupted, L"interrupted"}};
    return table;
}

template <class Io, class Self>
void Result::members(Io& io, Self& self) {
    io(L"code", self.m_code, json::knownOrZero);
    io(L"message", self.m_message, json::optional);
    io(L"is_finished", self.m_finished);
}

Result::~Result() = default;

void Result::writeObject(std::wostream& out) const {
    VX_TRACE();
    json::writeDocument(out, *this);
}

void Result::readObject(std::wistream& in) {
    VX_TRACE();
    JsonDocument doc;
    json::readDocument(in, doc, "Result::readObject: invalid json document");
    json::requireMember(doc, L"code", true, "Result::readObject: json document has no result code.");
    json::Reader reader(doc);
    members(reader, *this);
}

} // namespace xch
