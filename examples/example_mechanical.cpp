#include "example_mechanical.h"
#include "example_support.h"

#include <sstream>

using namespace xch;

namespace example {

namespace {

std::shared_ptr<ExcMfgFeatureCounterBoreHole> counterboredHolesOnACircle(std::uint64_t blockId) {
    auto data = std::make_shared<ExcMfgCounterBoreHole>();
    data->setName(L"M6 counterbore");
    data->setPrimaryDiameter(6.6);
    data->setPrimaryDepth(12.0);
    data->setTipAngleDegrees(118.0);
    data->setBottomLimitExtentType(ExcMfgHole::UpToNext);
    data->setCenter(ExcVector3d(30.0, 0.0, 12.0));
    data->setDirection(ExcVector3d(0.0, 0.0, -1.0));
    data->setDiameter(11.0);
    data->setMaximumTolerance(0.1);
    data->setDepth(6.4);

    auto pattern = std::make_shared<ExcMfgPatternCircular>();
    pattern->setAnchorPoint(ExcVector3d(30.0, 0.0, 12.0));
    pattern->setAxisOfRotation(ExcVector3d(0.0, 0.0, 1.0));
    pattern->setAxialInstCount(6);
    pattern->setRadialInstCount(1);
    pattern->setAxialDistDegrees(60.0);
    for (int i = 0; i < 6; ++i) pattern->addVisibleInstance({i, 0});
    auto base = std::make_shared<ExcMfgPattern::Instance>();
    base->setBase(true);
    base->addDefining(face(blockId, 101));
    pattern->setBaseInstance(base);

    auto hole = std::make_shared<ExcMfgFeatureCounterBoreHole>();
    hole->setName(L"Bolt circle");
    hole->setHoleData(data);
    hole->setPattern(pattern);
    hole->addDefiningGeometry(face(blockId, 101));
    hole->addLimitingGeometry(face(blockId, 102));
    return hole;
}

std::shared_ptr<ExcMfgFeatureInternalThread> internalThread(std::uint64_t blockId) {
    auto data = std::make_shared<ExcMfgThread>();
    data->setDiameter(6.0);
    data->setDepth(10.0);
    data->setPitch(1.0);
    data->setOrientation(ExcMfgThreading::RightHanded);
    data->setDesignation(L"M6x1");
    data->setDesignationSystemType(ExcMfgThreading::Metric);
    data->setBottomType(ExcMfgThread::Dimension);
    auto thread = std::make_shared<ExcMfgFeatureInternalThread>();
    thread->setName(L"Tapped hole");
    thread->setThread(data);
    thread->addSideFace(face(blockId, 103));
    return thread;
}

std::shared_ptr<ExcMechanicalMiscData> miscData(std::uint64_t blockId) {
    auto misc = std::make_shared<ExcMechanicalMiscData>();
    auto wcs = std::make_shared<ExcMiscWCS>();
    wcs->setName(L"Machining");
    wcs->setId(L"wcs-1");
    wcs->setOrigin(ExcVector3d(0.0, 0.0, 12.0));
    wcs->setX(ExcVector3d(1.0, 0.0, 0.0));
    wcs->setY(ExcVector3d(0.0, 1.0, 0.0));
    wcs->setZ(ExcVector3d(0.0, 0.0, 1.0));
    wcs->setActive(true);
    wcs->setShown(true);
    wcs->setLayerId(L"layer-holes");
    misc->addWorldCoordinateSystem(wcs);

    auto layer = std::make_shared<ExcMiscLayer>(L"layer-holes", L"Holes");
    layer->setColor(ExcColor(255, 128, 0));
    layer->addEntity(face(blockId, 101));
    misc->addLayer(layer);
    auto filter = std::make_shared<ExcMiscLayerFilter>(L"Holes only", ExcMiscLayerFilter::Other);
    filter->setLayerId(L"layer-holes");
    misc->addLayerFilter(filter);

    // 7.85 g/cm^3: gram^1 centimetre^-3 in the cgs system.
    ExcMiscMaterialPropertyUnit gramPerCubicCentimetre;
    gramPerCubicCentimetre.setUnitSystem(ExcMiscMaterialPropertyUnit::Cgs);
    gramPerCubicCentimetre.setMass(ExcUnitComponent<EMassUnitType>(1, MassGram));
    gramPerCubicCentimetre.setLength(ExcUnitComponent<ELengthUnitType>(-3, LengthCentimeter));
    auto steel = std::make_shared<ExcMiscMaterial>(L"Steel S235");
    steel->set(ExcMiscMaterial::Density, std::make_shared<ExcMiscMaterialProperty>(7.85, gramPerCubicCentimetre));
    steel->setPartLevelMaterial(true);
    misc->addMaterial(steel);
    return misc;
}

} // namespace

std::shared_ptr<ExcBlockMechanicalData> makeBlockMechanicalData(std::uint64_t blockId) {
    auto block = std::make_shared<ExcBlockMechanicalData>(blockId);
    auto mfg = std::make_shared<ExcMfgData>();
    mfg->setHasData(true);
    mfg->addCounterBoreHole(counterboredHolesOnACircle(blockId));
    mfg->addInternalThread(internalThread(blockId));
    block->setManufacturingData(mfg);
    block->setMiscData(miscData(blockId));

    // The translated faces came from these entities of the STEP file.
    auto mapping = std::make_shared<ExcMappingData>();
    auto entities = std::make_shared<ExcEntityData>();
    for (std::uint64_t subent = 101; subent <= 102; ++subent) {
        const std::wstring stepId = L"#" + std::to_wstring(blockId * 1000 + subent);
        mapping->add(face(blockId, subent), std::make_shared<ExcEntity>(ExcEntity::Original, stepId, L"ADVANCED_FACE"));
        auto info = std::make_shared<ExcTopologicalEntityInformation>(*face(blockId, subent));
        info->addPersistentName(L"Face" + std::to_wstring(subent));
        info->addPersistentName(stepId);
        info->setLineType(ExcTopologicalEntityInformation::Solid);
        info->setLineThickness(0.25);
        entities->addData(info);
    }
    block->setMappingData(mapping);
    block->setEntityData(entities);
    return block;
}

std::shared_ptr<ExcRootMechanicalData> makeRootMechanicalData() {
    auto root = std::make_shared<ExcRootMechanicalData>();
    root->setLogFile(L"mechanical.log");
    return root;
}

void printBlockMechanicalData(const ExcBlockMechanicalData& data, const std::function<void(const std::wstring&)>& say) {
    const std::wstring block = L"block " + std::to_wstring(data.blockId()) + L" mechanical: ";
    if (const auto& mfg = data.mfgData()) {
        for (const auto& hole : mfg->counterBoreHoles()) {
            std::wstring line = block + L"counterbore hole '" + hole->name() + L"'";
            if (const auto& holeData = hole->holeData())
                line += L" \u2300" + number(holeData->primaryDiameter()) + L" / \u2300" + number(holeData->diameter()) +
                        L" depth " + number(holeData->depth());
            if (auto circle = std::dynamic_pointer_cast<ExcMfgPatternCircular>(hole->pattern()))
                line += L", circular pattern of " + std::to_wstring(circle->axialInstCount());
            say(line);
        }
        for (const auto& thread : mfg->internalThreads())
            say(block + L"internal thread '" + thread->name() + L"'" +
                (thread->thread() ? L" " + thread->thread()->designation() : std::wstring()));
    }
    if (const auto& misc = data.miscData()) {
        for (const auto& wcs : misc->worldCoordinateSystems())
            say(block + L"coordinate system '" + wcs->name() + L"'" + (wcs->isActive() ? L" (active)" : L""));
        for (const auto& layer : misc->layers())
            say(block + L"layer '" + layer->name() + L"' with " + std::to_wstring(layer->entities().size()) +
                L" entities");
        for (const auto& filter : misc->layerFilters())
            say(block + L"layer filter '" + filter->name() + L"' (" + enumToString(filter->type()) + L")");
        for (const auto& material : misc->materials()) {
            std::wstring line = block + L"material '" + material->name() + L"'";
            if (auto density = material->get(ExcMiscMaterial::Density)) {
                const auto& unit = density->unit();
                line += L" density " + number(density->value()) + L" " + enumToString(unit.mass().units()) + L"^" +
                        std::to_wstring(unit.mass().dimension()) + L" " + enumToString(unit.length().units()) + L"^" +
                        std::to_wstring(unit.length().dimension()) + L" (" + enumToString(unit.unitSystem()) + L")";
            }
            say(line);
        }
    }
    if (const auto& mapping = data.mappingData())
        for (const auto& pair : mapping->pairs())
            say(block + L"face " + std::to_wstring(pair.first->fsp() ? pair.first->fsp()->subentId() : 0) +
                L" came from " + pair.second->description() + L" " + pair.second->id());
    if (const auto& entities = data.entityData())
        for (const auto& info : entities->data()) {
            std::wstring names;
            for (const auto& name : info->persistentNames()) names += (names.empty() ? L"" : L", ") + name;
            say(block + L"persistent names: " + names);
        }
}

void printRootMechanicalData(const ExcRootMechanicalData& data, const std::function<void(const std::wstring&)>& say) {
    const std::size_t sets = data.pmiData() ? data.pmiData()->annotationSets().size() : 0;
    say(L"root mechanical data, log file " + data.logFile() + L", " + std::to_wstring(sets) +
        L" PMI annotation set(s)");
}

} // namespace example
