// Property groups: the free-form name/value properties that a CAD system
// attaches to parts, blocks and entities (user properties, BIM property
// sets). An ExcMiscData is a set of named ExcMiscPropertiesGroups, each a set
// of named ExcMiscProperty records; blocks, block references and the
// mechanical data embed one.
#pragma once

#include <cstdint>
#include <memory>
#include <set>
#include <string>

#include <xch_api/xch_api_enum_table.h>
#include <xch_api/xch_api_export.h>
#include <xch_api/xch_api_json.h>
#include <xch_api/xch_api_json_object.h>

namespace xch {

// One property. The value always travels as text; `type` says what the
// source system declared it as, `valueType` which physical quantity it is.
//
// JSON: {"name", "type", "unit", "value", "value_type"}; "unit" is written
// only when not empty and "value_type" only when not UnknownValueType.
// Reading takes each key only when it is a string; a "type" or "value_type"
// string outside its table gives the value of the table's smallest string
// ("boolean", "absoluteviscosity"). A value that is not
// an object is logged at level 3 and leaves the property unchanged.
class XCH_API ExcMiscProperty : public IJsonObject {
public:
    enum EType : std::int32_t {
        TypeUnknown = 0,  // "unknown"
        TypeString,       // "string"
        TypeInteger,      // "integer"
        TypeDouble,       // "double"
        TypeBoolean,      // "boolean"
        TypeDateTime      // "date_time"
    };

    // The physical quantity of a value. Each constant's string is its own
    // name in lower case with underscores, exactly as the exchange spells it
    // (abbreviations and misspellings such as "rstifnes", "courant",
    // "inverse_temprtre", "loundness", "fluxiodquantum" and "powerbis"
    // included); the numbers follow declaration order.
    enum EValueType : std::int32_t {
        UnknownValueType = 0,
        Length,
        Angle,
        Time,
        Mass,
        Volume,
        Density,
        Area,
        Inertiamoment,
        Energy,
        Force,
        Inertia,
        Massflow,
        Moment,
        Pressure,
        Rstifnes,
        Linemass,
        Tstifnes,
        VolFlow,
        Frequency,
        Power,
        Voltage,
        Resistance,
        Courant,
        Accelrtn,
        Angaccelrtn,
        Energymec,
        Volforce,
        Surfacicmass,
        Speed,
        Linearfeedrate,
        Angularfeedrate,
        Linearspindlespeed,
        Angularspindlespeed,
        Mole,
        Heattransferresistance,
        Heattransfer,
        Molecularflow,
        Moleculardensity,
        Enthalpy,
        Entropy,
        Molecularenthalpy,
        Molecularentropy,
        Dynamicviscosity,
        Molecularweight,
        Absoluteviscosity,
        Kinematicviscosity,
        Massicflow,
        Thermalconductivity,
        VelocityOverForce,
        AccelerationOverForce,
        PressureOverForce,
        PressureOverNormalVelocity,
        PressureOverVolumeVelocity,
        Pulsation,
        ModalDamping,
        ViscousDamping,
        ModalParticipationFactor,
        ModalMass,
        Dimensionless,
        DisplacementOverForce,
        AccelerationOverMoment,
        VelocityOverMoment,
        DisplacementOverMoment,
        RotationOverForce,
        PulsationOverForce,
        RotationalAccelerationOverForce,
        RotationOverMoment,
        PulsationOverMoment,
        RotationalAccelerationOverMoment,
        PressureOverMoment,
        ForceOverDisplacement,
        ForceOverRotation,
        MomentOverDisplacement,
        MomentOverRotation,
        PressureOverDisplacement,
        PressureOverRotation,
        ForceOverVelocity,
        ForceOverPulsation,
        MomentOverVelocity,
        MomentOverPulsation,
        PressureOverPulsation,
        ForceOverAcceleration,
        ForceOverRotationalAcceleration,
        MomentOverAcceleration,
        MomentOverRotationalAcceleration,
        PressureOverAcceleration,
        PressureOverRotationalAcceleration,
        ForceOverPressure,
        MomentOverPressure,
        DisplacementOverPressure,
        VelocityOverPressure,
        AccelerationOverPressure,
        RotationOverPressure,
        PulsationOverPressure,
        RotationalAccelerationOverPressure,
        ForceOverVolumeVelocity,
        MomentOverVolumeVelocity,
        DisplacementOverVolumeVelocity,
        VelocityOverVolumeVelocity,
        AccelerationOverVolumeVelocity,
        RotationOverVolumeVelocity,
        PulsationOverVolumeVelocity,
        RotationalAccelerationOverVolumeVelocity,
        ForceOverVolumeAcceleration,
        MomentOverVolumeAcceleration,
        DisplacementOverVolumeAcceleration,
        VelocityOverVolumeAcceleration,
        AccelerationOverVolumeAcceleration,
        RotationOverVolumeAcceleration,
        PulsationOverVolumeAcceleration,
        RotationalAccelerationOverVolumeAcceleration,
        Jerk,
        Angularjerk,
        Momentum,
        Hertzsquare,
        Hertzcube,
        PerAngle,
        PerAngleSquare,
        AcousticMonopoleAmplitude,
        AcousticDipoleAmplitude,
        AcousticQuadrupoleAmplitude,
        VolumeAcceleration,
        Intensity,
        SquareVelocity,
        SquarePressure,
        FlowResistivity,
        ConvectiveFilmCoefficient,
        HeatRate,
        HeatFlux,
        AngularVelocity,
        CumulativeMoment,
        Curvature,
        SquareTime,
        VolumeVelocity,
        PressureOverVolumeAcceleration,
        SquareForce,
        SquareMoment,
        SquareDisplacement,
        SquareRotation,
        SquarePulsation,
        SquareAcceleration,
        SquareRotationalAcceleration,
        SquareVolumeAcceleration,
        SquareVolumeVelocity,
        SolidAngle,
        VolumeAccelerationOverForce,
        VolumeAccelerationOverMoment,
        VolumeVelocityOverForce,
        VolumeVelocityOverMoment,
        VolumeAccelerationOverAcceleration,
        VolumeVelocityOverAcceleration,
        VolumeAccelerationOverRotationalAcceleration,
        VolumeVelocityOverRotationalAcceleration,
        VelocityPotential,
        PressureOverTime,
        VolumeAccelerationOverDisplacement,
        VolumeVelocityOverDisplacement,
        VolumeAccelerationOverRotation,
        VolumeVelocityOverRotation,
        VolumeAccelerationOverVelocity,
        VolumeVelocityOverVelocity,
        VolumeAccelerationOverPulsation,
        VolumeVelocityOverPulsation,
        PowerSpectralDensityPressure,
        PowerSpectralDensityDisplacement,
        PowerSpectralDensityVelocity,
        PowerSpectralDensityAcceleration,
        PowerSpectralDensity,
        Accelerationxpressure,
        Velocityxpressure,
        Accelerationxforce,
        Velocityxforce,
        Pressurexforce,
        AccelerationxvolumeAcceleration,
        VelocityxvolumeAcceleration,
        DisplacementxvolumeAcceleration,
        DisplacementxvolumeVelocity,
        Illumination,
        Lumen,
        InverseTemprtre,
        PowerSpectralDensityRotation,
        PowerSpectralDensityRotationalVelocity,
        PowerSpectralDensityRotationalAcceleration,
        PowerSpectralDensityForce,
        PowerSpectralDensityMoment,
        PressureOverArea,
        InverseSquarePressure,
        PressurexforceOverFrequency,
        DisplacementxforceOverFrequency,
        SquareVolumeVelocityOverFrequency,
        SquareVolumeAccelerationOverFrequency,
        WaveLength,
        LuminousFlux,
        RadiantFlux,
        LineicAbsorption,
        Ratio,
        Radiance,
        Illuminance,
        Irradiance,
        LuminousIntensity,
        RadiantIntensity,
        HeatGenerationRate,
        Exothermy,
        AcousticPower,
        InverseVelocity,
        WarpingCoefficient,
        SpecificHeatCapacityLinearPart,
        SpecificHeatCapacityQuadraticPart,
        SpecificHeatCapacityCubicPart,
        Torque,
        ElectricalConductivity,
        MagneticPermeability,
        CurrentDensity,
        JouleHeating,
        Wavenumber,
        Circularwavenumber,
        Dampingcoefficient,
        Logarithmicdecrement,
        Attenuationcoefficient,
        Phasecoefficient,
        Propagationcoefficient,
        Specificvolume,
        Angularmomentum,
        Electricaltorqueconstant,
        Sectionmodulus,
        Surfacetension,
        Energydensity,
        Angularmomentumflux,
        Temperaturedifference,
        Temperatureslope,
        Quadratictemperaturecoefficient,
        Pressurecoefficient,
        Compressibility,
        Densityofheatflowrate,
        Thermalinsulance,
        Thermalresistance,
        Thermalconductance,
        Thermaldiffusivity,
        HeatcapacitySi,
        EntropySi,
        Entropyflowrate,
        Specificenergy,
        Derdensitybyenthalpy,
        Derdensitybypressure,
        Derdensitybytemperature,
        Derenthalpybypressure,
        Derenergybydensity,
        Derenergybypressure,
        Currentslope,
        Electriccharge,
        Volumedensityofcharge,
        Surfacedensityofcharge,
        Electricfieldstrength,
        Voltageslope,
        Electricfluxdensity,
        Capacitance,
        Permittivity,
        Electricpolarization,
        Electrization,
        Electricdipolemoment,
        Linearcurrentdensity,
        Magneticfieldstrength,
        Magneticfluxdensity,
        Magneticvectorpotential,
        Inductance,
        Electromagneticmoment,
        Magneticdipolemoment,
        Magnetization,
        Magneticpolarization,
        Poyntingvector,
        Resistivity,
        Reluctance,
        Permeance,
        Conductance,
        Apparentpower,
        Reactivepower,
        Transconductance,
        Inversepotential,
        Radiantenergy,
        Spectralradiantenergydensity,
        Radiantenergyfluencerate,
        Quantityoflight,
        Luminousexitance,
        Lightexposure,
        Luminousefficacy,
        Molarabsorptioncoefficient,
        Acousticimpedance,
        Specificacousticimpedance,
        Mechanicalimpedance,
        Soundpowerlevel,
        Loundnesslevel,
        Loundness,
        Numberofmolecules,
        Molarvolume,
        Molarinternalenergy,
        Molarheatcapacity,
        Numberdensity,
        Fugacity,
        Osmoticpressure,
        Affinity,
        Electricpolarizabilityofamolecule,
        Faradayconstant,
        Ionicstrength,
        Molarconductivity,
        Bohrmagneton,
        Nuclearmagneton,
        Gyromagneticcoefficient,
        Nuclearquadrupolemoment,
        Levelwidth,
        Radioactivity,
        Specificactivity,
        Decayconstant,
        Angularcrosssection,
        Spectralcrosssection,
        Spectralangularcrosssection,
        Macroscopiccrosssection,
        Particlefluence,
        Particlefluencerate,
        Energyfluence,
        Currentdensityofparticles,
        Massattenuationcoefficient,
        Atomicattenuationcoefficient,
        Totallinearstoppingpower,
        Totalatomicstoppingpower,
        Totalmassstoppingpower,
        Meanmassrange,
        Linearionization,
        Mobility,
        Recombinationcoefficient,
        Neutronfluencerate,
        Totalneutronsourcedensity,
        Slowingdowndensity,
        Absorbeddose,
        Specificenergyimparted,
        Doseequivalent,
        Absorbeddoserate,
        Linearenergytransfer,
        Kerma,
        Kermarate,
        Massenergytransfercoefficient,
        Exposure,
        Exposurerate,
        Spectralconcentration,
        Densityofstates,
        Lorenzcoefficient,
        Hallcoefficient,
        Seebeckcoefficient,
        Thomsoncoefficient,
        Richardsonconstant,
        Fermienergy,
        Fluxiodquantum,
        SurfacePowerDensity,
        PowerDensity,
        DisplacementOverVoltage,
        VelocityOverVoltage,
        AccelerationOverVoltage,
        VoltageOverDisplacement,
        VoltageOverVelocity,
        VoltageOverAcceleration,
        PressureOverVoltage,
        VoltageOverPressure,
        Rate,
        StrainRate,
        SpecificHeatPerUnitVolume,
        Powerbis,
        Molarconcentration,
        Thermaltransmittance,
        TemperatureOverPressure,
        SpecificvolumeOverTemperature,
        MolePerMass,
        MassDiffusivity,
        MassFlowPerVolume,
        DensitySquareAngularSpeed,
        DensityAngularSpeed,
        PressureOverSquareTime,
        AcousticIntensity,
        HeatFluxArea,
        ArcLength,
        Displacement,
        Thickness,
        Stress,
        TurbulentEnergyDissipationRate,
        EnergyReleaseRate,
        ForcePerLength,
        HeatGenerationDensity,
        MassFlux,
        OmegaSquared,
        PressureGradient,
        Twist,
        TimeIntegratedElectricCurrentPerArea,
        HeatFlowPerVolume,
        SoundPressureLevel,
        SpecificEAbsorptionRate,
        EnergyPerArea,
        HydrodynamicResistanceCoefficient,
        MomentPerLength,
        QuietnessIndex,
        SurfacicDampingConstant,
        MassFraction,
        SpecificSurfaceArea,
        LinearMassDensityOfFibers,
        Hardness,
        Transmission,
        WaveFrontError,
        Roughness,
        Flatness,
        Hygrometry,
        FrequencyNoise,
        StressOverSquareTemperature,
        Volumedensityofcurrent,
        ConcentratedIonConcentrationFlux,
        DistributedIonConcentrationSurfaceFlux,
        DistributedIonConcentrationBodyFlux,
        TemperatureGradient,
    };

    ExcMiscProperty();
    ExcMiscProperty(const std::wstring& name, EType type, const std::wstring& value,
                    const std::wstring& unit = std::wstring(),
                    EValueType valueType = UnknownValueType);
    ExcMiscProperty(const ExcMiscProperty&);
    ExcMiscProperty(ExcMiscProperty&&) noexcept;
    ExcMiscProperty& operator=(const ExcMiscProperty&);
    ExcMiscProperty& operator=(ExcMiscProperty&&) noexcept;
    ~ExcMiscProperty() override;

    const std::wstring& name() const { return m_name; }
    ExcMiscProperty& setName(const std::wstring& name) { m_name = name; return *this; }
    EType type() const { return m_type; }
    ExcMiscProperty& setType(EType type) { m_type = type; return *this; }
    const std::wstring& unit() const { return m_unit; }
    ExcMiscProperty& setUnit(const std::wstring& unit) { m_unit = unit; return *this; }
    const std::wstring& value() const { return m_value; }
    ExcMiscProperty& setValue(const std::wstring& value) { m_value = value; return *this; }
    EValueType valueType() const { return m_valueType; }
    ExcMiscProperty& setValueType(EValueType valueType) { m_valueType = valueType; return *this; }
    // Sets type and value in one call.
    ExcMiscProperty& set(EType type, const std::wstring& value) {
        m_type = type;
        m_value = value;
        return *this;
    }

    bool operator==(const ExcMiscProperty& other) const;
    bool operator!=(const ExcMiscProperty& other) const { return !(*this == other); }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    std::wstring m_name;
    EType m_type = TypeUnknown;
    std::wstring m_unit;
    std::wstring m_value;
    EValueType m_valueType = UnknownValueType;
};

template <> XCH_API const EnumTable<ExcMiscProperty::EType>& enumTable<ExcMiscProperty::EType>();
template <> XCH_API const EnumTable<ExcMiscProperty::EValueType>& enumTable<ExcMiscProperty::EValueType>();

// Orders properties by name: a group holds one property per name.
struct XCH_API ExcMiscPropertyCmp {
    bool operator()(const ExcMiscProperty& a, const ExcMiscProperty& b) const {
        return a.name() < b.name();
    }
};

// A named set of properties, ordered by property name.
//
// JSON: {"name", "is_bim", "properties": [...]}, all always written, the
// properties in name order. Reading appends to the properties held; a
// property whose name is already held is dropped silently (the first one
// read stays). "is_bim" is taken only from a JSON boolean. A value that is
// not an object is logged at level 3 and leaves the group unchanged.
class XCH_API ExcMiscPropertiesGroup : public IJsonObject {
public:
    using Properties = std::set<ExcMiscProperty, ExcMiscPropertyCmp>;

    ExcMiscPropertiesGroup();
    explicit ExcMiscPropertiesGroup(const std::wstring& name, bool bim = false);
    ExcMiscPropertiesGroup(const ExcMiscPropertiesGroup&);
    ExcMiscPropertiesGroup& operator=(const ExcMiscPropertiesGroup&);
    ~ExcMiscPropertiesGroup() override;

    const std::wstring& name() const { return m_name; }
    void setName(const std::wstring& name) { m_name = name; }
    bool isBim() const { return m_bim; }
    void setBim(bool bim) { m_bim = bim; }

    const Properties& properties() const { return m_properties; }
    // Inserts `property`; returns false (and changes nothing) when a
    // property of that name is already held.
    bool addProperty(const ExcMiscProperty& property);
    bool addProperty(ExcMiscProperty&& property);
    // The property named `name`, or null.
    const ExcMiscProperty* findProperty(const std::wstring& name) const;

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    std::wstring m_name;
    Properties m_properties;
    bool m_bim = false;
};

// Orders groups by name: a set holds one group per name.
struct XCH_API ExcMiscPropertiesGroupPtrCmp {
    bool operator()(const std::shared_ptr<ExcMiscPropertiesGroup>& a,
                    const std::shared_ptr<ExcMiscPropertiesGroup>& b) const {
        return a->name() < b->name();
    }
};

// The property groups of one owner, ordered by group name.
//
// JSON: an array of group objects in name order (not an object). Reading
// appends: each element becomes a new group added by addGroup's rule, so a
// group whose name is already held is dropped with a warning. A value that
// is not an array is logged at level 3 and leaves the groups unchanged.
// Copies share their groups.
class XCH_API ExcMiscData : public IJsonObject {
public:
    using Groups = std::set<std::shared_ptr<ExcMiscPropertiesGroup>, ExcMiscPropertiesGroupPtrCmp>;

    ExcMiscData();
    ExcMiscData(const ExcMiscData&);
    ExcMiscData& operator=(const ExcMiscData&);
    ~ExcMiscData() override;

    const Groups& groups() const { return m_groups; }
    bool isEmpty() const { return m_groups.empty(); }
    // Adds `group` unless it is null or a group of its name is held; both
    // refusals are logged at level 3 ("... some properties can be lost."):
    // groups are never merged. Returns whether the group was added.
    bool addGroup(const std::shared_ptr<ExcMiscPropertiesGroup>& group);
    // The group named `name`, or null.
    std::shared_ptr<ExcMiscPropertiesGroup> findGroup(const std::wstring& name) const;

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

private:
    Groups m_groups;
};

} // namespace xch
