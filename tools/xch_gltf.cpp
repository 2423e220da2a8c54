#include "xch_gltf.h"

#include "xch_import.h"

#if defined(XCH_HAVE_TINYGLTF)

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <map>
#include <vector>

#include <tiny_gltf.h>

#include <xch_api/xch_api_utf8.h>

using namespace xch;

namespace xch_tool {

namespace {

double metresPerUnit(ELengthUnitType unit) {
    switch (unit) {
    case LengthNanometer: return 1e-9;
    case LengthMicrometer: return 1e-6;
    case LengthCentimeter: return 0.01;
    case LengthDecimeter: return 0.1;
    case LengthMeter: return 1.0;
    case LengthInch: return 0.0254;
    case LengthFoot: return 0.3048;
    case LengthMile: return 1609.344;
    case LengthKilometer: return 1000.0;
    case LengthMilliinch: return 0.0000254;
    default: return 0.001; // millimetres, also when the unit is not known
    }
}

using Rgba = std::array<std::uint16_t, 4>;

Rgba rgba(const ExcColor& colour) {
    return {colour[ExcColor::Red], colour[ExcColor::Green], colour[ExcColor::Blue],
            colour.hasAlpha() ? colour[ExcColor::Alpha] : std::uint16_t(255)};
}

const Rgba kGrey = {180, 180, 185, 255};

// Triangles of one primitive as vertex indices (strips and fans unrolled).
void appendTriangles(const ExcVisuFace::Polygon& polygon, std::vector<std::uint32_t>& out, std::uint32_t base) {
    const auto& i = polygon.indices;
    auto add = [&](std::int32_t a, std::int32_t b, std::int32_t c) {
        out.insert(out.end(), {base + static_cast<std::uint32_t>(a), base + static_cast<std::uint32_t>(b),
                               base + static_cast<std::uint32_t>(c)});
    };
    if (polygon.type == ExcVisuFace::Triangles) {
        for (std::size_t k = 0; k + 2 < i.size(); k += 3) add(i[k], i[k + 1], i[k + 2]);
    } else if (polygon.type == ExcVisuFace::TriangleStrip) {
        for (std::size_t k = 0; k + 2 < i.size(); ++k)
            (k % 2) ? add(i[k + 1], i[k], i[k + 2]) : add(i[k], i[k + 1], i[k + 2]);
    } else if (polygon.type == ExcVisuFace::TriangleFan) {
        for (std::size_t k = 1; k + 1 < i.size(); ++k) add(i[0], i[k], i[k + 1]);
    }
}

class GlbBuilder {
public:
    explicit GlbBuilder(const ImportedModel& model) : m_model(model) {
        m_gltf.asset.version = "2.0";
        m_gltf.asset.generator = "xch import";
        m_gltf.buffers.emplace_back();
    }

    bool build(std::string& error) {
        tinygltf::Scene scene;
        tinygltf::Node root;
        root.name = m_model.structure && !m_model.structure->productName().empty()
                        ? toUtf8(m_model.structure->productName())
                        : "model";
        const double scale = metresPerUnit(m_model.structure ? m_model.structure->units() : LengthUnknown);
        root.scale = {scale, scale, scale};
        const int rootIndex = addNode(root);
        scene.nodes.push_back(rootIndex);
        if (m_model.structure) {
            for (const auto& reference : m_model.structure->rootBlockReferences())
                if (reference) place(*reference, rootIndex, std::vector<std::uint64_t>(), nullptr);
        } else {
            // No structure: every block's display model at the origin.
            for (const auto& entry : m_model.visualization) {
                tinygltf::Node node;
                node.name = "block " + std::to_string(entry.first);
                node.mesh = meshFor(entry.first, kGrey);
                m_gltf.nodes[static_cast<std::size_t>(rootIndex)].children.push_back(addNode(node));
            }
        }
        if (m_tooBig) {
            error = "the expanded assembly has too many instances for one file";
            return false;
        }
        m_gltf.scenes.push_back(scene);
        m_gltf.defaultScene = 0;
        m_gltf.buffers[0].data.swap(m_bytes);
        return true;
    }

    tinygltf::Model& gltf() { return m_gltf; }

private:
    int addNode(const tinygltf::Node& node) {
        m_gltf.nodes.push_back(node);
        return static_cast<int>(m_gltf.nodes.size() - 1);
    }

    // One node per reference, below `parent`; `path` holds the blocks
    // above it (a reference back into the path is not followed).
    void place(const ExcBlockReference& reference, int parent, std::vector<std::uint64_t> path, const Rgba* inherited) {
        if (m_gltf.nodes.size() > 2000000) {
            m_tooBig = true;
            return;
        }
        tinygltf::Node node;
        node.name = toUtf8(reference.name());
        const ExcTransformation& t = reference.transformation();
        const ExcMatrix3d& m = t.affine();
        node.matrix = {m[0].x(), m[1].x(), m[2].x(), 0, m[0].y(), m[1].y(), m[2].y(), 0,
                       m[0].z(), m[1].z(), m[2].z(), 0, t.translation().x(), t.translation().y(), t.translation().z(), 1};
        if (reference.isHidden()) node.extras = tinygltf::Value(tinygltf::Value::Object{{"hidden", tinygltf::Value(true)}});
        Rgba own;
        if (reference.color().hasRGB()) {
            own = rgba(reference.color());
            inherited = &own;
        }
        std::shared_ptr<ExcBlock> block = m_model.structure->getBlockById(reference.blockId());
        if (block && block->isPart()) node.mesh = meshFor(block->id(), inherited ? *inherited : kGrey);
        const int index = addNode(node);
        m_gltf.nodes[static_cast<std::size_t>(parent)].children.push_back(index);
        if (!block || std::find(path.begin(), path.end(), block->id()) != path.end()) return;
        path.push_back(block->id());
        for (const auto& child : block->blockReferences())
            if (child) place(*child, index, path, inherited);
    }

    // The mesh of a part's display model, its uncoloured faces in
    // `fallback`; -1 when it has no triangles.
    int meshFor(std::uint64_t blockId, const Rgba& fallback) {
        const auto key = std::make_pair(blockId, fallback);
        auto found = m_meshes.find(key);
        if (found != m_meshes.end()) return found->second;
        int index = -1;
        auto visualization = m_model.visualization.find(blockId);
        if (visualization != m_model.visualization.end() && visualization->second->visualizationData())
            index = makeMesh(blockId, *visualization->second->visualizationData(), fallback);
        m_meshes[key] = index;
        return index;
    }

    struct Group {
        std::vector<float> positions, normals;
        std::vector<std::uint32_t> indices;
    };

    void collect(const ExcVisuNode& node, std::map<Rgba, Group>& groups, const Rgba& fallback) {
        Rgba nodeColour = fallback;
        if (node.attributes() && node.attributes()->color().hasRGB()) nodeColour = rgba(node.attributes()->color());
        if (node.mesh()) {
            for (const auto& face : node.mesh()->faces()) {
                if (!face || face->vertexCount() == 0 || !face->indicesInRange()) continue;
                Group& group = groups[face->color().hasRGB() ? rgba(face->color()) : nodeColour];
                const std::uint32_t base = static_cast<std::uint32_t>(group.positions.size() / 3);
                const std::size_t n = face->vertexCount() * 3;
                group.positions.insert(group.positions.end(), face->vertices().begin(), face->vertices().begin() + n);
                for (std::size_t v = 0; v < n; v += 3) {
                    float x = 0, y = 0, z = 1;
                    if (face->normals().size() >= v + 3) {
                        x = face->normals()[v];
                        y = face->normals()[v + 1];
                        z = face->normals()[v + 2];
                    }
                    const float length = std::sqrt(x * x + y * y + z * z);
                    if (length > 1e-12f)
                        group.normals.insert(group.normals.end(), {x / length, y / length, z / length});
                    else
                        group.normals.insert(group.normals.end(), {0.0f, 0.0f, 1.0f});
                }
                for (const auto& polygon : face->polygons()) appendTriangles(polygon, group.indices, base);
            }
        }
        for (const auto& child : node.childNodes())
            if (child) collect(*child, groups, nodeColour);
    }

    int makeMesh(std::uint64_t blockId, const ExcVisualizationData& data, const Rgba& fallback) {
        std::map<Rgba, Group> groups;
        for (const auto& node : data.sceneRootNodes())
            if (node) collect(*node, groups, fallback);
        tinygltf::Mesh mesh;
        mesh.name = "block " + std::to_string(blockId);
        for (auto& entry : groups) {
            Group& g = entry.second;
            if (g.indices.empty()) continue;
            tinygltf::Primitive primitive;
            primitive.mode = TINYGLTF_MODE_TRIANGLES;
            primitive.attributes["POSITION"] = accessor(g.positions, true);
            primitive.attributes["NORMAL"] = accessor(g.normals, false);
            primitive.indices = indexAccessor(g.indices);
            primitive.material = material(entry.first);
            mesh.primitives.push_back(primitive);
        }
        if (mesh.primitives.empty()) return -1;
        m_gltf.meshes.push_back(mesh);
        return static_cast<int>(m_gltf.meshes.size() - 1);
    }

    int view(const void* data, std::size_t size, int target) {
        while (m_bytes.size() % 4) m_bytes.push_back(0);
        tinygltf::BufferView view;
        view.buffer = 0;
        view.byteOffset = m_bytes.size();
        view.byteLength = size;
        view.target = target;
        const auto* bytes = static_cast<const unsigned char*>(data);
        m_bytes.insert(m_bytes.end(), bytes, bytes + size);
        m_gltf.bufferViews.push_back(view);
        return static_cast<int>(m_gltf.bufferViews.size() - 1);
    }

    int accessor(const std::vector<float>& xyz, bool bounds) {
        tinygltf::Accessor a;
        a.bufferView = view(xyz.data(), xyz.size() * sizeof(float), TINYGLTF_TARGET_ARRAY_BUFFER);
        a.componentType = TINYGLTF_COMPONENT_TYPE_FLOAT;
        a.type = TINYGLTF_TYPE_VEC3;
        a.count = xyz.size() / 3;
        if (bounds) {
            a.minValues = {xyz[0], xyz[1], xyz[2]};
            a.maxValues = a.minValues;
            for (std::size_t i = 0; i < xyz.size(); ++i) {
                a.minValues[i % 3] = std::min(a.minValues[i % 3], static_cast<double>(xyz[i]));
                a.maxValues[i % 3] = std::max(a.maxValues[i % 3], static_cast<double>(xyz[i]));
            }
        }
        m_gltf.accessors.push_back(a);
        return static_cast<int>(m_gltf.accessors.size() - 1);
    }

    int indexAccessor(const std::vector<std::uint32_t>& indices) {
        tinygltf::Accessor a;
        a.bufferView = view(indices.data(), indices.size() * sizeof(std::uint32_t), TINYGLTF_TARGET_ELEMENT_ARRAY_BUFFER);
        a.componentType = TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT;
        a.type = TINYGLTF_TYPE_SCALAR;
        a.count = indices.size();
        m_gltf.accessors.push_back(a);
        return static_cast<int>(m_gltf.accessors.size() - 1);
    }

    // glTF colours are linear; the exchange's are sRGB 0-255.
    static double linear(std::uint16_t channel) {
        const double c = std::min(255, static_cast<int>(channel)) / 255.0;
        return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    }

    int material(const Rgba& colour) {
        auto found = m_materials.find(colour);
        if (found != m_materials.end()) return found->second;
        tinygltf::Material m;
        m.name = "rgb " + std::to_string(colour[0]) + " " + std::to_string(colour[1]) + " " + std::to_string(colour[2]);
        m.pbrMetallicRoughness.baseColorFactor = {linear(colour[0]), linear(colour[1]), linear(colour[2]),
                                                  std::min(255, static_cast<int>(colour[3])) / 255.0};
        m.pbrMetallicRoughness.metallicFactor = 0.1;
        m.pbrMetallicRoughness.roughnessFactor = 0.6;
        if (colour[3] < 255) m.alphaMode = "BLEND";
        m.doubleSided = true;
        m_gltf.materials.push_back(m);
        const int index = static_cast<int>(m_gltf.materials.size() - 1);
        m_materials[colour] = index;
        return index;
    }

    const ImportedModel& m_model;
    tinygltf::Model m_gltf;
    std::vector<unsigned char> m_bytes;
    std::map<std::pair<std::uint64_t, Rgba>, int> m_meshes;
    std::map<Rgba, int> m_materials;
    bool m_tooBig = false;
};

} // namespace

bool canWriteGlb() { return true; }

bool writeGlb(const ImportedModel& model, const std::string& path, std::string& error) {
    GlbBuilder builder(model);
    if (!builder.build(error)) return false;
    tinygltf::TinyGLTF writer;
    if (!writer.WriteGltfSceneToFile(&builder.gltf(), path, true, true, false, true)) {
        error = "the glTF writer failed";
        return false;
    }
    return true;
}

} // namespace xch_tool

#else

namespace xch_tool {

bool canWriteGlb() { return false; }

bool writeGlb(const ImportedModel&, const std::string&, std::string& error) {
    error = "this xch was built without glTF support (tinygltf)";
    return false;
}

} // namespace xch_tool

#endif
