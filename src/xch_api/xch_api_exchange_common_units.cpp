// Unit and orientation enumerations, the length conversion factor and
// ExcUnitComponent<T>.
#include <xch_api/xch_api_exchange_common.h>

#include <xch_api/xch_api_json_members.h>

namespace xch {

template <>
const EnumTable<ELengthUnitType>& enumTable<ELengthUnitType>() {
    static const EnumTable<ELengthUnitType> table{
        {LengthUnknown, L"unknown"},       {LengthModelUnit, L"model_unit"},
        {LengthNanometer, L"nanometer"},   {LengthMicrometer, L"micrometer"},
        {LengthMillimeter, L"millimeter"}, {LengthCentimeter, L"centimeter"},
        {LengthDecimeter, L"decimeter"},   {LengthMeter, L"meter"},
        {LengthInch, L"inch"},             {LengthFoot, L"foot"},
        {LengthMile, L"mile"},             {LengthKilometer, L"kilometer"},
        {LengthMilliinch, L"milliinch"},   {LengthMicroinch, L"microinch"}};
    return table;
}

template <>
const EnumTable<EMassUnitType>& enumTable<EMassUnitType>() {
    static const EnumTable<EMassUnitType> table{
        {MassUnknown, L"unknown"},       {MassModelUnit, L"model_unit"},
        {MassCentigram, L"centigram"},   {MassDecigram, L"decigram"},
        {MassGram, L"gram"},             {MassKilogram, L"kilogram"},
        {MassPoundMass, L"poind_mass"},  {MassTonne, L"tonne"},
        {MassSlug, L"slug"},             {MassLbfSec2In, L"lbfsec2_in"}};
    return table;
}

template <>
const EnumTable<ETimeUnitType>& enumTable<ETimeUnitType>() {
    static const EnumTable<ETimeUnitType> table{
        {{TimeUnknown, L"unknown"},         {TimeModelUnit, L"model_unit"},
        {TimeNanosecond, L"nanosecond"},   {TimeMicrosecond, L"microsecond"},
        {TimeMillisecond, L"millisecond"}, {TimeSecond, L"second"},
        {TimeMinute, L"minute"},           {TimeHour, L"hour"},
        {TimeDay, L"day"}},
        TimeHour}; // unknown strings read as "hour", not as the smallest ("day")
    return table;
}

template <>
const EnumTable<ETemperatureUnitType>& enumTable<ETemperatureUnitType>() {
    static const EnumTable<ETemperatureUnitType> table{
        {TemperatureUnknown, L"unknown"},       {TemperatureModelUnit, L"model_unit"},
        {TemperatureFahrenheit, L"fahrenheit"}, {TemperatureCelsius, L"celsius"},
        {TemperatureKelvin, L"kelvin"}};
    return table;
}

template <>
const EnumTable<EWorldOrientation>& enumTable<EWorldOrientation>() {
    static const EnumTable<EWorldOrientation> table{
        {OrientationUnknown, L"unknown"}, {OrientationUpX, L"up_x"},
        {OrientationUpY, L"up_y"},        {OrientationUpZ, L"up_z"}};
    return table;
}

namespace {

struct LengthUnitInfo {
    bool metric;
    double factor; // metres for metric units, inches for imperial ones
};

// Indexed by ELengthUnitType. "unknown" and "model_unit" behave as inches.
constexpr LengthUnitInfo kLengthUnits[] = {
    {false, 1.0},   {false, 1.0},  {true, 1e-09}, {true, 1e-06},  {true, 0.001},
    {true, 0.01},   {true, 0.1},   {true, 1.0},   {false, 1.0},   {false, 12.0},
    {false, 63360.0}, {true, 1000.0}, {false, 0.001}, {false, 1e-06}};

constexpr std::size_t kLengthUnitCount = sizeof(kLengthUnits) / sizeof(kLengthUnits[0]);

constexpr double kInchesPerMetre = 39.37007874015748;
constexpr double kMetresPerInch = 0.0254;

// A value outside the table is treated as "unknown".
const LengthUnitInfo& lengthUnitInfo(ELengthUnitType unit) {
    const auto index = static_cast<std::size_t>(unit);
    return index < kLengthUnitCount ? kLengthUnits[index] : kLengthUnits[0];
}

} // namespace

double unitsScale(ELengthUnitType from, ELengthUnitType to) {
    const LengthUnitInfo& source = lengthUnitInfo(from);
    const LengthUnitInfo& target = lengthUnitInfo(to);
    const double ratio = source.factor / target.factor;
    if (source.metric == target.metric)
        return ratio;
    return target.metric ? ratio * kMetresPerInch : ratio * kInchesPerMetre;
}

// ---- ExcUnitComponent ---------------------------------------------------------

template <class T>
ExcUnitComponent<T>::ExcUnitComponent() = default;
template <class T>
ExcUnitComponent<T>::ExcUnitComponent(std::int32_t dimension, T units)
    : m_dimension(dimension), m_units(units) {}
template <class T>
ExcUnitComponent<T>::ExcUnitComponent(const ExcUnitComponent&) = default;
template <class T>
ExcUnitComponent<T>& ExcUnitComponent<T>::operator=(const ExcUnitComponent&) = default;
template <class T>
ExcUnitComponent<T>::~ExcUnitComponent() = default;

template <class T>
std::int32_t ExcUnitComponent<T>::dimension() const { return m_dimension; }
template <class T>
void ExcUnitComponent<T>::setDimension(std::int32_t dimension) { m_dimension = dimension; }
template <class T>
T ExcUnitComponent<T>::units() const { return m_units; }
template <class T>
void ExcUnitComponent<T>::setUnits(T units) { m_units = units; }

// A non-negative int32 JSON value already carries the unsigned flags, so the
// default int32 codec writes "dimension" as signed only when it is negative.
template <class T>
template <class Io, class Self>
void ExcUnitComponent<T>::members(Io& io, Self& self) {
    io(L"dimension", self.m_dimension);
    io(L"units", self.m_units);
}

template <class T>
void ExcUnitComponent<T>::readObject(const JsonValue& value) {
    VX_TRACE();
    json::readMembers(value, "ExcUnitComponent", *this);
}

template <class T>
void ExcUnitComponent<T>::writeObject(JsonValue& value, JsonAllocator& allocator) const {
    VX_TRACE();
    json::writeMembers(value, allocator, *this);
}

template class XCH_API_INSTANTIATION ExcUnitComponent<ELengthUnitType>;
template class XCH_API_INSTANTIATION ExcUnitComponent<EMassUnitType>;
template class XCH_API_INSTANTIATION ExcUnitComponent<ETimeUnitType>;
template class XCH_API_INSTANTIATION ExcUnitComponent<ETemperatureUnitType>;

} // namespace xch
