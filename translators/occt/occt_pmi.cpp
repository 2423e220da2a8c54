#include "occt_pmi.h"

#include <string>

#include <TCollection_HAsciiString.hxx>
#include <TDF_LabelSequence.hxx>
#include <XCAFDoc_DimTolTool.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_View.hxx>
#include <XCAFDoc_ViewTool.hxx>
#include <XCAFView_Object.hxx>

#include <xch_api/xch_api_utf8.h>

using namespace xch;

namespace occt_worker {

namespace {

ExcVector3d vector(const gp_XYZ& v) { return ExcVector3d(v.X(), v.Y(), v.Z()); }

} // namespace

PmiCounts countPmi(const Handle(TDocStd_Document)& document) {
    PmiCounts counts;
    const TDF_Label main = document->Main();
    if (XCAFDoc_DocumentTool::CheckDimTolTool(main)) {
        Handle(XCAFDoc_DimTolTool) gdt = XCAFDoc_DocumentTool::DimTolTool(main);
        TDF_LabelSequence labels;
        gdt->GetDimensionLabels(labels);
        counts.dimensions = static_cast<std::size_t>(labels.Length());
        labels.Clear();
        gdt->GetGeomToleranceLabels(labels);
        counts.tolerances = static_cast<std::size_t>(labels.Length());
        labels.Clear();
        gdt->GetDatumLabels(labels);
        counts.datums = static_cast<std::size_t>(labels.Length());
    }
    if (XCAFDoc_DocumentTool::CheckViewTool(main)) {
        TDF_LabelSequence labels;
        XCAFDoc_DocumentTool::ViewTool(main)->GetViewLabels(labels);
        counts.views = static_cast<std::size_t>(labels.Length());
    }
    return counts;
}

void addSavedViews(const Handle(TDocStd_Document)& document, ExcVisualizationData& data) {
    const TDF_Label main = document->Main();
    if (!XCAFDoc_DocumentTool::CheckViewTool(main)) return;
    TDF_LabelSequence labels;
    XCAFDoc_DocumentTool::ViewTool(main)->GetViewLabels(labels);
    for (int i = 1; i <= labels.Length(); ++i) {
        auto capture = std::make_shared<ExcVisuCapture>();
        capture->setId(L"view-" + std::to_wstring(i));
        Handle(XCAFDoc_View) view;
        if (!labels(i).FindAttribute(XCAFDoc_View::GetID(), view) || view->GetObject().IsNull()) {
            capture->setDisplayName(L"View " + std::to_wstring(i));
            data.addCapture(capture);
            continue;
        }
        Handle(XCAFView_Object) object = view->GetObject();
        Handle(TCollection_HAsciiString) name = object->Name();
        const std::string text = name.IsNull() ? std::string() : std::string(name->ToCString());
        capture->setDisplayName(text.empty() ? L"View " + std::to_wstring(i) : fromUtf8(text.data(), text.size()));
        ExcCamera camera;
        camera.setName(capture->displayName());
        const bool central = object->Type() == XCAFView_ProjectionType_Central;
        camera.setType(central ? ExcCamera::Perspective : ExcCamera::Orthographic);
        if (!central) camera.setOrthographicZoomFactor(object->ZoomFactor());
        const gp_Pnt eye = object->ProjectionPoint();
        camera.setEye(vector(eye.XYZ()));
        camera.setTarget(vector(eye.XYZ() + object->ViewDirection().XYZ()));
        camera.setUp(vector(object->UpDirection().XYZ()));
        capture->setCamera(camera);
        data.addCapture(capture);
    }
}

} // namespace occt_worker
