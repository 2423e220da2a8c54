// The translator description: what a translator worker is and what it can
// do.
//
// A worker describes itself to its host by one VarnexInfo document: name and
// version, the connection interface it asks the host to use, the external
// translation cores it carries, the modeler version, the Parasolid mode and
// the formats it can import and export. The host matches file names to
// formats with Format::is and fills its file dialogs with
// Format::getFilters.
#pragma once

#include <cstdint>
#include <istream>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include <mp/mp_serializable.h>
#include <xch_api/xch_api_enum_table.h>
#include <xch_api/xch_api_export.h>
#include <xch_api/xch_api_json.h>
#include <xch_api/xch_api_json_object.h>

namespace xch {

// The worker interface a host talks to (key "varnex_interface"). With the
// legacy interface, commands carry the legacy option objects.
enum EVarnexInterface : std::int32_t {
    UConnectInterface = 0,   // "uconnect"
    ConnectInterface = 1,    // "connect"
    LegacyInterface = 2      // "legacy"
};

// How the worker handles Parasolid data (key "parasolid_mode").
enum EParasolidMode : std::int32_t {
    ParasolidDirect = 0,     // "direct"
    ParasolidKernel = 1      // "kernel"
};

// The tables give the strings above. Documents of the protocol read these
// two enumerations by exact match only: a string not in the table means the
// zero value ("uconnect", "direct"), not the table's first string.
template <> XCH_API const EnumTable<EVarnexInterface>& enumTable<EVarnexInterface>();
template <> XCH_API const EnumTable<EParasolidMode>& enumTable<EParasolidMode>();

// An external translation core and its version.
// JSON: {"name": "...", "version": "..."}, both always written.
class XCH_API ThirdpartyCore : public IJsonObject {
public:
    ThirdpartyCore() = default;
    ThirdpartyCore(const ThirdpartyCore&) = default;
    ThirdpartyCore& operator=(const ThirdpartyCore&) = default;
    ~ThirdpartyCore() override;

    const std::wstring& name() const { return m_name; }
    ThirdpartyCore& setName(const std::wstring& name);
    const std::wstring& version() const { return m_version; }
    ThirdpartyCore& setVersion(const std::wstring& version);

    // Throws std::invalid_argument "ThirdpartyCore::readFrom >
    // !jsonObject.IsObject()" when `value` is not an object; string keys
    // are taken only when they hold strings.
    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    std::wstring m_name;
    std::wstring m_version;
};

// A file format: its description, extensions, file-dialog filters (each a
// ';'-separated list of glob patterns such as "*.stp;*.step") and regular
// expressions a file name may match.
// JSON: {"description": "...", "extensions": [...], "filters": [...]}, all
// always written; the regular expressions stay in the process that set
// them.
class XCH_API Format : public IJsonObject {
public:
    Format() = default;
    Format(const Format&) = default;
    Format& operator=(const Format&) = default;
    ~Format() override;

    const std::wstring& description() const { return m_description; }
    const std::vector<std::wstring>& extensions() const { return m_extensions; }
    const std::vector<std::wstring>& filterExtensions() const { return m_filterExtensions; }
    const std::vector<std::wstring>& regex() const { return m_regex; }

    Format& setDescription(const std::wstring& description);
    Format& setExtensions(const std::vector<std::wstring>& extensions);
    Format& setRegex(const std::vector<std::wstring>& regex);
    Format& addExtension(const std::wstring& extension);
    Format& addFilterExtensions(const std::wstring& filter);
    Format& addRegex(const std::wstring& regex);

    // One "<description>|<filter>" string per filter, for file dialogs.
    std::vector<std::wstring> getFilters() const;

    // Whether `fileName` (the whole string) belongs to this format:
    //  1. the regular expressions (ECMAScript, case-sensitive), in order;
    //  2. the glob patterns of every filter, in order, where '.' is literal
    //     and '*' matches any run of characters (also across directory
    //     separators); other characters keep their regular-expression
    //     meaning.
    // The first full match wins; the extensions play no part. A regular
    // expression that does not compile throws std::regex_error.
    // Filters come from another process: they are matched without
    // backtracking or recursion, in time bounded by the name's length
    // times the pattern's size, so that no filter can hang or crash the
    // caller. Backreferences and lookaheads are not available in filters
    // (std::regex_error), nor are patterns that compile to more than a few
    // thousand instructions. Names longer than
    // limits::kMaxMatchedNameLength match nothing; a regex-list pattern
    // that needs a backreference or lookahead matches only names of up to
    // 1,024 characters.
    bool is(const std::wstring& fileName) const;

    // Throws std::invalid_argument "Format::readFrom >
    // !jsonObject.IsObject()" when `value` is not an object. "extensions"
    // and "filters" append their string elements to what is held.
    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    std::wstring m_description;
    std::vector<std::wstring> m_extensions;
    std::vector<std::wstring> m_filterExtensions;
    std::vector<std::wstring> m_regex;
};

// The translator description document. Copies share their Format and
// ThirdpartyCore objects.
//
// JSON, in this order: "name", "version", "varnex_interface",
// "thirdparty_cores" (only when non-empty), "parasolid_mode",
// "import_formats", "export_formats" (each only when non-empty),
// "modeler_version". Reading keeps a field whose key is missing or
// mistyped, appends the cores and formats read to those already held
// (skipping elements that are not objects), and reads the two enumerations
// by exact match (anything else gives 0).
class XCH_API VarnexInfo : public mp::ISerializable {
public:
    VarnexInfo() = default;
    VarnexInfo(const VarnexInfo&) = default;
    VarnexInfo& operator=(const VarnexInfo&) = default;
    ~VarnexInfo() override;

    const std::wstring& name() const { return m_name; }
    void setName(const std::wstring& name) { m_name = name; }
    const std::wstring& version() const { return m_version; }
    void setVersion(const std::wstring& version) { m_version = version; }
    EVarnexInterface requestedInterface() const { return m_requestedInterface; }
    void setRequestedInterface(EVarnexInterface value) { m_requestedInterface = value; }
    EParasolidMode parasolidMode() const { return m_parasolidMode; }
    void setParasolidMode(EParasolidMode mode) { m_parasolidMode = mode; }
    std::int32_t modelerMajorVersion() const { return m_modelerMajorVersion; }
    void setModelerMajorVersion(std::int32_t version) { m_modelerMajorVersion = version; }

    const std::vector<std::shared_ptr<ThirdpartyCore>>& thirdpartyCores() const { return m_thirdpartyCores; }
    const std::vector<std::shared_ptr<Format>>& importFormats() const { return m_importFormats; }
    const std::vector<std::shared_ptr<Format>>& exportFormats() const { return m_exportFormats; }

    // Append a new default object and return it for filling in place.
    ThirdpartyCore& newThirdpartyCore();
    Format& newImportFormat();
    Format& newExportFormat();

    // Append the given objects (shared, not copied); each null pointer adds
    // nothing and logs the warning "VarnexInfo: attempt to add null Import
    // Format object." (Export Format, Thirdparty Core).
    void addThirdpartyCore(const std::shared_ptr<ThirdpartyCore>& core);
    void addImportFormat(const std::shared_ptr<Format>& format);
    void addExportFormat(const std::shared_ptr<Format>& format);
    void addImportFormats(const std::vector<std::shared_ptr<Format>>& formats);
    void addExportFormats(const std::vector<std::shared_ptr<Format>>& formats);

    // Writes the document as JSON text; a writer failure throws
    // std::runtime_error "Cannot write object into json document".
    void writeObject(std::wostream& out) const override;
    // Reads the whole stream as one document; a root that is not an object
    // throws std::invalid_argument "VarnexInfo::readObject: invalid json
    // document". A Format or core element that is not an object is skipped.
    void readObject(std::wistream& in) override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    std::wstring m_name;
    std::wstring m_version;
    EVarnexInterface m_requestedInterface = UConnectInterface;
    std::vector<std::shared_ptr<ThirdpartyCore>> m_thirdpartyCores;
    EParasolidMode m_parasolidMode = ParasolidDirect;
    std::vector<std::shared_ptr<Format>> m_importFormats;
    std::vector<std::shared_ptr<Format>> m_exportFormats;
    std::int32_t m_modelerMajorVersion = 31;
};

} // namespace xch
