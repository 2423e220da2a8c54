#include "model_classes.h"

#include <xch_api/xch_api_block_geometry.h>
#include <xch_api/xch_api_command.h>
#include <xch_api/xch_api_entity.h>
#include <xch_api/xch_api_exchange_common.h>
#include <xch_api/xch_api_exchange_object.h>
#include <xch_api/xch_api_exchange_pmi.h>
#include <xch_api/xch_api_exchange_structure.h>
#include <xch_api/xch_api_legacy_maps.h>
#include <xch_api/xch_api_mechanical_data.h>
#include <xch_api/xch_api_mechanical_entity_data.h>
#include <xch_api/xch_api_mechanical_material.h>
#include <xch_api/xch_api_mechanical_misc.h>
#include <xch_api/xch_api_messages.h>
#include <xch_api/xch_api_mfg_data.h>
#include <xch_api/xch_api_mfg_feature.h>
#include <xch_api/xch_api_mfg_hole.h>
#include <xch_api/xch_api_mfg_pattern.h>
#include <xch_api/xch_api_mfg_thread.h>
#include <xch_api/xch_api_misc_data.h>
#include <xch_api/xch_api_varnex_info.h>
#include <xch_api/xch_api_visu_appearance.h>
#include <xch_api/xch_api_visu_camera.h>
#include <xch_api/xch_api_visu_scene.h>
#include <xch_api/xch_api_visu_tessellation.h>

namespace xch_fuzz {

namespace {

template <class T>
ModelClass nested(const char* name, bool refusesMalformed = false) {
    return {name, [] { return std::static_pointer_cast<xch::IJsonObject>(std::make_shared<T>()); },
            refusesMalformed};
}

ModelClass registered(const char* name) {
    const std::wstring typeName(name, name + std::char_traits<char>::length(name));
    return {name, [typeName] {
                return std::static_pointer_cast<xch::IJsonObject>(xch::ExchangeObjectRegistry::instance().get(typeName));
            }};
}

} // namespace

const std::vector<ModelClass>& modelClasses() {
    using namespace xch;
    static const std::vector<ModelClass> classes = {
        // registered top-level types
        registered("exc_message"), registered("exc_log"), registered("exc_progress"),
        registered("exc_stage_finished"), registered("legacy_component_instance_names"),
        registered("legacy_component_material_map"), registered("exc_product_structure"),
        registered("exc_block_geometry"), registered("exc_root_mechanical_data"),
        registered("exc_block_mechanical_data"), registered("exc_root_assembly_visualization"),
        registered("exc_block_visualization"),
        // common values, structure, options
        nested<ExcVector2d>("ExcVector2d"), nested<ExcVector3d>("ExcVector3d"), nested<ExcMatrix3d>("ExcMatrix3d"),
        nested<ExcTransformation>("ExcTransformation"), nested<ExcColor>("ExcColor"),
        nested<ExcFullSubentPath>("ExcFullSubentPath"), nested<ExcEntity>("ExcEntity"),
        nested<ExcMiscProperty>("ExcMiscProperty"), nested<ExcMiscPropertiesGroup>("ExcMiscPropertiesGroup"),
        nested<ExcMiscData>("ExcMiscData"), nested<ExcBlockReference>("ExcBlockReference"),
        nested<ExcBlock>("ExcBlock"), nested<ImportOptionsImpl>("ImportOptionsImpl", true), nested<Format>("Format", true),
        nested<ExportOptionsImpl>("ExportOptionsImpl", true), nested<ThirdpartyCore>("ThirdpartyCore", true),
        // mechanical
        nested<ExcMappingData>("ExcMappingData"),
        nested<ExcTopologicalEntityInformation>("ExcTopologicalEntityInformation"),
        nested<ExcEntityData>("ExcEntityData"), nested<ExcMiscMaterialPropertyUnit>("ExcMiscMaterialPropertyUnit"),
        nested<ExcMiscMaterialProperty>("ExcMiscMaterialProperty"), nested<ExcMiscMaterial>("ExcMiscMaterial"),
        nested<ExcMiscWCS>("ExcMiscWCS"), nested<ExcMiscLayer>("ExcMiscLayer"),
        nested<ExcMiscLayerFilter>("ExcMiscLayerFilter"), nested<ExcMiscNoteParameters>("ExcMiscNoteParameters"),
        nested<ExcMiscSymmetry>("ExcMiscSymmetry"), nested<ExcMiscDisplaySet>("ExcMiscDisplaySet"),
        nested<ExcMechanicalMiscData>("ExcMechanicalMiscData"), nested<ExcMfgData>("ExcMfgData"),
        nested<ExcMfgFeatureHole>("ExcMfgFeatureHole"),
        nested<ExcMfgFeatureInternalThread>("ExcMfgFeatureInternalThread"),
        nested<ExcMfgFeatureExternalThread>("ExcMfgFeatureExternalThread"),
        nested<ExcMfgFeatureUnclassified>("ExcMfgFeatureUnclassified"), nested<ExcMfgSimpleHole>("ExcMfgSimpleHole"),
        nested<ExcMfgTaperHole>("ExcMfgTaperHole"), nested<ExcMfgCounterBoreHole>("ExcMfgCounterBoreHole"),
        nested<ExcMfgCounterSinkHole>("ExcMfgCounterSinkHole"),
        nested<ExcMfgCounterDrillHole>("ExcMfgCounterDrillHole"),
        nested<ExcMfgPattern::Instance>("ExcMfgPattern::Instance"),
        nested<ExcMfgPatternRectangular>("ExcMfgPatternRectangular"),
        nested<ExcMfgPatternCircular>("ExcMfgPatternCircular"),
        nested<ExcMfgPatternUserDefined>("ExcMfgPatternUserDefined"), nested<ExcMfgThread>("ExcMfgThread"),
        nested<ExcMfgHoleThread>("ExcMfgHoleThread"),
        // visualization
        nested<ExcVisuFont>("ExcVisuFont"), nested<ExcVisuLineAttribute>("ExcVisuLineAttribute"),
        nested<ExcVisuTexture>("ExcVisuTexture"), nested<ExcVisuMaterial>("ExcVisuMaterial"),
        nested<ExcVisuAttributes>("ExcVisuAttributes"), nested<ExcVisuText>("ExcVisuText"),
        nested<ExcVisuPMI>("ExcVisuPMI"), nested<ExcCamera>("ExcCamera"),
        nested<ExcClippingPlane>("ExcClippingPlane"), nested<ExcVisuNode>("ExcVisuNode"),
        nested<ExcVisuView>("ExcVisuView"), nested<ExcVisuCapture>("ExcVisuCapture"),
        nested<ExcVisualizationData>("ExcVisualizationData"), nested<ExcVisuFace>("ExcVisuFace"),
        nested<ExcVisuEdge>("ExcVisuEdge"), nested<ExcVisuPoints>("ExcVisuPoints"),
        nested<ExcVisuMesh>("ExcVisuMesh"), nested<ExcVisuWire>("ExcVisuWire"),
        nested<ExcVisuPointSet>("ExcVisuPointSet"),
        // PMI
        nested<ExcPMIText>("ExcPMIText"), nested<ExcPMILeader>("ExcPMILeader"), nested<ExcPMINote>("ExcPMINote"),
        nested<ExcPMINote::Text>("ExcPMINote::Text"), nested<ExcPMIDatum>("ExcPMIDatum"),
        nested<ExcPMIDatumTarget>("ExcPMIDatumTarget"), nested<ExcPMIGDT>("ExcPMIGDT"),
        nested<ExcPMIGDT::Row>("ExcPMIGDT::Row"), nested<ExcPMIGDT::Frame>("ExcPMIGDT::Frame"),
        nested<ExcPMIGDT::DatumRef>("ExcPMIGDT::DatumRef"), nested<ExcPMIGDT::ModifiedDatum>("ExcPMIGDT::ModifiedDatum"),
        nested<ExcPMIDimension>("ExcPMIDimension"), nested<ExcPMIRoughness>("ExcPMIRoughness"),
        nested<ExcPMIAnnotationView>("ExcPMIAnnotationView"), nested<ExcPMICapture>("ExcPMICapture"),
        nested<ExcPMIAnnotationSet>("ExcPMIAnnotationSet"), nested<ExcPMIData>("ExcPMIData"),
    };
    return classes;
}

} // namespace xch_fuzz
