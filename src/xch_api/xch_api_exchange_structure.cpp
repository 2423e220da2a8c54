// The assembly tree: blocks, block references, the product structure.
#include <xch_api/xch_api_exchange_structure.h>

#include <algorithm>
#include <limits>
#include <unordered_set>

#include <xch_api/xch_api_json_members.h>

namespace xch {

// ---- ExcBlockReference ----------------------------------------------------------

ExcBlockReference::ExcBlockReference() = default;
ExcBlockReference::ExcBlockReference(std::uint64_t blockId, const std::wstring& name)
    : m_blockId(blockId), m_name(name) {}
ExcBlockReference::ExcBlockReference(const ExcBlockReference&) = default;
ExcBlockReference& ExcBlockReference::operator=(const ExcBlockReference&) = default;
ExcBlockReference::~ExcBlockReference() = default;

template <class Io, class Self>
void ExcBlockReference::members(Io& io, Self& self) {
    io(L"guid", self.m_guid);
    io(L"persistent_id", self.m_persistentId);
    io(L"persistent_name", self.m_persistentName);
    io(L"block_id", self.m_blockId);
    io(L"name", self.m_name);
    io(L"hidden", self.m_hidden);
    io(L"suppressed", self.m_suppressed);
    io(L"configuration_name", self.m_configurationName);
    io(L"transformation", self.m_transformation);
    io(L"color", self.m_color, json::whenObject);
    io(L"misc_data", self.m_miscData);
}

XCH_JSON_IO(ExcBlockReference)

// ---- ExcBlock -----------------------------------------------------------------------

ExcBlock::ExcBlock() = default;
ExcBlock::ExcBlock(std::uint64_t id, const std::wstring& name, bool part) : m_id(id), m_name(name), m_part(part) {}
ExcBlock::ExcBlock(const ExcBlock&) = default;
ExcBlock& ExcBlock::operator=(const ExcBlock&) = default;
ExcBlock::~ExcBlock() = default;

void ExcBlock::addBlockReference(const std::shared_ptr<ExcBlockReference>& reference) {
    if (!reference) {
        VX_LOG(vx_link::LevelWarning, "ExcBlock: attempt to add null Block Reference object.");
        return;
    }
    m_blockReferences.push_back(reference);
}

std::size_t ExcBlock::removeBlockReference(std::uint64_t blockId) {
    const std::size_t before = m_blockReferences.size();
    m_blockReferences.erase(std::remove_if(m_blockReferences.begin(), m_blockReferences.end(),
                                           [blockId](const std::shared_ptr<ExcBlockReference>& reference) {
                                               return reference && reference->blockId() == blockId;
                                           }),
                            m_blockReferences.end());
    return before - m_blockReferences.size();
}

template <class Io, class Self>
void ExcBlock::members(Io& io, Self& self) {
    io(L"block_id", self.m_id);
    io(L"name", self.m_name);
    io(L"storage_name", self.m_storageName);
    io(L"world_orientation", self.m_worldOrientation);
    io(L"misc_data", self.m_miscData);
    io(L"is_part", self.m_part);
    io(L"block_references", self.m_blockReferences);
}

XCH_JSON_IO(ExcBlock)

// ---- ExcProductStructure --------------------------------------------------------------

// "blocks": written as the array of non-null blocks; read block by block
// through addBlock, giving a block that arrives without an id one of its
// own.
struct ExcProductStructure::BlocksRule {
    ExcProductStructure* owner;  // null when writing

    bool write(JsonValue& v, JsonAllocator& a, const Blocks& blocks) const {
        json::Codec<Blocks>::write(v, a, blocks);
        return true;
    }
    void read(const JsonValue& v, Blocks&) const {
        if (!v.IsArray()) return;
        for (const JsonValue& item : v.GetArray()) {
            auto block = std::make_shared<ExcBlock>();
            block->readObject(item);
            const bool hasId = item.IsObject() && item.HasMember(L"block_id") && item[L"block_id"].IsUint64();
            if (!hasId) {
                block->setId(owner->idForBlockWithoutId());
                VX_LOG(vx_link::LevelWarning, "ExcProductStructure: block '"
                                                  << vx_link::utf8(block->name())
                                                  << "' has no block_id, it was given the id " << block->id()
                                                  << ".");
            }
            owner->addBlock(block);
        }
    }
};

ExcProductStructure::ExcProductStructure() = default;
ExcProductStructure::ExcProductStructure(const ExcProductStructure&) = default;
ExcProductStructure& ExcProductStructure::operator=(const ExcProductStructure&) = default;
ExcProductStructure::~ExcProductStructure() = default;

const std::wstring& ExcProductStructure::objName() {
    static const std::wstring s_objectName = L"exc_product_structure";
    return s_objectName;
}

bool ExcProductStructure::binary() const { return true; }
bool ExcProductStructure::compress() const { return true; }

void ExcProductStructure::addBlock(const std::shared_ptr<ExcBlock>& block) {
    if (!block) {
        VX_LOG(vx_link::LevelWarning, "ExcProductStructure: attempt to add null Block object.");
        return;
    }
    auto held = m_blockIndex.find(block->id());
    if (held != m_blockIndex.end()) {
        auto it = std::find(m_blocks.begin(), m_blocks.end(), held->second);
        if (it != m_blocks.end())
            m_blocks.erase(it);
        held->second = block;
    } else {
        m_blockIndex.emplace(block->id(), block);
    }
    m_blocks.push_back(block);
}

std::shared_ptr<ExcBlock> ExcProductStructure::getBlockById(std::uint64_t id) const {
    auto it = m_blockIndex.find(id);
    return it == m_blockIndex.end() ? nullptr : it->second;
}

std::uint64_t ExcProductStructure::idForBlockWithoutId() const {
    if (m_blockIndex.empty())
        return 0;
    const std::uint64_t largest = m_blockIndex.rbegin()->first;
    if (largest != std::numeric_limits<std::uint64_t>::max())
        return largest + 1;
    std::uint64_t free = 0;  // the largest id is taken: the first gap from 0
    for (const auto& entry : m_blockIndex) {
        if (entry.first != free)
            break;
        ++free;
    }
    return free;
}

void ExcProductStructure::addRootBlockReference(const std::shared_ptr<ExcBlockReference>& reference) {
    if (!reference) {
        VX_LOG(vx_link::LevelWarning, "ExcProductStructure: attempt to add null Block Reference object.");
        return;
    }
    m_rootBlockReferences.push_back(reference);
}

void ExcProductStructure::removeRootBlockReference(int index) {
    if (index < 0 || static_cast<std::size_t>(index) >= m_rootBlockReferences.size()) {
        VX_LOG(vx_link::LevelWarning, "ExcProductStructure::removeRootBlockReference: index "
                                          << index << " is out of range, nothing removed.");
        return;
    }
    m_rootBlockReferences.erase(m_rootBlockReferences.begin() + index);
}

bool ExcProductStructure::isPart() const {
    if (m_productName == L"SPAXIopPSProductDummyReference")
        return true;
    return m_rootBlockReferences.size() == 1 && m_rootBlockReferences.front() &&
           m_rootBlockReferences.front()->name() == L"SPAXIopPSProductDummyInstance";
}

void ExcProductStructure::visit(const Visitor& visitor) const {
    struct Frame {
        const ExcBlock* block;
        std::size_t next;  // index of the next child to visit
    };
    std::vector<Frame> path;
    std::unordered_set<const ExcBlock*> onPath;
    // Visits one reference; returns false to end the walk.
    auto enter = [&](const ExcBlockReference& reference, std::size_t depth) {
        const ExcBlock* block = getBlockById(reference.blockId()).get();
        if (!visitor(reference, block, depth))
            return false;
        if (block && onPath.insert(block).second)
            path.push_back({block, 0});
        return true;
    };
    for (const auto& root : m_rootBlockReferences) {
        if (!root) continue;
        if (!enter(*root, 0)) return;
        while (!path.empty()) {
            Frame& top = path.back();
            const auto& children = top.block->blockReferences();
            if (top.next == children.size()) {
                onPath.erase(top.block);
                path.pop_back();
                continue;
            }
            const auto& child = children[top.next++];
            if (child && !enter(*child, path.size()))
                return;
        }
    }
}

template <class Io, class Self>
void ExcProductStructure::members(Io& io, Self& self) {
    ExcProductStructure* owner = nullptr;
    if constexpr (Io::reading) owner = &self;
    io(L"product_name", self.m_productName);
    io(L"product_configuration_name", self.m_productConfigurationName);
    io(L"misc_data", self.m_miscData);
    io(L"units", self.m_units);
    io(L"world_orientation", self.m_worldOrientation);
    io(L"blocks", self.m_blocks, BlocksRule{owner});
    io(L"root_block_references", self.m_rootBlockReferences, json::optional);
}

XCH_JSON_IO(ExcProductStructure)

static StaticExchangeObject<ExcProductStructure> s_productStructurePrototype;

} // namespace xch
