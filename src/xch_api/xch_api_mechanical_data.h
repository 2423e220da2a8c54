// The two top-level mechanical exchange objects: ExcRootMechanicalData (the
// PMI of the whole model) and ExcBlockMechanicalData (everything mechanical
// about one block of the product structure). Both are registered types
// ("exc_root_mechanical_data", "exc_block_mechanical_data") that travel as
// compressed binary JSON in shared memory; clone() and copies share the
// nested data (member pointers are copied, not what they point to).
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <xch_api/xch_api_exchange_object.h>
#include <xch_api/xch_api_export.h>
#include <xch_api/xch_api_mechanical_entity_data.h>
#include <xch_api/xch_api_mechanical_misc.h>
#include <xch_api/xch_api_mfg_data.h>
#include <xch_api/xch_api_pmi_set.h>

namespace xch {

// JSON: {"pmi_data": array, "log_file": string}; a missing PMI data is
// written as null. "pmi_data" is read into a new ExcPMIData only when it is
// an array; a missing or mistyped member leaves the pointer as it was.
class XCH_API ExcRootMechanicalData : public ExchangeObjectImpl<ExcRootMechanicalData> {
public:
    ExcRootMechanicalData();
    ~ExcRootMechanicalData() override;

    static const std::wstring& objName();
    bool binary() const override { return true; }
    bool compress() const override { return true; }

    // The PMI of the whole model, or null.
    const std::shared_ptr<ExcPMIData>& pmiData() const { return m_pmiData; }
    void setPMIData(const std::shared_ptr<ExcPMIData>& pmiData) { m_pmiData = pmiData; }
    // Path of a log file the producer wrote.
    const std::wstring& logFile() const { return m_logFile; }
    void setLogFile(const std::wstring& logFile) { m_logFile = logFile; }

    // A value that is not an object logs "ExcRootMechanicalData object
    // should have a JSON object type." at error level and changes nothing.
    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    std::shared_ptr<ExcPMIData> m_pmiData;
    std::wstring m_logFile;
};

// JSON: {"block_id": number, "log_file": string, "pmi_data": array,
// "misc_data": object, "mapping_data": array, "mfg_data": object,
// "entity_data": array}; a missing pointer is written as null. Reading
// takes "block_id" only from an unsigned 64-bit integer and makes each
// nested object anew when its member has the right JSON kind; a missing or
// mistyped member leaves the pointer as it was.
class XCH_API ExcBlockMechanicalData : public ExchangeObjectImpl<ExcBlockMechanicalData> {
public:
    ExcBlockMechanicalData();
    explicit ExcBlockMechanicalData(std::uint64_t blockId);
    ~ExcBlockMechanicalData() override;

    static const std::wstring& objName();
    bool binary() const override { return true; }
    bool compress() const override { return true; }

    // The block's id in the product structure.
    std::uint64_t blockId() const { return m_blockId; }
    void setBlockId(std::uint64_t blockId) { m_blockId = blockId; }
    // The block's PMI, or null.
    const std::shared_ptr<ExcPMIData>& pmiData() const { return m_pmiData; }
    void setPMIData(const std::shared_ptr<ExcPMIData>& pmiData) { m_pmiData = pmiData; }
    const std::shared_ptr<ExcMechanicalMiscData>& miscData() const { return m_miscData; }
    void setMiscData(const std::shared_ptr<ExcMechanicalMiscData>& miscData) { m_miscData = miscData; }
    const std::shared_ptr<ExcMappingData>& mappingData() const { return m_mappingData; }
    void setMappingData(const std::shared_ptr<ExcMappingData>& mappingData) { m_mappingData = mappingData; }
    const std::shared_ptr<ExcMfgData>& mfgData() const { return m_mfgData; }
    void setManufacturingData(const std::shared_ptr<ExcMfgData>& mfgData) { m_mfgData = mfgData; }
    const std::shared_ptr<ExcEntityData>& entityData() const { return m_entityData; }
    void setEntityData(const std::shared_ptr<ExcEntityData>& entityData) { m_entityData = entityData; }
    // Path of a log file the producer wrote.
    const std::wstring& logFile() const { return m_logFile; }
    void setLogFile(const std::wstring& logFile) { m_logFile = logFile; }

    // A value that is not an object logs "ExcBlockMechanicalData object
    // should have a JSON object type." at error level and changes nothing.
    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    std::uint64_t m_blockId = 0;
    std::shared_ptr<ExcPMIData> m_pmiData;
    std::shared_ptr<ExcMechanicalMiscData> m_miscData;
    std::shared_ptr<ExcMappingData> m_mappingData;
    std::shared_ptr<ExcMfgData> m_mfgData;
    std::shared_ptr<ExcEntityData> m_entityData;
    std::wstring m_logFile;
};

} // namespace xch
