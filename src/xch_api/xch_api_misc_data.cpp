// Property groups.
#include <xch_api/xch_api_misc_data.h>

#include <xch_api/xch_api_json_members.h>

namespace xch {

template <>
const EnumTable<ExcMiscProperty::EType>& enumTable<ExcMiscProperty::EType>() {
    static const EnumTable<ExcMiscProperty::EType> table{
        {ExcMiscProperty::TypeUnknown, L"unknown"},
        {ExcMiscProperty::TypeString, L"string"},
        {ExcMiscProperty::TypeInteger, L"integer"},
        {ExcMiscProperty::TypeDouble, L"double"},
        {ExcMiscProperty::TypeBoolean, L"boolean"},
        {ExcMiscProperty::TypeDateTime, L"date_time"},
    };
    return table;
}

template <>
const EnumTable<ExcMiscProperty::EValueType>& enumTable<ExcMiscProperty::EValueType>() {
    static const EnumTable<ExcMiscProperty::EValueType> table{
        {ExcMiscProperty::UnknownValueType, L"unknown_value_type"},
        {ExcMiscProperty::Length, L"length"},
        {ExcMiscProperty::Angle, L"angle"},
        {ExcMiscProperty::Time, L"time"},
        {ExcMiscProperty::Mass, L"mass"},
        {ExcMiscProperty::Volume, L"volume"},
        {ExcMiscProperty::Density, L"density"},
        {ExcMiscProperty::Area, L"area"},
        {ExcMiscProperty::Inertiamoment, L"inertiamoment"},
        {ExcMiscProperty::Energy, L"energy"},
        {ExcMiscProperty::Force, L"force"},
        {ExcMiscProperty::Inertia, L"inertia"},
        {ExcMiscProperty::Massflow, L"massflow"},
        {ExcMiscProperty::Moment, L"moment"},
        {ExcMiscProperty::Pressure, L"pressure"},
        {ExcMiscProperty::Rstifnes, L"rstifnes"},
        {ExcMiscProperty::Linemass, L"linemass"},
        {ExcMiscProperty::Tstifnes, L"tstifnes"},
        {ExcMiscProperty::VolFlow, L"vol_flow"},
        {ExcMiscProperty::Frequency, L"frequency"},
        {ExcMiscProperty::Power, L"power"},
        {ExcMiscProperty::Voltage, L"voltage"},
        {ExcMiscProperty::Resistance, L"resistance"},
        {ExcMiscProperty::Courant, L"courant"},
        {ExcMiscProperty::Accelrtn, L"accelrtn"},
        {ExcMiscProperty::Angaccelrtn, L"angaccelrtn"},
        {ExcMiscProperty::Energymec, L"energymec"},
        {ExcMiscProperty::Volforce, L"volforce"},
        {ExcMiscProperty::Surfacicmass, L"surfacicmass"},
        {ExcMiscProperty::Speed, L"speed"},
        {ExcMiscProperty::Linearfeedrate, L"linearfeedrate"},
        {ExcMiscProperty::Angularfeedrate, L"angularfeedrate"},
        {ExcMiscProperty::Linearspindlespeed, L"linearspindlespeed"},
        {ExcMiscProperty::Angularspindlespeed, L"angularspindlespeed"},
        {ExcMiscProperty::Mole, L"mole"},
        {ExcMiscProperty::Heattransferresistance, L"heattransferresistance"},
        {ExcMiscProperty::Heattransfer, L"heattransfer"},
        {ExcMiscProperty::Molecularflow, L"molecularflow"},
        {ExcMiscProperty::Moleculardensity, L"moleculardensity"},
        {ExcMiscProperty::Enthalpy, L"enthalpy"},
        {ExcMiscProperty::Entropy, L"entropy"},
        {ExcMiscProperty::Molecularenthalpy, L"molecularenthalpy"},
        {ExcMiscProperty::Molecularentropy, L"molecularentropy"},
        {ExcMiscProperty::Dynamicviscosity, L"dynamicviscosity"},
        {ExcMiscProperty::Molecularweight, L"molecularweight"},
        {ExcMiscProperty::Absoluteviscosity, L"absoluteviscosity"},
        {ExcMiscProperty::Kinematicviscosity, L"kinematicviscosity"},
        {ExcMiscProperty::Massicflow, L"massicflow"},
        {ExcMiscProperty::Thermalconductivity, L"thermalconductivity"},
        {ExcMiscProperty::VelocityOverForce, L"velocity_over_force"},
        {ExcMiscProperty::AccelerationOverForce, L"acceleration_over_force"},
        {ExcMiscProperty::PressureOverForce, L"pressure_over_force"},
        {ExcMiscProperty::PressureOverNormalVelocity, L"pressure_over_normal_velocity"},
        {ExcMiscProperty::PressureOverVolumeVelocity, L"pressure_over_volume_velocity"},
        {ExcMiscProperty::Pulsation, L"pulsation"},
        {ExcMiscProperty::ModalDamping, L"modal_damping"},
        {ExcMiscProperty::ViscousDamping, L"viscous_damping"},
        {ExcMiscProperty::ModalParticipationFactor, L"modal_participation_factor"},
        {ExcMiscProperty::ModalMass, L"modal_mass"},
        {ExcMiscProperty::Dimensionless, L"dimensionless"},
        {ExcMiscProperty::DisplacementOverForce, L"displacement_over_force"},
        {ExcMiscProperty::AccelerationOverMoment, L"acceleration_over_moment"},
        {ExcMiscProperty::VelocityOverMoment, L"velocity_over_moment"},
        {ExcMiscProperty::DisplacementOverMoment, L"displacement_over_moment"},
        {ExcMiscProperty::RotationOverForce, L"rotation_over_force"},
        {ExcMiscProperty::PulsationOverForce, L"pulsation_over_force"},
        {ExcMiscProperty::RotationalAccelerationOverForce, L"rotational_acceleration_over_force"},
        {ExcMiscProperty::RotationOverMoment, L"rotation_over_moment"},
        {ExcMiscProperty::PulsationOverMoment, L"pulsation_over_moment"},
        {ExcMiscProperty::RotationalAccelerationOverMoment, L"rotational_acceleration_over_moment"},
        {ExcMiscProperty::PressureOverMoment, L"pressure_over_moment"},
        {ExcMiscProperty::ForceOverDisplacement, L"force_over_displacement"},
        {ExcMiscProperty::ForceOverRotation, L"force_over_rotation"},
        {ExcMiscProperty::MomentOverDisplacement, L"moment_over_displacement"},
        {ExcMiscProperty::MomentOverRotation, L"moment_over_rotation"},
        {ExcMiscProperty::PressureOverDisplacement, L"pressure_over_displacement"},
        {ExcMiscProperty::PressureOverRotation, L"pressure_over_rotation"},
        {ExcMiscProperty::ForceOverVelocity, L"force_over_velocity"},
        {ExcMiscProperty::ForceOverPulsation, L"force_over_pulsation"},
        {ExcMiscProperty::MomentOverVelocity, L"moment_over_velocity"},
        {ExcMiscProperty::MomentOverPulsation, L"moment_over_pulsation"},
        {ExcMiscProperty::PressureOverPulsation, L"pressure_over_pulsation"},
        {ExcMiscProperty::ForceOverAcceleration, L"force_over_acceleration"},
        {ExcMiscProperty::ForceOverRotationalAcceleration, L"force_over_rotational_acceleration"},
        {ExcMiscProperty::MomentOverAcceleration, L"moment_over_acceleration"},
        {ExcMiscProperty::MomentOverRotationalAcceleration, L"moment_over_rotational_acceleration"},
        {ExcMiscProperty::PressureOverAcceleration, L"pressure_over_acceleration"},
        {ExcMiscProperty::PressureOverRotationalAcceleration, L"pressure_over_rotational_acceleration"},
        {ExcMiscProperty::ForceOverPressure, L"force_over_pressure"},
        {ExcMiscProperty::MomentOverPressure, L"moment_over_pressure"},
        {ExcMiscProperty::DisplacementOverPressure, L"displacement_over_pressure"},
        {ExcMiscProperty::VelocityOverPressure, L"velocity_over_pressure"},
        {ExcMiscProperty::AccelerationOverPressure, L"acceleration_over_pressure"},
        {ExcMiscProperty::RotationOverPressure, L"rotation_over_pressure"},
        {ExcMiscProperty::PulsationOverPressure, L"pulsation_over_pressure"},
        {ExcMiscProperty::RotationalAccelerationOverPressure, L"rotational_acceleration_over_pressure"},
        {ExcMiscProperty::ForceOverVolumeVelocity, L"force_over_volume_velocity"},
        {ExcMiscProperty::MomentOverVolumeVelocity, L"moment_over_volume_velocity"},
        {ExcMiscProperty::DisplacementOverVolumeVelocity, L"displacement_over_volume_velocity"},
        {ExcMiscProperty::VelocityOverVolumeVelocity, L"velocity_over_volume_velocity"},
        {ExcMiscProperty::AccelerationOverVolumeVelocity, L"acceleration_over_volume_velocity"},
        {ExcMiscProperty::RotationOverVolumeVelocity, L"rotation_over_volume_velocity"},
        {ExcMiscProperty::PulsationOverVolumeVelocity, L"pulsation_over_volume_velocity"},
        {ExcMiscProperty::RotationalAccelerationOverVolumeVelocity, L"rotational_acceleration_over_volume_velocity"},
        {ExcMiscProperty::ForceOverVolumeAcceleration, L"force_over_volume_acceleration"},
        {ExcMiscProperty::MomentOverVolumeAcceleration, L"moment_over_volume_acceleration"},
        {ExcMiscProperty::DisplacementOverVolumeAcceleration, L"displacement_over_volume_acceleration"},
        {ExcMiscProperty::VelocityOverVolumeAcceleration, L"velocity_over_volume_acceleration"},
        {ExcMiscProperty::AccelerationOverVolumeAcceleration, L"acceleration_over_volume_acceleration"},
        {ExcMiscProperty::RotationOverVolumeAcceleration, L"rotation_over_volume_acceleration"},
        {ExcMiscProperty::PulsationOverVolumeAcceleration, L"pulsation_over_volume_acceleration"},
        {ExcMiscProperty::RotationalAccelerationOverVolumeAcceleration, L"rotational_acceleration_over_volume_acceleration"},
        {ExcMiscProperty::Jerk, L"jerk"},
        {ExcMiscProperty::Angularjerk, L"angularjerk"},
        {ExcMiscProperty::Momentum, L"momentum"},
        {ExcMiscProperty::Hertzsquare, L"hertzsquare"},
        {ExcMiscProperty::Hertzcube, L"hertzcube"},
        {ExcMiscProperty::PerAngle, L"per_angle"},
        {ExcMiscProperty::PerAngleSquare, L"per_angle_square"},
        {ExcMiscProperty::AcousticMonopoleAmplitude, L"acoustic_monopole_amplitude"},
        {ExcMiscProperty::AcousticDipoleAmplitude, L"acoustic_dipole_amplitude"},
        {ExcMiscProperty::AcousticQuadrupoleAmplitude, L"acoustic_quadrupole_amplitude"},
        {ExcMiscProperty::VolumeAcceleration, L"volume_acceleration"},
        {ExcMiscProperty::Intensity, L"intensity"},
        {ExcMiscProperty::SquareVelocity, L"square_velocity"},
        {ExcMiscProperty::SquarePressure, L"square_pressure"},
        {ExcMiscProperty::FlowResistivity, L"flow_resistivity"},
        {ExcMiscProperty::ConvectiveFilmCoefficient, L"convective_film_coefficient"},
        {ExcMiscProperty::HeatRate, L"heat_rate"},
        {ExcMiscProperty::HeatFlux, L"heat_flux"},
        {ExcMiscProperty::AngularVelocity, L"angular_velocity"},
        {ExcMiscProperty::CumulativeMoment, L"cumulative_moment"},
        {ExcMiscProperty::Curvature, L"curvature"},
        {ExcMiscProperty::SquareTime, L"square_time"},
        {ExcMiscProperty::VolumeVelocity, L"volume_velocity"},
        {ExcMiscProperty::PressureOverVolumeAcceleration, L"pressure_over_volume_acceleration"},
        {ExcMiscProperty::SquareForce, L"square_force"},
        {ExcMiscProperty::SquareMoment, L"square_moment"},
        {ExcMiscProperty::SquareDisplacement, L"square_displacement"},
        {ExcMiscProperty::SquareRotation, L"square_rotation"},
        {ExcMiscProperty::SquarePulsation, L"square_pulsation"},
        {ExcMiscProperty::SquareAcceleration, L"square_acceleration"},
        {ExcMiscProperty::SquareRotationalAcceleration, L"square_rotational_acceleration"},
        {ExcMiscProperty::SquareVolumeAcceleration, L"square_volume_acceleration"},
        {ExcMiscProperty::SquareVolumeVelocity, L"square_volume_velocity"},
        {ExcMiscProperty::SolidAngle, L"solid_angle"},
        {ExcMiscProperty::VolumeAccelerationOverForce, L"volume_acceleration_over_force"},
        {ExcMiscProperty::VolumeAccelerationOverMoment, L"volume_acceleration_over_moment"},
        {ExcMiscProperty::VolumeVelocityOverForce, L"volume_velocity_over_force"},
        {ExcMiscProperty::VolumeVelocityOverMoment, L"volume_velocity_over_moment"},
        {ExcMiscProperty::VolumeAccelerationOverAcceleration, L"volume_acceleration_over_acceleration"},
        {ExcMiscProperty::VolumeVelocityOverAcceleration, L"volume_velocity_over_acceleration"},
        {ExcMiscProperty::VolumeAccelerationOverRotationalAcceleration, L"volume_acceleration_over_rotational_acceleration"},
        {ExcMiscProperty::VolumeVelocityOverRotationalAcceleration, L"volume_velocity_over_rotational_acceleration"},
        {ExcMiscProperty::VelocityPotential, L"velocity_potential"},
        {ExcMiscProperty::PressureOverTime, L"pressure_over_time"},
        {ExcMiscProperty::VolumeAccelerationOverDisplacement, L"volume_acceleration_over_displacement"},
        {ExcMiscProperty::VolumeVelocityOverDisplacement, L"volume_velocity_over_displacement"},
        {ExcMiscProperty::VolumeAccelerationOverRotation, L"volume_acceleration_over_rotation"},
        {ExcMiscProperty::VolumeVelocityOverRotation, L"volume_velocity_over_rotation"},
        {ExcMiscProperty::VolumeAccelerationOverVelocity, L"volume_acceleration_over_velocity"},
        {ExcMiscProperty::VolumeVelocityOverVelocity, L"volume_velocity_over_velocity"},
        {ExcMiscProperty::VolumeAccelerationOverPulsation, L"volume_acceleration_over_pulsation"},
        {ExcMiscProperty::VolumeVelocityOverPulsation, L"volume_velocity_over_pulsation"},
        {ExcMiscProperty::PowerSpectralDensityPressure, L"power_spectral_density_pressure"},
        {ExcMiscProperty::PowerSpectralDensityDisplacement, L"power_spectral_density_displacement"},
        {ExcMiscProperty::PowerSpectralDensityVelocity, L"power_spectral_density_velocity"},
        {ExcMiscProperty::PowerSpectralDensityAcceleration, L"power_spectral_density_acceleration"},
        {ExcMiscProperty::PowerSpectralDensity, L"power_spectral_density"},
        {ExcMiscProperty::Accelerationxpressure, L"accelerationxpressure"},
        {ExcMiscProperty::Velocityxpressure, L"velocityxpressure"},
        {ExcMiscProperty::Accelerationxforce, L"accelerationxforce"},
        {ExcMiscProperty::Velocityxforce, L"velocityxforce"},
        {ExcMiscProperty::Pressurexforce, L"pressurexforce"},
        {ExcMiscProperty::AccelerationxvolumeAcceleration, L"accelerationxvolume_acceleration"},
        {ExcMiscProperty::VelocityxvolumeAcceleration, L"velocityxvolume_acceleration"},
        {ExcMiscProperty::DisplacementxvolumeAcceleration, L"displacementxvolume_acceleration"},
        {ExcMiscProperty::DisplacementxvolumeVelocity, L"displacementxvolume_velocity"},
        {ExcMiscProperty::Illumination, L"illumination"},
        {ExcMiscProperty::Lumen, L"lumen"},
        {ExcMiscProperty::InverseTemprtre, L"inverse_temprtre"},
        {ExcMiscProperty::PowerSpectralDensityRotation, L"power_spectral_density_rotation"},
        {ExcMiscProperty::PowerSpectralDensityRotationalVelocity, L"power_spectral_density_rotational_velocity"},
        {ExcMiscProperty::PowerSpectralDensityRotationalAcceleration, L"power_spectral_density_rotational_acceleration"},
        {ExcMiscProperty::PowerSpectralDensityForce, L"power_spectral_density_force"},
        {ExcMiscProperty::PowerSpectralDensityMoment, L"power_spectral_density_moment"},
        {ExcMiscProperty::PressureOverArea, L"pressure_over_area"},
        {ExcMiscProperty::InverseSquarePressure, L"inverse_square_pressure"},
        {ExcMiscProperty::PressurexforceOverFrequency, L"pressurexforce_over_frequency"},
        {ExcMiscProperty::DisplacementxforceOverFrequency, L"displacementxforce_over_frequency"},
        {ExcMiscProperty::SquareVolumeVelocityOverFrequency, L"square_volume_velocity_over_frequency"},
        {ExcMiscProperty::SquareVolumeAccelerationOverFrequency, L"square_volume_acceleration_over_frequency"},
        {ExcMiscProperty::WaveLength, L"wave_length"},
        {ExcMiscProperty::LuminousFlux, L"luminous_flux"},
        {ExcMiscProperty::RadiantFlux, L"radiant_flux"},
        {ExcMiscProperty::LineicAbsorption, L"lineic_absorption"},
        {ExcMiscProperty::Ratio, L"ratio"},
        {ExcMiscProperty::Radiance, L"radiance"},
        {ExcMiscProperty::Illuminance, L"illuminance"},
        {ExcMiscProperty::Irradiance, L"irradiance"},
        {ExcMiscProperty::LuminousIntensity, L"luminous_intensity"},
        {ExcMiscProperty::RadiantIntensity, L"radiant_intensity"},
        {ExcMiscProperty::HeatGenerationRate, L"heat_generation_rate"},
        {ExcMiscProperty::Exothermy, L"exothermy"},
        {ExcMiscProperty::AcousticPower, L"acoustic_power"},
        {ExcMiscProperty::InverseVelocity, L"inverse_velocity"},
        {ExcMiscProperty::WarpingCoefficient, L"warping_coefficient"},
        {ExcMiscProperty::SpecificHeatCapacityLinearPart, L"specific_heat_capacity_linear_part"},
        {ExcMiscProperty::SpecificHeatCapacityQuadraticPart, L"specific_heat_capacity_quadratic_part"},
        {ExcMiscProperty::SpecificHeatCapacityCubicPart, L"specific_heat_capacity_cubic_part"},
        {ExcMiscProperty::Torque, L"torque"},
        {ExcMiscProperty::ElectricalConductivity, L"electrical_conductivity"},
        {ExcMiscProperty::MagneticPermeability, L"magnetic_permeability"},
        {ExcMiscProperty::CurrentDensity, L"current_density"},
        {ExcMiscProperty::JouleHeating, L"joule_heating"},
        {ExcMiscProperty::Wavenumber, L"wavenumber"},
        {ExcMiscProperty::Circularwavenumber, L"circularwavenumber"},
        {ExcMiscProperty::Dampingcoefficient, L"dampingcoefficient"},
        {ExcMiscProperty::Logarithmicdecrement, L"logarithmicdecrement"},
        {ExcMiscProperty::Attenuationcoefficient, L"attenuationcoefficient"},
        {ExcMiscProperty::Phasecoefficient, L"phasecoefficient"},
        {ExcMiscProperty::Propagationcoefficient, L"propagationcoefficient"},
        {ExcMiscProperty::Specificvolume, L"specificvolume"},
        {ExcMiscProperty::Angularmomentum, L"angularmomentum"},
        {ExcMiscProperty::Electricaltorqueconstant, L"electricaltorqueconstant"},
        {ExcMiscProperty::Sectionmodulus, L"sectionmodulus"},
        {ExcMiscProperty::Surfacetension, L"surfacetension"},
        {ExcMiscProperty::Energydensity, L"energydensity"},
        {ExcMiscProperty::Angularmomentumflux, L"angularmomentumflux"},
        {ExcMiscProperty::Temperaturedifference, L"temperaturedifference"},
        {ExcMiscProperty::Temperatureslope, L"temperatureslope"},
        {ExcMiscProperty::Quadratictemperaturecoefficient, L"quadratictemperaturecoefficient"},
        {ExcMiscProperty::Pressurecoefficient, L"pressurecoefficient"},
        {ExcMiscProperty::Compressibility, L"compressibility"},
        {ExcMiscProperty::Densityofheatflowrate, L"densityofheatflowrate"},
        {ExcMiscProperty::Thermalinsulance, L"thermalinsulance"},
        {ExcMiscProperty::Thermalresistance, L"thermalresistance"},
        {ExcMiscProperty::Thermalconductance, L"thermalconductance"},
        {ExcMiscProperty::Thermaldiffusivity, L"thermaldiffusivity"},
        {ExcMiscProperty::HeatcapacitySi, L"heatcapacity_si"},
        {ExcMiscProperty::EntropySi, L"entropy_si"},
        {ExcMiscProperty::Entropyflowrate, L"entropyflowrate"},
        {ExcMiscProperty::Specificenergy, L"specificenergy"},
        {ExcMiscProperty::Derdensitybyenthalpy, L"derdensitybyenthalpy"},
        {ExcMiscProperty::Derdensitybypressure, L"derdensitybypressure"},
        {ExcMiscProperty::Derdensitybytemperature, L"derdensitybytemperature"},
        {ExcMiscProperty::Derenthalpybypressure, L"derenthalpybypressure"},
        {ExcMiscProperty::Derenergybydensity, L"derenergybydensity"},
        {ExcMiscProperty::Derenergybypressure, L"derenergybypressure"},
        {ExcMiscProperty::Currentslope, L"currentslope"},
        {ExcMiscProperty::Electriccharge, L"electriccharge"},
        {ExcMiscProperty::Volumedensityofcharge, L"volumedensityofcharge"},
        {ExcMiscProperty::Surfacedensityofcharge, L"surfacedensityofcharge"},
        {ExcMiscProperty::Electricfieldstrength, L"electricfieldstrength"},
        {ExcMiscProperty::Voltageslope, L"voltageslope"},
        {ExcMiscProperty::Electricfluxdensity, L"electricfluxdensity"},
        {ExcMiscProperty::Capacitance, L"capacitance"},
        {ExcMiscProperty::Permittivity, L"permittivity"},
        {ExcMiscProperty::Electricpolarization, L"electricpolarization"},
        {ExcMiscProperty::Electrization, L"electrization"},
        {ExcMiscProperty::Electricdipolemoment, L"electricdipolemoment"},
        {ExcMiscProperty::Linearcurrentdensity, L"linearcurrentdensity"},
        {ExcMiscProperty::Magneticfieldstrength, L"magneticfieldstrength"},
        {ExcMiscProperty::Magneticfluxdensity, L"magneticfluxdensity"},
        {ExcMiscProperty::Magneticvectorpotential, L"magneticvectorpotential"},
        {ExcMiscProperty::Inductance, L"inductance"},
        {ExcMiscProperty::Electromagneticmoment, L"electromagneticmoment"},
        {ExcMiscProperty::Magneticdipolemoment, L"magneticdipolemoment"},
        {ExcMiscProperty::Magnetization, L"magnetization"},
        {ExcMiscProperty::Magneticpolarization, L"magneticpolarization"},
        {ExcMiscProperty::Poyntingvector, L"poyntingvector"},
        {ExcMiscProperty::Resistivity, L"resistivity"},
        {ExcMiscProperty::Reluctance, L"reluctance"},
        {ExcMiscProperty::Permeance, L"permeance"},
        {ExcMiscProperty::Conductance, L"conductance"},
        {ExcMiscProperty::Apparentpower, L"apparentpower"},
        {ExcMiscProperty::Reactivepower, L"reactivepower"},
        {ExcMiscProperty::Transconductance, L"transconductance"},
        {ExcMiscProperty::Inversepotential, L"inversepotential"},
        {ExcMiscProperty::Radiantenergy, L"radiantenergy"},
        {ExcMiscProperty::Spectralradiantenergydensity, L"spectralradiantenergydensity"},
        {ExcMiscProperty::Radiantenergyfluencerate, L"radiantenergyfluencerate"},
        {ExcMiscProperty::Quantityoflight, L"quantityoflight"},
        {ExcMiscProperty::Luminousexitance, L"luminousexitance"},
        {ExcMiscProperty::Lightexposure, L"lightexposure"},
        {ExcMiscProperty::Luminousefficacy, L"luminousefficacy"},
        {ExcMiscProperty::Molarabsorptioncoefficient, L"molarabsorptioncoefficient"},
        {ExcMiscProperty::Acousticimpedance, L"acousticimpedance"},
        {ExcMiscProperty::Specificacousticimpedance, L"specificacousticimpedance"},
        {ExcMiscProperty::Mechanicalimpedance, L"mechanicalimpedance"},
        {ExcMiscProperty::Soundpowerlevel, L"soundpowerlevel"},
        {ExcMiscProperty::Loundnesslevel, L"loundnesslevel"},
        {ExcMiscProperty::Loundness, L"loundness"},
        {ExcMiscProperty::Numberofmolecules, L"numberofmolecules"},
        {ExcMiscProperty::Molarvolume, L"molarvolume"},
        {ExcMiscProperty::Molarinternalenergy, L"molarinternalenergy"},
        {ExcMiscProperty::Molarheatcapacity, L"molarheatcapacity"},
        {ExcMiscProperty::Numberdensity, L"numberdensity"},
        {ExcMiscProperty::Fugacity, L"fugacity"},
        {ExcMiscProperty::Osmoticpressure, L"osmoticpressure"},
        {ExcMiscProperty::Affinity, L"affinity"},
        {ExcMiscProperty::Electricpolarizabilityofamolecule, L"electricpolarizabilityofamolecule"},
        {ExcMiscProperty::Faradayconstant, L"faradayconstant"},
        {ExcMiscProperty::Ionicstrength, L"ionicstrength"},
        {ExcMiscProperty::Molarconductivity, L"molarconductivity"},
        {ExcMiscProperty::Bohrmagneton, L"bohrmagneton"},
        {ExcMiscProperty::Nuclearmagneton, L"nuclearmagneton"},
        {ExcMiscProperty::Gyromagneticcoefficient, L"gyromagneticcoefficient"},
        {ExcMiscProperty::Nuclearquadrupolemoment, L"nuclearquadrupolemoment"},
        {ExcMiscProperty::Levelwidth, L"levelwidth"},
        {ExcMiscProperty::Radioactivity, L"radioactivity"},
        {ExcMiscProperty::Specificactivity, L"specificactivity"},
        {ExcMiscProperty::Decayconstant, L"decayconstant"},
        {ExcMiscProperty::Angularcrosssection, L"angularcrosssection"},
        {ExcMiscProperty::Spectralcrosssection, L"spectralcrosssection"},
        {ExcMiscProperty::Spectralangularcrosssection, L"spectralangularcrosssection"},
        {ExcMiscProperty::Macroscopiccrosssection, L"macroscopiccrosssection"},
        {ExcMiscProperty::Particlefluence, L"particlefluence"},
        {ExcMiscProperty::Particlefluencerate, L"particlefluencerate"},
        {ExcMiscProperty::Energyfluence, L"energyfluence"},
        {ExcMiscProperty::Currentdensityofparticles, L"currentdensityofparticles"},
        {ExcMiscProperty::Massattenuationcoefficient, L"massattenuationcoefficient"},
        {ExcMiscProperty::Atomicattenuationcoefficient, L"atomicattenuationcoefficient"},
        {ExcMiscProperty::Totallinearstoppingpower, L"totallinearstoppingpower"},
        {ExcMiscProperty::Totalatomicstoppingpower, L"totalatomicstoppingpower"},
        {ExcMiscProperty::Totalmassstoppingpower, L"totalmassstoppingpower"},
        {ExcMiscProperty::Meanmassrange, L"meanmassrange"},
        {ExcMiscProperty::Linearionization, L"linearionization"},
        {ExcMiscProperty::Mobility, L"mobility"},
        {ExcMiscProperty::Recombinationcoefficient, L"recombinationcoefficient"},
        {ExcMiscProperty::Neutronfluencerate, L"neutronfluencerate"},
        {ExcMiscProperty::Totalneutronsourcedensity, L"totalneutronsourcedensity"},
        {ExcMiscProperty::Slowingdowndensity, L"slowingdowndensity"},
        {ExcMiscProperty::Absorbeddose, L"absorbeddose"},
        {ExcMiscProperty::Specificenergyimparted, L"specificenergyimparted"},
        {ExcMiscProperty::Doseequivalent, L"doseequivalent"},
        {ExcMiscProperty::Absorbeddoserate, L"absorbeddoserate"},
        {ExcMiscProperty::Linearenergytransfer, L"linearenergytransfer"},
        {ExcMiscProperty::Kerma, L"kerma"},
        {ExcMiscProperty::Kermarate, L"kermarate"},
        {ExcMiscProperty::Massenergytransfercoefficient, L"massenergytransfercoefficient"},
        {ExcMiscProperty::Exposure, L"exposure"},
        {ExcMiscProperty::Exposurerate, L"exposurerate"},
        {ExcMiscProperty::Spectralconcentration, L"spectralconcentration"},
        {ExcMiscProperty::Densityofstates, L"densityofstates"},
        {ExcMiscProperty::Lorenzcoefficient, L"lorenzcoefficient"},
        {ExcMiscProperty::Hallcoefficient, L"hallcoefficient"},
        {ExcMiscProperty::Seebeckcoefficient, L"seebeckcoefficient"},
        {ExcMiscProperty::Thomsoncoefficient, L"thomsoncoefficient"},
        {ExcMiscProperty::Richardsonconstant, L"richardsonconstant"},
        {ExcMiscProperty::Fermienergy, L"fermienergy"},
        {ExcMiscProperty::Fluxiodquantum, L"fluxiodquantum"},
        {ExcMiscProperty::SurfacePowerDensity, L"surface_power_density"},
        {ExcMiscProperty::PowerDensity, L"power_density"},
        {ExcMiscProperty::DisplacementOverVoltage, L"displacement_over_voltage"},
        {ExcMiscProperty::VelocityOverVoltage, L"velocity_over_voltage"},
        {ExcMiscProperty::AccelerationOverVoltage, L"acceleration_over_voltage"},
        {ExcMiscProperty::VoltageOverDisplacement, L"voltage_over_displacement"},
        {ExcMiscProperty::VoltageOverVelocity, L"voltage_over_velocity"},
        {ExcMiscProperty::VoltageOverAcceleration, L"voltage_over_acceleration"},
        {ExcMiscProperty::PressureOverVoltage, L"pressure_over_voltage"},
        {ExcMiscProperty::VoltageOverPressure, L"voltage_over_pressure"},
        {ExcMiscProperty::Rate, L"rate"},
        {ExcMiscProperty::StrainRate, L"strain_rate"},
        {ExcMiscProperty::SpecificHeatPerUnitVolume, L"specific_heat_per_unit_volume"},
        {ExcMiscProperty::Powerbis, L"powerbis"},
        {ExcMiscProperty::Molarconcentration, L"molarconcentration"},
        {ExcMiscProperty::Thermaltransmittance, L"thermaltransmittance"},
        {ExcMiscProperty::TemperatureOverPressure, L"temperature_over_pressure"},
        {ExcMiscProperty::SpecificvolumeOverTemperature, L"specificvolume_over_temperature"},
        {ExcMiscProperty::MolePerMass, L"mole_per_mass"},
        {ExcMiscProperty::MassDiffusivity, L"mass_diffusivity"},
        {ExcMiscProperty::MassFlowPerVolume, L"mass_flow_per_volume"},
        {ExcMiscProperty::DensitySquareAngularSpeed, L"density_square_angular_speed"},
        {ExcMiscProperty::DensityAngularSpeed, L"density_angular_speed"},
        {ExcMiscProperty::PressureOverSquareTime, L"pressure_over_square_time"},
        {ExcMiscProperty::AcousticIntensity, L"acoustic_intensity"},
        {ExcMiscProperty::HeatFluxArea, L"heat_flux_area"},
        {ExcMiscProperty::ArcLength, L"arc_length"},
        {ExcMiscProperty::Displacement, L"displacement"},
        {ExcMiscProperty::Thickness, L"thickness"},
        {ExcMiscProperty::Stress, L"stress"},
        {ExcMiscProperty::TurbulentEnergyDissipationRate, L"turbulent_energy_dissipation_rate"},
        {ExcMiscProperty::EnergyReleaseRate, L"energy_release_rate"},
        {ExcMiscProperty::ForcePerLength, L"force_per_length"},
        {ExcMiscProperty::HeatGenerationDensity, L"heat_generation_density"},
        {ExcMiscProperty::MassFlux, L"mass_flux"},
        {ExcMiscProperty::OmegaSquared, L"omega_squared"},
        {ExcMiscProperty::PressureGradient, L"pressure_gradient"},
        {ExcMiscProperty::Twist, L"twist"},
        {ExcMiscProperty::TimeIntegratedElectricCurrentPerArea, L"time_integrated_electric_current_per_area"},
        {ExcMiscProperty::HeatFlowPerVolume, L"heat_flow_per_volume"},
        {ExcMiscProperty::SoundPressureLevel, L"sound_pressure_level"},
        {ExcMiscProperty::SpecificEAbsorptionRate, L"specific_e_absorption_rate"},
        {ExcMiscProperty::EnergyPerArea, L"energy_per_area"},
        {ExcMiscProperty::HydrodynamicResistanceCoefficient, L"hydrodynamic_resistance_coefficient"},
        {ExcMiscProperty::MomentPerLength, L"moment_per_length"},
        {ExcMiscProperty::QuietnessIndex, L"quietness_index"},
        {ExcMiscProperty::SurfacicDampingConstant, L"surfacic_damping_constant"},
        {ExcMiscProperty::MassFraction, L"mass_fraction"},
        {ExcMiscProperty::SpecificSurfaceArea, L"specific_surface_area"},
        {ExcMiscProperty::LinearMassDensityOfFibers, L"linear_mass_density_of_fibers"},
        {ExcMiscProperty::Hardness, L"hardness"},
        {ExcMiscProperty::Transmission, L"transmission"},
        {ExcMiscProperty::WaveFrontError, L"wave_front_error"},
        {ExcMiscProperty::Roughness, L"roughness"},
        {ExcMiscProperty::Flatness, L"flatness"},
        {ExcMiscProperty::Hygrometry, L"hygrometry"},
        {ExcMiscProperty::FrequencyNoise, L"frequency_noise"},
        {ExcMiscProperty::StressOverSquareTemperature, L"stress_over_square_temperature"},
        {ExcMiscProperty::Volumedensityofcurrent, L"volumedensityofcurrent"},
        {ExcMiscProperty::ConcentratedIonConcentrationFlux, L"concentrated_ion_concentration_flux"},
        {ExcMiscProperty::DistributedIonConcentrationSurfaceFlux, L"distributed_ion_concentration_surface_flux"},
        {ExcMiscProperty::DistributedIonConcentrationBodyFlux, L"distributed_ion_concentration_body_flux"},
        {ExcMiscProperty::TemperatureGradient, L"temperature_gradient"},
    };
    return table;
}

// ---- ExcMiscProperty ----------------------------------------------------------

ExcMiscProperty::ExcMiscProperty() = default;
ExcMiscProperty::ExcMiscProperty(const std::wstring& name, EType type, const std::wstring& value,
                                 const std::wstring& unit, EValueType valueType)
    : m_name(name), m_type(type), m_unit(unit), m_value(value), m_valueType(valueType) {}
ExcMiscProperty::ExcMiscProperty(const ExcMiscProperty&) = default;
ExcMiscProperty::ExcMiscProperty(ExcMiscProperty&&) noexcept = default;
ExcMiscProperty& ExcMiscProperty::operator=(const ExcMiscProperty&) = default;
ExcMiscProperty& ExcMiscProperty::operator=(ExcMiscProperty&&) noexcept = default;
ExcMiscProperty::~ExcMiscProperty() = default;

bool ExcMiscProperty::operator==(const ExcMiscProperty& other) const {
    return m_name == other.m_name && m_type == other.m_type && m_unit == other.m_unit &&
           m_value == other.m_value && m_valueType == other.m_valueType;
}

template <class Io, class Self>
void ExcMiscProperty::members(Io& io, Self& self) {
    io(L"name", self.m_name);
    io(L"type", self.m_type);
    io(L"unit", self.m_unit, json::optional);
    io(L"value", self.m_value);
    io(L"value_type", self.m_valueType, json::optional);
}

XCH_JSON_IO_CHECKED(ExcMiscProperty,
                    json::expectObject(value, vx_link::LevelWarning,
                                       "ExcMiscProperty::readObject: input JsonValue is not an object"))

// ---- ExcMiscPropertiesGroup ---------------------------------------------------

ExcMiscPropertiesGroup::ExcMiscPropertiesGroup() = default;
ExcMiscPropertiesGroup::ExcMiscPropertiesGroup(const std::wstring& name, bool bim)
    : m_name(name), m_bim(bim) {}
ExcMiscPropertiesGroup::ExcMiscPropertiesGroup(const ExcMiscPropertiesGroup&) = default;
ExcMiscPropertiesGroup& ExcMiscPropertiesGroup::operator=(const ExcMiscPropertiesGroup&) = default;
ExcMiscPropertiesGroup::~ExcMiscPropertiesGroup() = default;

bool ExcMiscPropertiesGroup::addProperty(const ExcMiscProperty& property) {
    return m_properties.insert(property).second;
}

bool ExcMiscPropertiesGroup::addProperty(ExcMiscProperty&& property) {
    return m_properties.insert(std::move(property)).second;
}

const ExcMiscProperty* ExcMiscPropertiesGroup::findProperty(const std::wstring& name) const {
    ExcMiscProperty key;
    key.setName(name);
    auto it = m_properties.find(key);
    return it == m_properties.end() ? nullptr : &*it;
}

template <class Io, class Self>
void ExcMiscPropertiesGroup::members(Io& io, Self& self) {
    io(L"name", self.m_name);
    io(L"is_bim", self.m_bim);
    io(L"properties", self.m_properties);
}

XCH_JSON_IO_CHECKED(ExcMiscPropertiesGroup,
                    json::expectObject(value, vx_link::LevelWarning,
                                       "ExcMiscPropertiesGroup::readObject: input JsonValue is not an object."))

// ---- ExcMiscData ----------------------------------------------------------------

ExcMiscData::ExcMiscData() = default;
ExcMiscData::ExcMiscData(const ExcMiscData&) = default;
ExcMiscData& ExcMiscData::operator=(const ExcMiscData&) = default;
ExcMiscData::~ExcMiscData() = default;

bool ExcMiscData::addGroup(const std::shared_ptr<ExcMiscPropertiesGroup>& group) {
    if (!group) {
        VX_LOG(vx_link::LevelWarning, "ExcMiscData::addGroup: attempt to add null group");
        return false;
    }
    if (!m_groups.insert(group).second) {
        VX_LOG(vx_link::LevelWarning, "ExcMiscData::addGroup: properties group '"
                                          << vx_link::utf8(group->name())
                                          << "' already exist, some properties can be lost.");
        return false;
    }
    return true;
}

std::shared_ptr<ExcMiscPropertiesGroup> ExcMiscData::findGroup(const std::wstring& name) const {
    auto key = std::make_shared<ExcMiscPropertiesGroup>(name);
    auto it = m_groups.find(key);
    return it == m_groups.end() ? nullptr : *it;
}

void ExcMiscData::readObject(const JsonValue& value) {
    VX_TRACE();
    if (!value.IsArray()) {
        VX_LOG(vx_link::LevelWarning, "ExcMiscData::readObject: input JsonValue is not an array.");
        return;
    }
    for (const JsonValue& item : value.GetArray()) {
        auto group = std::make_shared<ExcMiscPropertiesGroup>();
        group->readObject(item);
        addGroup(group);
    }
}

void ExcMiscData::writeObject(JsonValue& value, JsonAllocator& allocator) const {
    VX_TRACE();
    json::Codec<Groups>::write(value, allocator, m_groups);
}

} // namespace xch
