// A block's PMI at scale: 100,000 annotations (10,000 views of ten
// annotations of every kind: datums A|B|C, a position tolerance against
// A|B|C, a flatness tolerance, a toleranced diameter, a note, a roughness
// symbol, a datum target and a flag note) in one ExcBlockMechanicalData.
// Measured: the object written to a JSON document, the document read back
// into objects (views index their annotations as they read them), and the
// whole trip through the envelope, compressed binary JSON in shared memory
// and the receiving object.
#include <benchmark/benchmark.h>

#include <sstream>
#include <string>

#include <xch_api/xch_api_exchange_mechanical.h>
#include <xch_api/xch_api_exchange_wrapper.h>
#include <xch_api/xch_api_json_binary_io.h>

using namespace xch;

namespace {

constexpr int kViews = 10000;

template <class T>
std::shared_ptr<T> annotation(const std::wstring& id, double x) {
    auto a = std::make_shared<T>();
    a->setId(id);
    a->setPosition(ExcVector2d(x, 2.0 * x));
    auto path = std::make_shared<ExcFullSubentPath>(static_cast<std::uint64_t>(x));
    path->setSubentType(ExcFullSubentPath::Face);
    a->addLinkedElement(std::make_shared<ExcEntity>(path));
    auto leader = std::make_shared<ExcPMILeader>();
    leader->setPoints({ExcVector2d(x, 0.0), ExcVector2d(x + 5.0, 5.0)});
    a->addLeader(leader);
    return a;
}

std::shared_ptr<ExcPMIAnnotationView> view(int v) {
    using GDT = ExcPMIGDT;
    const std::wstring p = std::to_wstring(v) + L"-";
    auto view = std::make_shared<ExcPMIAnnotationView>();
    view->setId(p + L"view");
    for (const wchar_t* letter : {L"A", L"B", L"C"}) {
        auto datum = annotation<ExcPMIDatum>(p + letter, v);
        datum->setLabel(letter);
        view->addDatum(datum);
    }
    auto frame = std::make_shared<GDT::Frame>(L"A|B|C");
    for (const wchar_t* letter : {L"A", L"B", L"C"}) {
        GDT::DatumRef ref(letter);
        ref.addModifiedDatum(GDT::ModifiedDatum(p + letter));
        frame->addDatumRef(ref);
    }
    auto row = std::make_shared<GDT::Row>();
    row->setToleranceValueType(GDT::ValueDiameter);
    row->setToleranceValue(0.1);
    row->addZoneModifier(GDT::MaterialConditionMaximum);
    row->setReferenceFrame(frame);
    auto position = annotation<GDT>(p + L"position", v);
    position->setToleranceType(GDT::LocationTruePosition);
    position->addGdtRow(row);
    view->addGdt(position);
    auto flatnessRow = std::make_shared<GDT::Row>();
    flatnessRow->setToleranceValue(0.05);
    auto flatness = annotation<GDT>(p + L"flatness", v);
    flatness->setToleranceType(GDT::FormFlatness);
    flatness->addGdtRow(flatnessRow);
    view->addGdt(flatness);
    auto dimension = annotation<ExcPMIDimension>(p + L"diameter", v);
    dimension->setSubType(ExcPMIDimension::SubDiameter);
    dimension->setValue(6.6);
    dimension->setNumericalToleranceUpper(0.1);
    dimension->setNumericalToleranceLower(-0.1);
    view->addDimension(dimension);
    for (const wchar_t* kind : {L"note", L"flag"}) {
        auto note = annotation<ExcPMINote>(p + kind, v);
        note->addText(std::make_shared<ExcPMINote::Text>(L"BREAK ALL SHARP EDGES"));
        note->setFlagNote(kind[0] == L'f');
        view->addNote(note);
    }
    auto roughness = annotation<ExcPMIRoughness>(p + L"roughness", v);
    roughness->addField(L"Ra 1.6");
    view->addRoughness(roughness);
    auto target = annotation<ExcPMIDatumTarget>(p + L"A1", v);
    target->setTargetType(ExcPMIDatumTarget::Point);
    view->addDatumTarget(target);
    return view;
}

const std::shared_ptr<ExcBlockMechanicalData>& block() {
    static const auto object = [] {
        auto set = std::make_shared<ExcPMIAnnotationSet>(1);
        for (int v = 0; v < kViews; ++v) set->addView(view(v));
        auto pmi = std::make_shared<ExcPMIData>();
        pmi->addAnnotationSet(set);
        auto data = std::make_shared<ExcBlockMechanicalData>(1);
        data->setPMIData(pmi);
        return data;
    }();
    return object;
}

const JsonDocument& document() {
    static const JsonDocument doc = [] {
        JsonDocument d;
        block()->writeObject(d, d.GetAllocator());
        return d;
    }();
    return doc;
}

void setCounters(benchmark::State& state) {
    static const std::size_t binary = [] {
        std::string out;
        JsonBinaryIO::write(out, document());
        return out.size();
    }();
    state.counters["annotations"] = 10.0 * kViews;
    state.counters["binary_MB"] = static_cast<double>(binary) / 1e6;
}

void BM_WriteObject(benchmark::State& state) {
    for (auto _ : state) {
        JsonDocument doc;
        block()->writeObject(doc, doc.GetAllocator());
        benchmark::DoNotOptimize(doc);
    }
    setCounters(state);
}
BENCHMARK(BM_WriteObject)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_ReadObject(benchmark::State& state) {
    for (auto _ : state) {
        ExcBlockMechanicalData read;
        read.readObject(document());
        if (!read.pmiData() || read.pmiData()->annotationSets()[0]->views().size() != kViews)
            state.SkipWithError("the views were not read");
    }
    setCounters(state);
}
BENCHMARK(BM_ReadObject)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_EndToEnd(benchmark::State& state) {
    for (auto _ : state) {
        std::wostringstream out;
        ExchangeObjectWrapper(block()).writeObject(out);
        ExchangeObjectWrapper in;
        in.setReleaseAfterLoad(true); // read once: the body goes away
        std::wistringstream text(out.str());
        in.readObject(text);
        auto back = std::dynamic_pointer_cast<ExcBlockMechanicalData>(in.get());
        if (!back || !back->isLoaded() || !back->pmiData()) state.SkipWithError("the body was not loaded");
    }
    setCounters(state);
}
BENCHMARK(BM_EndToEnd)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

BENCHMARK_MAIN();
