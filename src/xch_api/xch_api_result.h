// Result: the worker's answer to a command.
//
// An outcome code, an optional message for the user and whether the whole
// job is finished. It is written directly onto a wide stream as one pretty
// JSON document, not inside an exchange envelope:
//   {"code": "ok", "message": "...", "is_finished": false}
// "message" only when not empty.
#pragma once

#include <cstdint>
#include <istream>
#include <ostream>
#include <string>

#include <mp/mp_serializable.h>
#include <xch_api/xch_api_enum_table.h>
#include <xch_api/xch_api_export.h>

namespace xch {

class XCH_API Result : public mp::ISerializable {
public:
    enum ECode : std::int32_t {
        Unknown = 0,       // "unknown" (also written for any value outside 1..4)
        Ok = 1,            // "ok"
        Warning = 2,       // "warning"
        Error = 3,         // "error"
        Interrupted = 4    // "interrupted"
    };

    Result() = default;
    Result(const Result&) = default;
    Result& operator=(const Result&) = default;
    ~Result() override;

    ECode code() const { return m_code; }
    void setCode(ECode code) { m_code = code; }
    const std::wstring& message() const { return m_message; }
    void setMessage(const std::wstring& message) { m_message = message; }
    bool isFinished() const { return m_finished; }
    void setFinished(bool finished) { m_finished = finished; }

    // A writer failure throws std::runtime_error "Cannot write object into
    // json document".
    void writeObject(std::wostream& out) const override;
    // Throws std::invalid_argument, leaving the result unchanged, when the
    // root is not an object ("Result::readObject: invalid json document")
    // or has no string "code" ("Result::readObject: json document has no
    // result code."). The code is matched exactly (any other string gives
    // Unknown); "message" and "is_finished" are taken when of their type.
    void readObject(std::wistream& in) override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    ECode m_code = Ok;
    std::wstring m_message;
    bool m_finished = false;
};

template <> XCH_API const EnumTable<Result::ECode>& enumTable<Result::ECode>();

} // namespace xch
