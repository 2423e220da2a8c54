// Thread data of manufacturing features.
#include <xch_api/xch_api_mfg_thread.h>

#include <xch_api/xch_api_json_members.h>

namespace xch {

template <>
const EnumTable<ExcMfgThreading::EOrientation>& enumTable<ExcMfgThreading::EOrientation>() {
    static const EnumTable<ExcMfgThreading::EOrientation> table{
        {ExcMfgThreading::OrientationUnknown, L"unknown"},
        {ExcMfgThreading::RightHanded, L"right_handed"},
        {ExcMfgThreading::LeftHanded, L"left_handed"},
    };
    return table;
}

template <>
const EnumTable<ExcMfgThreading::EDesignationSystemType>& enumTable<ExcMfgThreading::EDesignationSystemType>() {
    static const EnumTable<ExcMfgThreading::EDesignationSystemType> table{
        {ExcMfgThreading::DesignationUnknown, L"unknown"},
        {ExcMfgThreading::Metric, L"metric"},
        {ExcMfgThreading::American, L"american"},
        {ExcMfgThreading::British, L"british"},
    };
    return table;
}

template <>
const EnumTable<ExcMfgThread::EBottomType>& enumTable<ExcMfgThread::EBottomType>() {
    static const EnumTable<ExcMfgThread::EBottomType> table{
        {ExcMfgThread::BottomUnknown, L"unknown"},
        {ExcMfgThread::Dimension, L"dimension"},
        {ExcMfgThread::SupportDepth, L"support_depth"},
        {ExcMfgThread::SupportUpToPlane, L"support_up_to_plane"},
    };
    return table;
}

// ---- ExcMfgThreading ----------------------------------------------------------------

ExcMfgThreading::ExcMfgThreading() = default;
ExcMfgThreading::~ExcMfgThreading() = default;

template <class Io, class Self>
void ExcMfgThreading::members(Io& io, Self& self) {
    io(L"diameter", self.m_diameter, json::anyNumber);
    io(L"depth", self.m_depth, json::anyNumber);
    io(L"pitch", self.m_pitch, json::anyNumber);
    io(L"orientation", self.m_orientation);
    io(L"designation", self.m_designation);
    io(L"designation_system_type", self.m_designationSystemType);
}

XCH_JSON_IO(ExcMfgThreading)

// ---- ExcMfgThread ------------------------------------------------------------------------

ExcMfgThread::ExcMfgThread() = default;
ExcMfgThread::~ExcMfgThread() = default;

template <class Io, class Self>
void ExcMfgThread::members(Io& io, Self& self) {
    io(L"support_diameter", self.m_supportDiameter, json::anyNumber);
    io(L"support_depth", self.m_supportDepth, json::anyNumber);
    io(L"bottom_type", self.m_bottomType);
}

XCH_JSON_IO_DERIVED(ExcMfgThread, ExcMfgThreading)

// ---- ExcMfgHoleThread ----------------------------------------------------------------------

ExcMfgHoleThread::ExcMfgHoleThread() = default;
ExcMfgHoleThread::~ExcMfgHoleThread() = default;

template <class Io, class Self>
void ExcMfgHoleThread::members(Io& io, Self& self) {
    io(L"standart", self.m_standard);
    io(L"min_tol", self.m_minTol, json::anyNumber);
    io(L"max_tol", self.m_maxTol, json::anyNumber);
}

XCH_JSON_IO_DERIVED(ExcMfgHoleThread, ExcMfgThreading)

} // namespace xch
