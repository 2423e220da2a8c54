// Hole data of manufacturing features.
#include <xch_api/xch_api_mfg_hole.h>

#include <xch_api/xch_api_json_members.h>

namespace xch {

template <>
const EnumTable<ExcMfgHole::EBottomLimitExtentType>& enumTable<ExcMfgHole::EBottomLimitExtentType>() {
    static const EnumTable<ExcMfgHole::EBottomLimitExtentType> table{
        {ExcMfgHole::ExtentUnknown, L"unknown"},   {ExcMfgHole::Blind, L"blind"},
        {ExcMfgHole::UpToLast, L"up_to_last"},     {ExcMfgHole::UpToPlane, L"up_to_plane"},
        {ExcMfgHole::UpToSurface, L"up_to_surface"}, {ExcMfgHole::UpToNext, L"up_to_next"},
    };
    return table;
}

// ---- ExcMfgHole ------------------------------------------------------------------------

ExcMfgHole::ExcMfgHole() = default;
ExcMfgHole::~ExcMfgHole() = default;

template <class Io, class Self>
void ExcMfgHole::members(Io& io, Self& self) {
    io(L"name", self.m_name);
    io(L"primary_diameter", self.m_primaryDiameter, json::anyNumber);
    io(L"primary_diameter_max_tol", self.m_primaryDiameterMaxTol, json::anyNumber);
    io(L"primary_diameter_min_tol", self.m_primaryDiameterMinTol, json::anyNumber);
    io(L"primary_depth", self.m_primaryDepth, json::anyNumber);
    io(L"tip_angle_degrees", self.m_tipAngleDegrees, json::anyNumber);
    io(L"bottom_limit_extent_type", self.m_bottomLimitExtentType);
    io(L"center", self.m_center, json::whenArray);
    io(L"direction", self.m_direction, json::whenArray);
    io(L"hole_thread", self.m_holeThread, json::newObject);
}

XCH_JSON_IO(ExcMfgHole)

ExcMfgSimpleHole::ExcMfgSimpleHole() = default;
ExcMfgSimpleHole::~ExcMfgSimpleHole() = default;

// ---- ExcMfgTaperHole -------------------------------------------------------------------------

ExcMfgTaperHole::ExcMfgTaperHole() = default;
ExcMfgTaperHole::~ExcMfgTaperHole() = default;

template <class Io, class Self>
void ExcMfgTaperHole::members(Io& io, Self& self) {
    io(L"angle", self.m_angle, json::anyNumber);
}

XCH_JSON_IO_DERIVED(ExcMfgTaperHole, ExcMfgHole)

// ---- counterbore, countersink, counterdrill ------------------------------------------------

template <class Io, class Self>
void ExcMfgCounterDiameter::counterMembers(Io& io, Self& self) {
    io(L"diameter", self.m_diameter, json::anyNumber);
    io(L"max_tol", self.m_maximumTolerance, json::anyNumber);
    io(L"min_tol", self.m_minimumTolerance, json::anyNumber);
}

ExcMfgCounterBoreHole::ExcMfgCounterBoreHole() = default;
ExcMfgCounterBoreHole::~ExcMfgCounterBoreHole() = default;

template <class Io, class Self>
void ExcMfgCounterBoreHole::members(Io& io, Self& self) {
    counterMembers(io, self);
    io(L"depth", self.m_depth, json::anyNumber);
}

XCH_JSON_IO_DERIVED(ExcMfgCounterBoreHole, ExcMfgHole)

ExcMfgCounterSinkHole::ExcMfgCounterSinkHole() = default;
ExcMfgCounterSinkHole::~ExcMfgCounterSinkHole() = default;

template <class Io, class Self>
void ExcMfgCounterSinkHole::members(Io& io, Self& self) {
    counterMembers(io, self);
    io(L"angle", self.m_angle, json::anyNumber);
}

XCH_JSON_IO_DERIVED(ExcMfgCounterSinkHole, ExcMfgHole)

ExcMfgCounterDrillHole::ExcMfgCounterDrillHole() = default;
ExcMfgCounterDrillHole::~ExcMfgCounterDrillHole() = default;

template <class Io, class Self>
void ExcMfgCounterDrillHole::members(Io& io, Self& self) {
    counterMembers(io, self);
    io(L"depth", self.m_depth, json::anyNumber);
    io(L"sink_diameter", self.m_sinkDiameter, json::anyNumber);
    io(L"angle", self.m_angle, json::anyNumber);
}

XCH_JSON_IO_DERIVED(ExcMfgCounterDrillHole, ExcMfgHole)

} // namespace xch
