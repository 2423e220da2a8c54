// Entity references.
#include <xch_api/xch_api_entity.h>

#include <xch_api/xch_api_json_members.h>

namespace xch {

template <>
const EnumTable<ExcFullSubentPath::ESubentType>& enumTable<ExcFullSubentPath::ESubentType>() {
    using P = ExcFullSubentPath;
    static const EnumTable<P::ESubentType> table{
        {P::Unknown, L"unknown"}, {P::Vertex, L"vertex"},     {P::Edge, L"edge"},
        {P::Coedge, L"coedge"},   {P::Loop, L"loop"},         {P::Face, L"face"},
        {P::Shell, L"shell"},     {P::Subshell, L"subshell"}, {P::Lump, L"lump"},
        {P::Body, L"body"},       {P::Wire, L"wire"},         {P::Point, L"point"},
        {P::Curve, L"curve"},     {P::Surface, L"surface"},   {P::Unspecified, L"unspecified"},
    };
    return table;
}

template <>
const EnumTable<ExcEntity::EType>& enumTable<ExcEntity::EType>() {
    static const EnumTable<ExcEntity::EType> table{
        {ExcEntity::Unknown, L"unknown"},
        {ExcEntity::Fsp, L"fsp"},
        {ExcEntity::Mfg, L"mfg"},
        {ExcEntity::Original, L"original"},
    };
    return table;
}

// ---- ExcFullSubentPath ------------------------------------------------------------

ExcFullSubentPath::ExcFullSubentPath() = default;
ExcFullSubentPath::ExcFullSubentPath(std::uint64_t subentId) : m_subentId(subentId) {}
ExcFullSubentPath::ExcFullSubentPath(const ExcFullSubentPath&) = default;
ExcFullSubentPath& ExcFullSubentPath::operator=(const ExcFullSubentPath&) = default;
ExcFullSubentPath::~ExcFullSubentPath() = default;

template <class Io, class Self>
void ExcFullSubentPath::members(Io& io, Self& self) {
    io(L"block_references", self.m_refs);
    io(L"subent_id", self.m_subentId);
    io(L"subent_type", self.m_subentType);
    io(L"visu_id", self.m_visuId);
    io(L"instance_path", self.m_instancePath);
}

XCH_JSON_IO(ExcFullSubentPath)

// ---- ExcEntity ------------------------------------------------------------------------

ExcEntity::ExcEntity() = default;
ExcEntity::ExcEntity(const std::shared_ptr<ExcFullSubentPath>& fsp) : m_type(Fsp), m_fsp(fsp) {}
ExcEntity::ExcEntity(EType type, const std::wstring& id, const std::wstring& description)
    : m_id(id), m_type(type), m_description(description) {}
ExcEntity::ExcEntity(const ExcEntity&) = default;
ExcEntity& ExcEntity::operator=(const ExcEntity&) = default;
ExcEntity::~ExcEntity() = default;

template <class Io, class Self>
void ExcEntity::members(Io& io, Self& self) {
    const EType type = self.m_type;  // the type read here does not pick the keys read
    io(L"type", self.m_type);
    io(L"fsp", self.m_fsp, json::writtenIf(type == Fsp, json::newObject));
    io(L"description", self.m_description, json::writtenIf(type == Original));
    io(L"id", self.m_id, json::writtenIf(type == Mfg || type == Original));
}

XCH_JSON_IO(ExcEntity)

} // namespace xch
