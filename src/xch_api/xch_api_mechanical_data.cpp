// The registered mechanical data objects.
#include <xch_api/xch_api_mechanical_data.h>

#include <xch_api/xch_api_json_members.h>

namespace xch {

// ---- ExcRootMechanicalData ----------------------------------------------------------

ExcRootMechanicalData::ExcRootMechanicalData() = default;
ExcRootMechanicalData::~ExcRootMechanicalData() = default;

const std::wstring& ExcRootMechanicalData::objName() {
    static const std::wstring name = L"exc_root_mechanical_data";
    return name;
}

template <class Io, class Self>
void ExcRootMechanicalData::members(Io& io, Self& self) {
    io(L"pmi_data", self.m_pmiData, json::newArray);
    io(L"log_file", self.m_logFile);
}

XCH_JSON_IO(ExcRootMechanicalData)

// ---- ExcBlockMechanicalData -----------------------------------------------------------

ExcBlockMechanicalData::ExcBlockMechanicalData() = default;
ExcBlockMechanicalData::ExcBlockMechanicalData(std::uint64_t blockId) : m_blockId(blockId) {}
ExcBlockMechanicalData::~ExcBlockMechanicalData() = default;

const std::wstring& ExcBlockMechanicalData::objName() {
    static const std::wstring name = L"exc_block_mechanical_data";
    return name;
}

template <class Io, class Self>
void ExcBlockMechanicalData::members(Io& io, Self& self) {
    io(L"block_id", self.m_blockId);
    io(L"log_file", self.m_logFile);
    io(L"pmi_data", self.m_pmiData, json::newArray);
    io(L"misc_data", self.m_miscData, json::newObject);
    io(L"mapping_data", self.m_mappingData, json::newArray);
    io(L"mfg_data", self.m_mfgData, json::newObject);
    io(L"entity_data", self.m_entityData, json::newArray);
}

XCH_JSON_IO(ExcBlockMechanicalData)

// ---- registered prototypes ---------------------------------------------------------------

static StaticExchangeObject<ExcRootMechanicalData> s_rootMechanicalDataPrototype;
static StaticExchangeObject<ExcBlockMechanicalData> s_blockMechanicalDataPrototype;

} // namespace xch
