// The assembly tree of a translated model.
//
// An ExcProductStructure holds the blocks (part and sub-assembly
// definitions) and the root references that place blocks in the top-level
// assembly; each block holds references to its child blocks. Geometry,
// mechanical data and visualization name a block by its 64-bit id. The
// structure is a registered top-level object ("exc_product_structure") that
// travels as compressed binary JSON in shared memory.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <xch_api/xch_api_exchange_common.h>
#include <xch_api/xch_api_exchange_object.h>
#include <xch_api/xch_api_misc_data.h>

namespace xch {

// One placement of a block inside its parent (or in the root assembly).
//
// JSON: {"guid", "persistent_id", "persistent_name", "block_id", "name",
// "hidden", "suppressed", "configuration_name", "transformation", "color",
// "misc_data"}, all always written; an unset colour is written as null and
// "misc_data" is the property-group array. Every key is optional on reading
// and read only when of its JSON type ("color" only from an object).
class XCH_API ExcBlockReference : public IJsonObject {
public:
    ExcBlockReference();
    // A reference to block `blockId` named `name`.
    ExcBlockReference(std::uint64_t blockId, const std::wstring& name);
    ExcBlockReference(const ExcBlockReference&);
    ExcBlockReference& operator=(const ExcBlockReference&);
    ~ExcBlockReference() override;

    const std::wstring& guid() const { return m_guid; }
    void setGuid(const std::wstring& guid) { m_guid = guid; }
    const std::wstring& persistentId() const { return m_persistentId; }
    void setPersistentId(const std::wstring& id) { m_persistentId = id; }
    const std::wstring& persistentName() const { return m_persistentName; }
    void setPersistentName(const std::wstring& name) { m_persistentName = name; }
    std::uint64_t blockId() const { return m_blockId; }
    void setBlockId(std::uint64_t blockId) { m_blockId = blockId; }
    // The instance name.
    const std::wstring& name() const { return m_name; }
    void setName(const std::wstring& name) { m_name = name; }
    // Places the referenced block in the parent's coordinates.
    const ExcTransformation& transformation() const { return m_transformation; }
    void setTransformation(const ExcTransformation& transformation) { m_transformation = transformation; }
    const ExcColor& color() const { return m_color; }
    void setColor(const ExcColor& color) { m_color = color; }
    bool isHidden() const { return m_hidden; }
    void setHidden(bool hidden) { m_hidden = hidden; }
    bool isSuppressed() const { return m_suppressed; }
    void setSuppressed(bool suppressed) { m_suppressed = suppressed; }
    const std::wstring& configurationName() const { return m_configurationName; }
    void setConfigurationName(const std::wstring& name) { m_configurationName = name; }
    const ExcMiscData& miscData() const { return m_miscData; }
    ExcMiscData& miscData() { return m_miscData; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    std::wstring m_guid;
    std::wstring m_persistentId;
    std::wstring m_persistentName;
    std::uint64_t m_blockId = 0;
    std::wstring m_name;
    ExcTransformation m_transformation;
    ExcColor m_color;
    bool m_hidden = false;
    bool m_suppressed = false;
    std::wstring m_configurationName;
    ExcMiscData m_miscData;
};

// A part or sub-assembly definition: its name, where it came from, its
// property groups and the references to its children.
//
// JSON: {"block_id", "name", "storage_name", "world_orientation",
// "misc_data", "is_part", "block_references"}, all always written. The id
// travels under "block_id" (an unsigned 64-bit integer), first, so that
// references resolve on the other side; a block read without it keeps the
// id it had (see ExcProductStructure for blocks read as part of a
// structure). Each element of "block_references" becomes a new child
// reference appended to those held (an element that is not an object is
// logged and gives a default reference, as any refused read does).
class XCH_API ExcBlock : public IJsonObject {
public:
    ExcBlock();
    explicit ExcBlock(std::uint64_t id, const std::wstring& name = std::wstring(), bool part = false);
    ExcBlock(const ExcBlock&);
    ExcBlock& operator=(const ExcBlock&);
    ~ExcBlock() override;

    std::uint64_t id() const { return m_id; }
    void setId(std::uint64_t id) { m_id = id; }
    const std::wstring& name() const { return m_name; }
    void setName(const std::wstring& name) { m_name = name; }
    // The file or storage the block came from.
    const std::wstring& storageName() const { return m_storageName; }
    void setStorageName(const std::wstring& name) { m_storageName = name; }
    EWorldOrientation worldOrientation() const { return m_worldOrientation; }
    void setWorldOrientation(EWorldOrientation orientation) { m_worldOrientation = orientation; }
    const ExcMiscData& miscData() const { return m_miscData; }
    ExcMiscData& miscData() { return m_miscData; }
    // True for a part (a leaf holding geometry).
    bool isPart() const { return m_part; }
    void setPart(bool part) { m_part = part; }

    // The child references, in insertion order.
    const std::vector<std::shared_ptr<ExcBlockReference>>& blockReferences() const { return m_blockReferences; }
    // Appends `reference`; a null pointer is refused with a warning.
    void addBlockReference(const std::shared_ptr<ExcBlockReference>& reference);
    // Removes every child reference to block `blockId`; returns how many.
    std::size_t removeBlockReference(std::uint64_t blockId);

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    std::uint64_t m_id = 0;
    std::wstring m_name;
    std::wstring m_storageName;
    EWorldOrientation m_worldOrientation = OrientationUnknown;
    ExcMiscData m_miscData;
    std::vector<std::shared_ptr<ExcBlockReference>> m_blockReferences;
    bool m_part = false;
};

// The assembly tree ("exc_product_structure", binary and compressed).
//
// JSON: {"product_name", "product_configuration_name", "misc_data" (the
// property-group array), "units", "world_orientation", "blocks",
// "root_block_references"}; the last is written only when there are root
// references, and null blocks are skipped.
//
// Reading passes each block of "blocks" to addBlock, so a later block with
// an id replaces an earlier one. A block without an unsigned 64-bit
// "block_id" does not collapse into another: it is given the smallest id
// above every id already held (or, when 2^64-1 is held, the smallest free
// id), and a warning names the id it was given. Root references are
// appended. Reading never checks that references resolve: a reference to
// a missing block stays as read (getBlockById returns null for it), and
// reference cycles are kept; visit() stops at them.
class XCH_API ExcProductStructure : public ExchangeObjectImpl<ExcProductStructure> {
public:
    using Blocks = std::vector<std::shared_ptr<ExcBlock>>;
    using References = std::vector<std::shared_ptr<ExcBlockReference>>;

    ExcProductStructure();
    ExcProductStructure(const ExcProductStructure&);
    ExcProductStructure& operator=(const ExcProductStructure&);
    ~ExcProductStructure() override;

    static const std::wstring& objName();
    bool binary() const override;
    bool compress() const override;

    const std::wstring& productName() const { return m_productName; }
    void setProductName(const std::wstring& name) { m_productName = name; }
    const std::wstring& productConfigurationName() const { return m_productConfigurationName; }
    void setProductConfigurationName(const std::wstring& name) { m_productConfigurationName = name; }
    const ExcMiscData& miscData() const { return m_miscData; }
    ExcMiscData& miscData() { return m_miscData; }
    ELengthUnitType units() const { return m_units; }
    void setUnits(ELengthUnitType units) { m_units = units; }
    EWorldOrientation worldOrientation() const { return m_worldOrientation; }
    void setWorldOrientation(EWorldOrientation orientation) { m_worldOrientation = orientation; }

    // The blocks in insertion order.
    const Blocks& blocks() const { return m_blocks; }
    // Appends `block`; a block of the same id held before is removed first
    // (so the new one ends up last). A null pointer is refused with a
    // warning.
    void addBlock(const std::shared_ptr<ExcBlock>& block);
    // The block of `id` (O(log n)), or null.
    std::shared_ptr<ExcBlock> getBlockById(std::uint64_t id) const;

    const References& rootBlockReferences() const { return m_rootBlockReferences; }
    // Appends `reference`; a null pointer is refused with a warning.
    void addRootBlockReference(const std::shared_ptr<ExcBlockReference>& reference);
    // Removes the root reference at `index`; an index out of range changes
    // nothing and is logged as a warning.
    void removeRootBlockReference(int index);

    // True when the translation core wrapped a single part in a dummy
    // assembly: the product name is "SPAXIopPSProductDummyReference", or
    // the one root reference is named "SPAXIopPSProductDummyInstance".
    bool isPart() const;

    // Walks the tree depth first from the root references: calls
    // `visitor(reference, block, depth)` for each reference (block is null
    // when its id does not resolve; depth 0 for roots) and descends into
    // the block's children. A reference to a block already on the current
    // path (a cycle) is visited but not descended into. The walk keeps its
    // own stack, so a deep tree does not exhaust the call stack. The walk
    // ends early when the visitor returns false (a shared sub-assembly is
    // visited once per instance, so a hostile structure can make the full
    // walk very long).
    using Visitor = std::function<bool(const ExcBlockReference& reference, const ExcBlock* block,
                                       std::size_t depth)>;
    void visit(const Visitor& visitor) const;

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    struct BlocksRule;
    std::uint64_t idForBlockWithoutId() const;

    std::wstring m_productName;
    std::wstring m_productConfigurationName;
    ExcMiscData m_miscData;
    ELengthUnitType m_units = LengthUnknown;
    EWorldOrientation m_worldOrientation = OrientationUnknown;
    Blocks m_blocks;
    std::map<std::uint64_t, std::shared_ptr<ExcBlock>> m_blockIndex;
    References m_rootBlockReferences;
};

} // namespace xch
