// The small objects a worker sends while a translation runs: free-text
// messages and log lines, progress reports, and notices that a stage of the
// result is finished. Each is a registered exchange object that travels
// inline (as JSON text) in its own envelope.
#pragma once

#include <cstdint>
#include <string>

#include <xch_api/xch_api_enum_table.h>
#include <xch_api/xch_api_exchange_object.h>
#include <xch_api/xch_api_export.h>

namespace xch {

// A line of text. JSON: {"message": "<text>"}. Reading takes "message" only
// when it is a string; anything else (also a non-object value) leaves the
// text unchanged, without a message in the log.
class XCH_API ExcMessageBase : public IExchangeObject {
public:
    ExcMessageBase();
    explicit ExcMessageBase(const std::wstring& message);
    explicit ExcMessageBase(const wchar_t* message);
    ExcMessageBase(const ExcMessageBase&);
    ExcMessageBase& operator=(const ExcMessageBase&);
    ~ExcMessageBase() override;

    const std::wstring& message() const { return m_message; }
    void setMessage(const std::wstring& message) { m_message = message; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    std::wstring m_message;
};

// A message for the user ("exc_message").
class XCH_API ExcMessage : public ExchangeObjectImpl<ExcMessage, ExcMessageBase> {
public:
    using ExchangeObjectImpl::ExchangeObjectImpl;
    ExcMessage();
    ~ExcMessage() override;
    static const std::wstring& objName();
};

// A line for the host's log ("exc_log").
class XCH_API ExcLog : public ExchangeObjectImpl<ExcLog, ExcMessageBase> {
public:
    using ExchangeObjectImpl::ExchangeObjectImpl;
    ExcLog();
    ~ExcLog() override;
    static const std::wstring& objName();
};

// A progress report ("exc_progress"). JSON: {"progress", "progress_max",
// "pulse", "stage"}, all four always written. With pulse set there is no
// measurable position and the host only shows activity.
class XCH_API ExcProgress : public ExchangeObjectImpl<ExcProgress> {
public:
    ExcProgress();
    ExcProgress(std::int32_t progress, std::int32_t progressMax, bool pulse = false,
                const std::wstring& stage = std::wstring());
    ExcProgress(const ExcProgress&);
    ExcProgress& operator=(const ExcProgress&);
    ~ExcProgress() override;

    static const std::wstring& objName();

    std::int32_t progress() const { return m_progress; }
    void setProgress(std::int32_t progress) { m_progress = progress; }
    std::int32_t progressMax() const { return m_progressMax; }
    void setProgressMax(std::int32_t progressMax) { m_progressMax = progressMax; }
    bool pulse() const { return m_pulse; }
    void setPulse(bool pulse) { m_pulse = pulse; }
    const std::wstring& stage() const { return m_stage; }
    void setStage(const std::wstring& stage) { m_stage = stage; }

    // Compares the four fields.
    bool operator==(const ExcProgress& other) const;
    bool operator!=(const ExcProgress& other) const { return !(*this == other); }

    // Each member is read on its own and only from its own JSON type;
    // "pulse" becomes true only for JSON true.
    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    std::int32_t m_progress = 0;
    std::int32_t m_progressMax = 100;
    bool m_pulse = false;
    std::wstring m_stage;
};

// Notice that a stage of the result is finished and can be fetched
// ("exc_stage_finished"). Its JSON value is the bare string of the stage,
// not an object. An unrecognised string (different case included) reads
// as Mechanical, the stage whose string sorts first; a non-string value
// changes nothing.
class XCH_API ExcStageFinished : public ExchangeObjectImpl<ExcStageFinished> {
public:
    enum EStage : std::int32_t {
        Unknown = 0,           // "unknown"
        ProductStructure = 1,  // "product_structure"
        RootVisualization = 2, // "root_visualization"
        Visualization = 3,     // "visualization"
        RootMechanical = 4,    // "root_mechanical"
        Mechanical = 5,        // "mechanical"
        VisuAndMech = 6        // "visu_and_mech"
    };

    explicit ExcStageFinished(EStage stage = Unknown);
    ExcStageFinished(const ExcStageFinished&);
    ExcStageFinished& operator=(const ExcStageFinished&);
    ~ExcStageFinished() override;

    static const std::wstring& objName();

    EStage stage() const { return m_stage; }
    void setStage(EStage stage) { m_stage = stage; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

private:
    EStage m_stage;
};

template <>
XCH_API const EnumTable<ExcStageFinished::EStage>& enumTable<ExcStageFinished::EStage>();

} // namespace xch
