// Messages, log lines, progress reports and finished-stage notices.
#include <xch_api/xch_api_messages.h>

#include <xch_api/xch_api_json_members.h>

namespace xch {

namespace {

// These objects are sent many times per translation and read by a host that
// only shows them: a value of the wrong kind is ignored without a message.
template <class T>
void readMembersQuietly(const JsonValue& value, T& object) {
    json::Reader reader(value);
    T::members(reader, object);
}

} // namespace

// ---- ExcMessageBase -------------------------------------------------------------

ExcMessageBase::ExcMessageBase() = default;
ExcMessageBase::ExcMessageBase(const std::wstring& message) : m_message(message) {}
ExcMessageBase::ExcMessageBase(const wchar_t* message) : m_message(message ? message : L"") {}
ExcMessageBase::ExcMessageBase(const ExcMessageBase&) = default;
ExcMessageBase& ExcMessageBase::operator=(const ExcMessageBase&) = default;
ExcMessageBase::~ExcMessageBase() = default;

template <class Io, class Self>
void ExcMessageBase::members(Io& io, Self& self) {
    io(L"message", self.m_message);
}

void ExcMessageBase::readObject(const JsonValue& value) {
    VX_TRACE();
    readMembersQuietly(value, *this);
}

void ExcMessageBase::writeObject(JsonValue& value, JsonAllocator& allocator) const {
    VX_TRACE();
    json::writeMembers(value, allocator, *this);
}

ExcMessage::ExcMessage() = default;
ExcMessage::~ExcMessage() = default;
const std::wstring& ExcMessage::objName() {
    static const std::wstring name = L"exc_message";
    return name;
}

ExcLog::ExcLog() = default;
ExcLog::~ExcLog() = default;
const std::wstring& ExcLog::objName() {
    static const std::wstring name = L"exc_log";
    return name;
}

// ---- ExcProgress ------------------------------------------------------------------

ExcProgress::ExcProgress() = default;
ExcProgress::ExcProgress(std::int32_t progress, std::int32_t progressMax, bool pulse,
                         const std::wstring& stage)
    : m_progress(progress), m_progressMax(progressMax), m_pulse(pulse), m_stage(stage) {}
ExcProgress::ExcProgress(const ExcProgress&) = default;
ExcProgress& ExcProgress::operator=(const ExcProgress&) = default;
ExcProgress::~ExcProgress() = default;

const std::wstring& ExcProgress::objName() {
    static const std::wstring name = L"exc_progress";
    return name;
}

bool ExcProgress::operator==(const ExcProgress& other) const {
    return m_progress == other.m_progress && m_progressMax == other.m_progressMax &&
           m_pulse == other.m_pulse && m_stage == other.m_stage;
}

template <class Io, class Self>
void ExcProgress::members(Io& io, Self& self) {
    io(L"progress", self.m_progress);
    io(L"progress_max", self.m_progressMax);
    io(L"pulse", self.m_pulse);
    io(L"stage", self.m_stage);
}

void ExcProgress::readObject(const JsonValue& value) {
    VX_TRACE();
    readMembersQuietly(value, *this);
}

void ExcProgress::writeObject(JsonValue& value, JsonAllocator& allocator) const {
    VX_TRACE();
    json::writeMembers(value, allocator, *this);
}

// ---- ExcStageFinished ---------------------------------------------------------------

template <>
const EnumTable<ExcStageFinished::EStage>& enumTable<ExcStageFinished::EStage>() {
    using S = ExcStageFinished;
    static const EnumTable<S::EStage> table{
        {S::Unknown, L"unknown"},
        {S::ProductStructure, L"product_structure"},
        {S::RootVisualization, L"root_visualization"},
        {S::Visualization, L"visualization"},
        {S::RootMechanical, L"root_mechanical"},
        {S::Mechanical, L"mechanical"},
        {S::VisuAndMech, L"visu_and_mech"}};
    return table;
}

ExcStageFinished::ExcStageFinished(EStage stage) : m_stage(stage) {}
ExcStageFinished::ExcStageFinished(const ExcStageFinished&) = default;
ExcStageFinished& ExcStageFinished::operator=(const ExcStageFinished&) = default;
ExcStageFinished::~ExcStageFinished() = default;

const std::wstring& ExcStageFinished::objName() {
    static const std::wstring name = L"exc_stage_finished";
    return name;
}

// The value is the bare string: a stage not in the table writes "unknown",
// a string not in the table reads as the stage of the smallest string.
void ExcStageFinished::readObject(const JsonValue& value) {
    VX_TRACE();
    json::Codec<EStage>::read(value, m_stage);
}

void ExcStageFinished::writeObject(JsonValue& value, JsonAllocator& allocator) const {
    VX_TRACE();
    json::Codec<EStage>::write(value, allocator, m_stage);
}

// ---- registered prototypes ---------------------------------------------------------

static StaticExchangeObject<ExcMessage> s_messagePrototype;
static StaticExchangeObject<ExcLog> s_logPrototype;
static StaticExchangeObject<ExcProgress> s_progressPrototype;
static StaticExchangeObject<ExcStageFinished> s_stageFinishedPrototype;

} // namespace xch
