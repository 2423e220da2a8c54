// The command, its import and export options and the legacy options.
#include <xch_api/xch_api_command.h>

#include <stdexcept>

#include <logging/vx_link_logger.h>
#include <xch_api/internal/protocol_io.h>

namespace xch {

template <>
const EnumTable<Command::EType>& enumTable<Command::EType>() {
    static const EnumTable<Command::EType> table{
        {Command::Unknown, L"unknown"}, {Command::Info, L"info"},
        {Command::Import, L"import"},   {Command::Export, L"export"},
        {Command::Ping, L"ping"}};
    return table;
}

template <>
const EnumTable<ELegacyImportMode>& enumTable<ELegacyImportMode>() {
    static const EnumTable<ELegacyImportMode> table{
        {LegacyImportUnknown, L"unknown"}, {LegacyImportInsert, L"insert"},
        {LegacyImportReplace, L"replace"}};
    return table;
}

template <>
const EnumTable<ELegacyExportMode>& enumTable<ELegacyExportMode>() {
    static const EnumTable<ELegacyExportMode> table{
        {LegacyExportUnknown, L"unknown"}, {LegacyExportAll, L"all"},
        {LegacyExportSelection, L"selection"}};
    return table;
}

namespace {

// A key whose value is logged at debug level as "<label><value>" when it is
// read, and with `onWrite` also when it is written.
struct Logged {
    const char* label;
    bool onWrite;

    template <class T>
    bool write(JsonValue& v, JsonAllocator& a, const T& x) const {
        if (onWrite) log(x);
        json::Codec<T>::write(v, a, x);
        return true;
    }
    template <class T>
    void read(const JsonValue& v, T& x) const {
        if (json::Codec<T>::read(v, x)) log(x);
    }
    void log(const std::wstring& x) const { VX_LOG(5, label << vx_link::utf8(x)); }
    void log(std::uint32_t x) const { VX_LOG(5, label << x); }
};

// The option sets of a job, in "format_options". Each element is read by
// IFormatOptions::readOptions; an element that yields no option set, or a
// null entry when writing, is left out and logged with the job's file.
struct FormatOptionsArray {
    const std::wstring& file;

    bool write(JsonValue& v, JsonAllocator& a, const FormatOptionsList& list) const {
        v.SetArray();
        for (const auto& options : list) {
            if (!options) {
                VX_LOG(2, "Invalid specific format options object, file " << vx_link::utf8(file));
                continue;
            }
            JsonValue item;
            options->writeObject(item, a);
            v.PushBack(item, a);
        }
        return true;
    }
    void read(const JsonValue& v, FormatOptionsList& list) const {
        if (!v.IsArray()) return;
        for (const JsonValue& item : v.GetArray()) {
            if (auto options = IFormatOptions::readOptions(item))
                list.push_back(std::move(options));
            else
                VX_LOG(2, "Specific format options cannot be read, file: " << vx_link::utf8(file) << ".");
        }
    }
};

// The reading order of the job options: the object and its file path are
// required (std::invalid_argument with `className` in the message), the
// other keys are optional.
template <class T>
void readJobOptions(const JsonValue& value, const std::string& className, T& options) {
    json::requireObject(value, className + "::readObject: !object.IsObject()");
    json::requireMember(value, L"file", true,
                        className + "::readObject: json document has no valid file path.");
    json::Reader reader(value);
    T::members(reader, options);
}

void addOptions(FormatOptionsList& list, const std::shared_ptr<IFormatOptions>& options,
                const char* className) {
    if (options)
        list.push_back(options);
    else
        VX_LOG(3, className << ": attempt to add null format options object.");
}

// Replaces `list` by the non-null sets of `options` (which may be `list`
// itself); each null one is logged as addOptions does.
void setOptions(FormatOptionsList& list, FormatOptionsList options, const char* className) {
    list.clear();
    for (const auto& set : options) addOptions(list, set, className);
}

} // namespace

// ---- ImportOptionsImpl ---------------------------------------------------------------

ImportOptions::~ImportOptions() = default;
ImportOptionsImpl::~ImportOptionsImpl() = default;

template <class Io, class Self>
void ImportOptionsImpl::members(Io& io, Self& self) {
    io(L"file", self.m_file, Logged{"ImportOptions.file = ", true});
    io(L"force_mp_mode", self.m_forceMpMode);
    io(L"translate_world_orientation", self.m_translateWorldOrientation);
    io(L"translate_misc_data", self.m_translateMiscData);
    io(L"format_options", self.m_formatOptions, FormatOptionsArray{self.m_file});
    io(L"modeler_version", self.m_modelerVersion);
}

void ImportOptionsImpl::setFormatOptions(const FormatOptionsList& options) {
    setOptions(m_formatOptions, options, "ImportOptionsImpl");
}

void ImportOptionsImpl::addFormatOptions(const std::shared_ptr<IFormatOptions>& options) {
    addOptions(m_formatOptions, options, "ImportOptionsImpl");
}

void ImportOptionsImpl::readObject(const JsonValue& value) {
    VX_TRACE();
    readJobOptions(value, "ImportOptionsImpl", *this);
}

void ImportOptionsImpl::writeObject(JsonValue& value, JsonAllocator& allocator) const {
    VX_TRACE();
    json::writeMembers(value, allocator, *this);
}

// ---- ExportOptionsImpl ---------------------------------------------------------------

ExportOptions::~ExportOptions() = default;
ExportOptionsImpl::~ExportOptionsImpl() = default;

template <class Io, class Self>
void ExportOptionsImpl::members(Io& io, Self& self) {
    io(L"file", self.m_file, Logged{"ExportOptions.file = ", true});
    io(L"format_version", self.m_formatVersion, Logged{"ExportOptions.formatVersion = ", false});
    io(L"geometry_flags", self.m_geometryFlags, Logged{"ExportOptions.geometryFlags = ", false});
    io(L"format_options", self.m_formatOptions, FormatOptionsArray{self.m_file});
}

void ExportOptionsImpl::setFormatOptions(const FormatOptionsList& options) {
    setOptions(m_formatOptions, options, "ExportOptionsImpl");
}

void ExportOptionsImpl::addFormatOptions(const std::shared_ptr<IFormatOptions>& options) {
    addOptions(m_formatOptions, options, "ExportOptionsImpl");
}

void ExportOptionsImpl::readObject(const JsonValue& value) {
    VX_TRACE();
    readJobOptions(value, "ExportOptionsImpl", *this);
}

void ExportOptionsImpl::writeObject(JsonValue& value, JsonAllocator& allocator) const {
    VX_TRACE();
    json::writeMembers(value, allocator, *this);
}

// ---- legacy options ------------------------------------------------------------------

LegacyImportOptions::~LegacyImportOptions() = default;
LegacyExportOptions::~LegacyExportOptions() = default;

namespace {
// The class name in messages, by mode enumeration.
const char* legacyClassName(ELegacyImportMode) { return "LegacyImportOptionsImpl"; }
const char* legacyClassName(ELegacyExportMode) { return "LegacyExportOptionsImpl"; }
} // namespace

template <class Interface, class Mode>
LegacyOptionsImpl<Interface, Mode>::~LegacyOptionsImpl() = default;

template <class Interface, class Mode>
const std::wstring& LegacyOptionsImpl<Interface, Mode>::file() const { return m_file; }

template <class Interface, class Mode>
void LegacyOptionsImpl<Interface, Mode>::setFile(const std::wstring& file) { m_file = file; }

template <class Interface, class Mode>
ELengthUnitType LegacyOptionsImpl<Interface, Mode>::insertionUnit() const { return m_insertionUnit; }

template <class Interface, class Mode>
void LegacyOptionsImpl<Interface, Mode>::setInsertionUnit(ELengthUnitType unit) { m_insertionUnit = unit; }

template <class Interface, class Mode>
Mode LegacyOptionsImpl<Interface, Mode>::mode() const { return m_mode; }

template <class Interface, class Mode>
void LegacyOptionsImpl<Interface, Mode>::setMode(Mode mode) { m_mode = mode; }

template <class Interface, class Mode>
template <class Io, class Self>
void LegacyOptionsImpl<Interface, Mode>::members(Io& io, Self& self) {
    io(L"file", self.m_file);
    io(L"insertion_unit", self.m_insertionUnit);
    io(L"mode", self.m_mode);
}

template <class Interface, class Mode>
void LegacyOptionsImpl<Interface, Mode>::readObject(const JsonValue& value) {
    VX_TRACE();
    json::readMembers(value, legacyClassName(Mode()), *this);
}

template <class Interface, class Mode>
void LegacyOptionsImpl<Interface, Mode>::writeObject(JsonValue& value, JsonAllocator& allocator) const {
    VX_TRACE();
    json::writeMembers(value, allocator, *this);
}

template class XCH_API_INSTANTIATION LegacyOptionsImpl<LegacyImportOptions, ELegacyImportMode>;
template class XCH_API_INSTANTIATION LegacyOptionsImpl<LegacyExportOptions, ELegacyExportMode>;

// ---- Command -----------------------------------------------------------------------------

namespace {

template <class T>
const IJsonObject* required(const std::shared_ptr<T>& options, const char* message) {
    if (!options) throw std::invalid_argument(message);
    return options.get();
}

// The option object that `command` writes under "options": null for
// commands without options; a missing object throws.
const IJsonObject* carriedOptions(const Command& command) {
    const bool legacy = command.internalInterface() == LegacyInterface;
    switch (command.type()) {
    case Command::Import:
        return legacy ? required(command.legacyImportOptions(),
                                 "Import(LEGACY) command should contain import options(LEGACY)")
                      : required(command.importOptions(), "Import command should contain import options");
    case Command::Export:
        return legacy ? required(command.legacyExportOptions(),
                                 "Export(LEGACY) command should contain export options(LEGACY)")
                      : required(command.exportOptions(), "Export command should contain export options");
    default:
        return nullptr;
    }
}

// What reading says when a command that needs options has none; null for
// commands without options.
const char* missingOptionsMessage(const Command& command) {
    const bool legacy = command.internalInterface() == LegacyInterface;
    switch (command.type()) {
    case Command::Import:
        return legacy ? "Legacy Import command should contain options." : "Import command should contain options.";
    case Command::Export:
        return legacy ? "Legacy Export command should contain options." : "Export command should contain options.";
    default:
        return nullptr;
    }
}

// Lets the new `options` read `value`, then stores them with `store`.
template <class T>
void readNew(const JsonValue& value, std::shared_ptr<T> options, Command& command,
             void (Command::*store)(const std::shared_ptr<T>&)) {
    options->readObject(value);
    (command.*store)(options);
}

// "options": the option object of an import or export, by interface.
struct CarriedOptionsRule {
    bool write(JsonValue& v, JsonAllocator& a, const Command& command) const {
        const IJsonObject* options = carriedOptions(command);
        if (!options) return false;
        options->writeObject(v, a);
        return true;
    }
    void read(const JsonValue& v, Command& command) const {
        const bool legacy = command.internalInterface() == LegacyInterface;
        if (command.type() == Command::Import && legacy)
            readNew(v, Command::newLegacyImportOptions(), command, &Command::setLegacyImportOptions);
        else if (command.type() == Command::Import)
            readNew(v, Command::newImportOptions(), command, &Command::setImportOptions);
        else if (command.type() == Command::Export && legacy)
            readNew(v, Command::newLegacyExportOptions(), command, &Command::setLegacyExportOptions);
        else if (command.type() == Command::Export)
            readNew(v, Command::newExportOptions(), command, &Command::setExportOptions);
    }
};

} // namespace

template <class Io, class Self>
void Command::members(Io& io, Self& self) {
    io(L"varnex_interface", self.m_internalInterface, json::knownOrZero);
    io(L"command", self.m_type, json::knownOrZero);
    io(L"options", self, CarriedOptionsRule{});
    io(L"mt_mode", self.m_useMultiThreading);
}

Command::~Command() = default;

void Command::setImportOptions(const std::shared_ptr<ImportOptions>& options) {
    if (!std::dynamic_pointer_cast<ImportOptionsImpl>(options))
        throw std::invalid_argument("Command::setImportOptions: wrong implementation of ImportOptions interface.");
    m_importOptions = options;
}

void Command::setExportOptions(const std::shared_ptr<ExportOptions>& options) {
    if (!std::dynamic_pointer_cast<ExportOptionsImpl>(options))
        throw std::invalid_argument("Command::setExportOptions: wrong implementation of ExportOptions interface");
    m_exportOptions = options;
}

void Command::setLegacyImportOptions(const std::shared_ptr<LegacyImportOptions>& options) {
    m_legacyImportOptions = options;
}

void Command::setLegacyExportOptions(const std::shared_ptr<LegacyExportOptions>& options) {
    m_legacyExportOptions = options;
}

std::shared_ptr<ImportOptions> Command::newImportOptions() { return std::make_shared<ImportOptionsImpl>(); }
std::shared_ptr<ExportOptions> Command::newExportOptions() { return std::make_shared<ExportOptionsImpl>(); }

std::shared_ptr<LegacyImportOptions> Command::newLegacyImportOptions() {
    return std::make_shared<LegacyImportOptionsImpl>();
}

std::shared_ptr<LegacyExportOptions> Command::newLegacyExportOptions() {
    return std::make_shared<LegacyExportOptionsImpl>();
}

void Command::writeObject(std::wostream& out) const {
    VX_TRACE();
    json::writeDocument(out, *this);
}

void Command::readObject(std::wistream& in) {
    VX_TRACE();
    JsonDocument doc;
    json::readDocument(in, doc, "Command::readObject: invalid json document");
    json::requireMember(doc, L"command", false, "Command::readObject: json document has no command type.");
    m_internalInterface = UConnectInterface;
    m_type = Unknown;
    m_useMultiThreading = false;
    json::Reader reader(doc);
    members(reader, *this);
    const char* missing = missingOptionsMessage(*this);
    if (missing && !reader.find(L"options")) throw std::invalid_argument(missing);
}

} // namespace xch
