// References to geometric entities of the translated model. PMI,
// manufacturing features and the mechanical data point at faces, edges and
// other topology through an ExcEntity; an entity reached through the
// assembly carries an ExcFullSubentPath (the chain of block references and
// the sub-entity inside the last block).
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <xch_api/xch_api_enum_table.h>
#include <xch_api/xch_api_export.h>
#include <xch_api/xch_api_json.h>
#include <xch_api/xch_api_json_object.h>

namespace xch {

// The path from the root assembly down to one sub-entity of a block.
//
// JSON: {"block_references": [strings], "subent_id": uint64,
// "subent_type": string, "visu_id": string, "instance_path": bool}, all
// always written. Each key is read only when of its JSON type.
class XCH_API ExcFullSubentPath : public IJsonObject {
public:
    // The kind of topological sub-entity a path ends at. Shared by the
    // mechanical data (PMI links, features, entity data). The values are
    // stored as numbers; JSON carries the string in the comment.
    // `Unspecified` (98) is what a new path carries until the producer says
    // what it points at; it travels as "unspecified" and reads back as 98.
    // An unknown string reads as `Body` (the table's smallest string).
    enum ESubentType : std::int32_t {
        Unknown = 0,      // "unknown"
        Vertex = 1,       // "vertex"
        Edge = 2,         // "edge"
        Coedge = 3,       // "coedge": an edge as used by one face (with its sense)
        Loop = 4,         // "loop": a closed chain of coedges bounding a face
        Face = 5,         // "face"
        Shell = 6,        // "shell": connected faces
        Subshell = 7,     // "subshell"
        Lump = 8,         // "lump": one connected solid region of a body
        Body = 9,         // "body"
        Wire = 10,        // "wire": edges that bound no face
        Point = 11,       // "point": a free construction point
        Curve = 12,       // "curve": an unbounded or free curve
        Surface = 13,     // "surface": an unbounded or free surface
        Unspecified = 98  // "unspecified"
    };

    ExcFullSubentPath();
    explicit ExcFullSubentPath(std::uint64_t subentId);
    ExcFullSubentPath(const ExcFullSubentPath&);
    ExcFullSubentPath& operator=(const ExcFullSubentPath&);
    ~ExcFullSubentPath() override;

    // The block reference ids from the root down to the owning block.
    const std::vector<std::wstring>& refs() const { return m_refs; }
    std::vector<std::wstring>& refs() { return m_refs; }
    ESubentType subentType() const { return m_subentType; }
    void setSubentType(ESubentType type) { m_subentType = type; }
    std::uint64_t subentId() const { return m_subentId; }
    void setSubentId(std::uint64_t id) { m_subentId = id; }
    const std::wstring& visuId() const { return m_visuId; }
    void setVisuId(const std::wstring& visuId) { m_visuId = visuId; }
    bool isInstancePath() const { return m_instancePath; }
    void setInstancePath(bool instancePath) { m_instancePath = instancePath; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    std::vector<std::wstring> m_refs;
    ESubentType m_subentType = Unspecified;
    std::uint64_t m_subentId = 0;
    std::wstring m_visuId;
    bool m_instancePath = false;
};

template <> XCH_API const EnumTable<ExcFullSubentPath::ESubentType>& enumTable<ExcFullSubentPath::ESubentType>();

// One entity of the model, named by a full sub-entity path ("fsp"), by a
// manufacturing-feature id ("mfg") or by an id of the source system
// ("original").
//
// JSON: "type" first; then, by type, "fsp" (the path object, or null when
// there is none) for fsp, "id" for mfg, "description" and "id" for
// original, nothing more for unknown. Reading takes "id", "fsp" (a new path
// when the member is an object) and "description" whenever present,
// whatever the type. Copies share the path.
class XCH_API ExcEntity : public IJsonObject {
public:
    enum EType : std::int32_t {
        Unknown = 0,  // "unknown"
        Fsp,          // "fsp"
        Mfg,          // "mfg"
        Original      // "original"
    };

    ExcEntity();
    // An fsp entity for `fsp`.
    explicit ExcEntity(const std::shared_ptr<ExcFullSubentPath>& fsp);
    // An entity of `type` named by `id`.
    ExcEntity(EType type, const std::wstring& id, const std::wstring& description = std::wstring());
    ExcEntity(const ExcEntity&);
    ExcEntity& operator=(const ExcEntity&);
    ~ExcEntity() override;

    const std::wstring& id() const { return m_id; }
    void setId(const std::wstring& id) { m_id = id; }
    EType type() const { return m_type; }
    void setType(EType type) { m_type = type; }
    const std::shared_ptr<ExcFullSubentPath>& fsp() const { return m_fsp; }
    void setFsp(const std::shared_ptr<ExcFullSubentPath>& fsp) { m_fsp = fsp; }
    const std::wstring& description() const { return m_description; }
    void setDescription(const std::wstring& description) { m_description = description; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    std::wstring m_id;
    EType m_type = Unknown;
    std::shared_ptr<ExcFullSubentPath> m_fsp;
    std::wstring m_description;
};

template <> XCH_API const EnumTable<ExcEntity::EType>& enumTable<ExcEntity::EType>();

} // namespace xch
