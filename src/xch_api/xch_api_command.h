// Command: what the host asks a translator worker to do, with the job
// options of an import or an export.
//
// A Command is written directly onto a wide stream as one pretty JSON
// document (not inside an exchange envelope):
//   {"varnex_interface": "uconnect", "command": "import",
//    "options": {...}, "mt_mode": false}
// "options" is present for import and export only. Through the legacy
// interface a command carries the legacy option objects, otherwise the
// plain ones. The option objects are reached through the interfaces below;
// the library's implementations are made by the Command factories.
#pragma once

#include <cstdint>
#include <istream>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include <mp/mp_serializable.h>
#include <xch_api/xch_api_enum_table.h>
#include <xch_api/xch_api_exchange_common.h>
#include <xch_api/xch_api_export.h>
#include <xch_api/xch_api_format_options.h>
#include <xch_api/xch_api_json.h>
#include <xch_api/xch_api_json_object.h>
#include <xch_api/xch_api_varnex_info.h>

namespace xch {

// The option sets of a job: the common groups and the format's own set.
using FormatOptionsList = std::vector<std::shared_ptr<IFormatOptions>>;

// ---- import and export options --------------------------------------------------------

// The options of an import: the file, how the worker runs, and the option
// sets of the job.
class XCH_API ImportOptions : public IJsonObject {
public:
    ~ImportOptions() override;

    virtual const std::wstring& file() const = 0;
    virtual void setFile(const std::wstring& file) = 0;
    virtual bool forceMpMode() const = 0;
    virtual void setForceMpMode(bool force) = 0;
    virtual bool translateWorldOrientation() const = 0;
    virtual void setTranslateWorldOrientation(bool translate) = 0;
    virtual bool translateMiscData() const = 0;
    virtual void setTranslateMiscData(bool translate) = 0;
    virtual const FormatOptionsList& formatOptions() const = 0;
    // Replaces the option sets by the non-null ones of `options`; each null
    // entry is left out and logged as a warning.
    virtual void setFormatOptions(const FormatOptionsList& options) = 0;
    // Appends one option set; null is not added (a warning is logged).
    virtual void addFormatOptions(const std::shared_ptr<IFormatOptions>& options) = 0;
    // The modeler version agreed between host and worker (not interpreted).
    virtual std::uint32_t modelerVersion() const = 0;
    virtual void setModelerVersion(std::uint32_t version) = 0;
};

// The options of an export: the file to write, the target version, the
// geometry flags agreed between host and worker, and the option sets.
class XCH_API ExportOptions : public IJsonObject {
public:
    ~ExportOptions() override;

    virtual const std::wstring& file() const = 0;
    virtual void setFile(const std::wstring& file) = 0;
    virtual const std::wstring& formatVersion() const = 0;
    virtual void setFormatVersion(const std::wstring& version) = 0;
    virtual std::uint32_t geometryFlags() const = 0;
    virtual void setGeometryFlags(std::uint32_t flags) = 0;
    virtual const FormatOptionsList& formatOptions() const = 0;
    // Replaces the option sets by the non-null ones of `options`; each null
    // entry is left out and logged as a warning.
    virtual void setFormatOptions(const FormatOptionsList& options) = 0;
    // Appends one option set; null is not added (a warning is logged).
    virtual void addFormatOptions(const std::shared_ptr<IFormatOptions>& options) = 0;
};

// The library's ImportOptions.
// JSON, in this order: "file", "force_mp_mode", "translate_world_orientation",
// "translate_misc_data", "format_options" (one element per option set),
// "modeler_version".
// Reading throws std::invalid_argument for a value that is not an object
// ("ImportOptionsImpl::readObject: !object.IsObject()") or has no string
// "file" ("ImportOptionsImpl::readObject: json document has no valid file
// path."); other keys are taken when of their type. An option set that
// cannot be read is left out and logged; the path is logged at debug
// level.
class XCH_API ImportOptionsImpl : public ImportOptions {
public:
    ImportOptionsImpl() = default;
    ImportOptionsImpl(const ImportOptionsImpl&) = default;
    ImportOptionsImpl& operator=(const ImportOptionsImpl&) = default;
    ~ImportOptionsImpl() override;

    const std::wstring& file() const override { return m_file; }
    void setFile(const std::wstring& file) override { m_file = file; }
    bool forceMpMode() const override { return m_forceMpMode; }
    void setForceMpMode(bool force) override { m_forceMpMode = force; }
    bool translateWorldOrientation() const override { return m_translateWorldOrientation; }
    void setTranslateWorldOrientation(bool translate) override { m_translateWorldOrientation = translate; }
    bool translateMiscData() const override { return m_translateMiscData; }
    void setTranslateMiscData(bool translate) override { m_translateMiscData = translate; }
    const FormatOptionsList& formatOptions() const override { return m_formatOptions; }
    void setFormatOptions(const FormatOptionsList& options) override;
    void addFormatOptions(const std::shared_ptr<IFormatOptions>& options) override;
    std::uint32_t modelerVersion() const override { return m_modelerVersion; }
    void setModelerVersion(std::uint32_t version) override { m_modelerVersion = version; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    std::wstring m_file;
    bool m_forceMpMode = false;
    bool m_translateWorldOrientation = false;
    bool m_translateMiscData = false;
    FormatOptionsList m_formatOptions;
    std::uint32_t m_modelerVersion = 0;
};

// The library's ExportOptions.
// JSON, in this order: "file", "format_version", "geometry_flags",
// "format_options". Reading throws like ImportOptionsImpl, with
// "ExportOptionsImpl::..." in the messages.
class XCH_API ExportOptionsImpl : public ExportOptions {
public:
    ExportOptionsImpl() = default;
    ExportOptionsImpl(const ExportOptionsImpl&) = default;
    ExportOptionsImpl& operator=(const ExportOptionsImpl&) = default;
    ~ExportOptionsImpl() override;

    const std::wstring& file() const override { return m_file; }
    void setFile(const std::wstring& file) override { m_file = file; }
    const std::wstring& formatVersion() const override { return m_formatVersion; }
    void setFormatVersion(const std::wstring& version) override { m_formatVersion = version; }
    std::uint32_t geometryFlags() const override { return m_geometryFlags; }
    void setGeometryFlags(std::uint32_t flags) override { m_geometryFlags = flags; }
    const FormatOptionsList& formatOptions() const override { return m_formatOptions; }
    void setFormatOptions(const FormatOptionsList& options) override;
    void addFormatOptions(const std::shared_ptr<IFormatOptions>& options) override;

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    std::wstring m_file;
    std::wstring m_formatVersion;
    std::uint32_t m_geometryFlags = 0;
    FormatOptionsList m_formatOptions;
};

// ---- legacy options ----------------------------------------------------------------------
//
// A legacy job passes the model through a temporary DWG file: an import
// inserts the translated drawing into the host's drawing (or replaces it),
// an export writes the host's whole model or its selection.

// How a legacy import places the translated drawing (key "mode").
enum ELegacyImportMode : std::int32_t {
    LegacyImportUnknown = 0,   // "unknown"
    LegacyImportInsert = 1,    // "insert": added to the current drawing
    LegacyImportReplace = 2    // "replace": replaces the current drawing
};

// What a legacy export writes (key "mode").
enum ELegacyExportMode : std::int32_t {
    LegacyExportUnknown = 0,   // "unknown"
    LegacyExportAll = 1,       // "all": the whole model
    LegacyExportSelection = 2  // "selection": the selected entities only
};

template <> XCH_API const EnumTable<ELegacyImportMode>& enumTable<ELegacyImportMode>();
template <> XCH_API const EnumTable<ELegacyExportMode>& enumTable<ELegacyExportMode>();

// The options of an import through the legacy interface.
class XCH_API LegacyImportOptions : public IJsonObject {
public:
    ~LegacyImportOptions() override;
    virtual const std::wstring& file() const = 0;
    virtual void setFile(const std::wstring& file) = 0;
    // The unit in which the drawing is inserted.
    virtual ELengthUnitType insertionUnit() const = 0;
    virtual void setInsertionUnit(ELengthUnitType unit) = 0;
    virtual ELegacyImportMode mode() const = 0;
    virtual void setMode(ELegacyImportMode mode) = 0;
};

// The options of an export through the legacy interface.
class XCH_API LegacyExportOptions : public IJsonObject {
public:
    ~LegacyExportOptions() override;
    virtual const std::wstring& file() const = 0;
    virtual void setFile(const std::wstring& file) = 0;
    // The unit of the drawing's coordinates.
    virtual ELengthUnitType insertionUnit() const = 0;
    virtual void setInsertionUnit(ELengthUnitType unit) = 0;
    virtual ELegacyExportMode mode() const = 0;
    virtual void setMode(ELegacyExportMode mode) = 0;
};

// The library's implementation of a legacy option interface; Mode is the
// interface's mode enumeration.
// JSON: {"file": "<path>", "insertion_unit": "<length unit>",
// "mode": "<mode>"}, all always written. Reading is lenient: a value that
// is not an object is logged ("LegacyImportOptionsImpl object should have a
// JSON object type.", likewise for export) and changes nothing; a missing or
// mistyped key keeps its field; an unknown mode or unit string reads as the
// value of its table's first string ("insert", "all", "centimeter").
template <class Interface, class Mode>
class LegacyOptionsImpl : public Interface {
public:
    LegacyOptionsImpl() = default;
    LegacyOptionsImpl(const LegacyOptionsImpl&) = default;
    LegacyOptionsImpl& operator=(const LegacyOptionsImpl&) = default;
    ~LegacyOptionsImpl() override;

    // Defined in the library (not inline), so that the two exported
    // instantiations carry every member.
    const std::wstring& file() const override;
    void setFile(const std::wstring& file) override;
    ELengthUnitType insertionUnit() const override;
    void setInsertionUnit(ELengthUnitType unit) override;
    Mode mode() const override;
    void setMode(Mode mode) override;

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    std::wstring m_file;
    ELengthUnitType m_insertionUnit = LengthUnknown;
    Mode m_mode = Mode(0);
};

extern template class XCH_API LegacyOptionsImpl<LegacyImportOptions, ELegacyImportMode>;
extern template class XCH_API LegacyOptionsImpl<LegacyExportOptions, ELegacyExportMode>;

using LegacyImportOptionsImpl = LegacyOptionsImpl<LegacyImportOptions, ELegacyImportMode>;
using LegacyExportOptionsImpl = LegacyOptionsImpl<LegacyExportOptions, ELegacyExportMode>;

// ---- the command ------------------------------------------------------------------------

class XCH_API Command : public mp::ISerializable {
public:
    enum EType : std::int32_t {
        Unknown = 0,   // "unknown" (also written for any value outside 1..4)
        Info = 1,      // "info": report what the worker is
        Import = 2,    // "import"
        Export = 3,    // "export"
        Ping = 4       // "ping": just answer
    };

    Command() = default;
    Command(const Command&) = default;
    Command& operator=(const Command&) = default;
    ~Command() override;

    EType type() const { return m_type; }
    void setType(EType type) { m_type = type; }
    EVarnexInterface internalInterface() const { return m_internalInterface; }
    void setInternalInterface(EVarnexInterface value) { m_internalInterface = value; }
    bool useMultiThreading() const { return m_useMultiThreading; }
    void setUseMultiThreading(bool use) { m_useMultiThreading = use; }

    const std::shared_ptr<ImportOptions>& importOptions() const { return m_importOptions; }
    const std::shared_ptr<ExportOptions>& exportOptions() const { return m_exportOptions; }
    const std::shared_ptr<LegacyImportOptions>& legacyImportOptions() const { return m_legacyImportOptions; }
    const std::shared_ptr<LegacyExportOptions>& legacyExportOptions() const { return m_legacyExportOptions; }

    // Accept only the library's own implementations: null or a foreign
    // implementation throws std::invalid_argument "Command::setImportOptions:
    // wrong implementation of ImportOptions interface." (with a full stop)
    // or "Command::setExportOptions: wrong implementation of ExportOptions
    // interface" (without).
    void setImportOptions(const std::shared_ptr<ImportOptions>& options);
    void setExportOptions(const std::shared_ptr<ExportOptions>& options);
    // Store their argument as given.
    void setLegacyImportOptions(const std::shared_ptr<LegacyImportOptions>& options);
    void setLegacyExportOptions(const std::shared_ptr<LegacyExportOptions>& options);

    // New default objects of the library's implementations.
    static std::shared_ptr<ImportOptions> newImportOptions();
    static std::shared_ptr<ExportOptions> newExportOptions();
    static std::shared_ptr<LegacyImportOptions> newLegacyImportOptions();
    static std::shared_ptr<LegacyExportOptions> newLegacyExportOptions();

    // Throws std::invalid_argument when an import or export command lacks
    // the options its interface needs ("Import command should contain
    // import options", "Import(LEGACY) command should contain import
    // options(LEGACY)", and the same for export), std::runtime_error when
    // the text writer fails.
    void writeObject(std::wostream& out) const override;
    // Throws std::invalid_argument for a root that is not an object
    // ("Command::readObject: invalid json document"), a document without
    // "command" ("Command::readObject: json document has no command
    // type."), and an import or export without "options" ("Import command
    // should contain options.", "Legacy Import command should contain
    // options.", and the same for export). Interface, type and
    // multi-threading are reset first and then read by exact match: an
    // unknown interface string gives "uconnect", an unknown command
    // "unknown", and "mt_mode" counts only when it is true.
    void readObject(std::wistream& in) override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    EType m_type = Unknown;
    EVarnexInterface m_internalInterface = UConnectInterface;
    std::shared_ptr<ImportOptions> m_importOptions;
    std::shared_ptr<ExportOptions> m_exportOptions;
    std::shared_ptr<LegacyImportOptions> m_legacyImportOptions;
    std::shared_ptr<LegacyExportOptions> m_legacyExportOptions;
    bool m_useMultiThreading = false;
};

template <> XCH_API const EnumTable<Command::EType>& enumTable<Command::EType>();

} // namespace xch
