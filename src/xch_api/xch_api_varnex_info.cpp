// The translator description document, its formats and third-party cores.
#include <xch_api/xch_api_varnex_info.h>

#include <regex>

#include <logging/vx_link_logger.h>
#include <xch_api/internal/name_pattern.h>
#include <xch_api/internal/protocol_io.h>
#include <xch_api/xch_api_limits.h>

namespace xch {

template <>
const EnumTable<EVarnexInterface>& enumTable<EVarnexInterface>() {
    static const EnumTable<EVarnexInterface> table{
        {UConnectInterface, L"uconnect"}, {ConnectInterface, L"connect"}, {LegacyInterface, L"legacy"}};
    return table;
}

template <>
const EnumTable<EParasolidMode>& enumTable<EParasolidMode>() {
    static const EnumTable<EParasolidMode> table{{ParasolidDirect, L"direct"},
                                                 {ParasolidKernel, L"kernel"}};
    return table;
}

// ---- ThirdpartyCore ------------------------------------------------------------------

template <class Io, class Self>
void ThirdpartyCore::members(Io& io, Self& self) {
    io(L"name", self.m_name);
    io(L"version", self.m_version);
}

ThirdpartyCore::~ThirdpartyCore() = default;

ThirdpartyCore& ThirdpartyCore::setName(const std::wstring& name) {
    m_name = name;
    return *this;
}

ThirdpartyCore& ThirdpartyCore::setVersion(const std::wstring& version) {
    m_version = version;
    return *this;
}

void ThirdpartyCore::readObject(const JsonValue& value) {
    VX_TRACE();
    json::readMembersOrThrow(value, "ThirdpartyCore::readFrom > !jsonObject.IsObject()", *this);
}

void ThirdpartyCore::writeObject(JsonValue& value, JsonAllocator& allocator) const {
    VX_TRACE();
    json::writeMembers(value, allocator, *this);
}

// ---- Format ----------------------------------------------------------------------------

template <class Io, class Self>
void Format::members(Io& io, Self& self) {
    io(L"description", self.m_description);
    io(L"extensions", self.m_extensions);
    io(L"filters", self.m_filterExtensions);
}

Format::~Format() = default;

Format& Format::setDescription(const std::wstring& description) {
    m_description = description;
    return *this;
}

Format& Format::setExtensions(const std::vector<std::wstring>& extensions) {
    if (&extensions != &m_extensions) m_extensions = extensions;
    return *this;
}

Format& Format::setRegex(const std::vector<std::wstring>& regex) {
    if (&regex != &m_regex) m_regex = regex;
    return *this;
}

Format& Format::addExtension(const std::wstring& extension) {
    m_extensions.push_back(extension);
    return *this;
}

Format& Format::addFilterExtensions(const std::wstring& filter) {
    m_filterExtensions.push_back(filter);
    return *this;
}

Format& Format::addRegex(const std::wstring& regex) {
    m_regex.push_back(regex);
    return *this;
}

std::vector<std::wstring> Format::getFilters() const {
    std::vector<std::wstring> filters;
    filters.reserve(m_filterExtensions.size());
    for (const std::wstring& filter : m_filterExtensions)
        filters.push_back(m_description + L"|" + filter);
    return filters;
}

namespace {

// Names up to this length may still go through the standard matcher,
// whose recursion depth grows with the name.
constexpr std::size_t kMaxRecursiveMatchLength = 1024;

// A full match without backtracking or recursion (internal::NamePattern).
// A pattern of the regex list that needs a backreference or a lookahead
// (set by this process, never read from a document) goes to the standard
// matcher, for names short enough for its recursion.
bool fullMatch(const std::wstring& pattern, const std::wstring& text, bool trusted) {
    if (trusted && internal::NamePattern::usesUnsupported(pattern)) {
        std::wregex compiled(pattern, std::regex::ECMAScript);
        return text.size() <= kMaxRecursiveMatchLength && std::regex_match(text, compiled);
    }
    return internal::NamePattern(pattern).fullMatch(text);
}

// A glob pattern as a regular expression: '.' is literal, '*' is any run of
// characters; everything else keeps its regular-expression meaning.
std::wstring globToRegex(const std::wstring& glob) {
    std::wstring regex;
    for (wchar_t c : glob) {
        if (c == L'.')
            regex += L"\\.";
        else if (c == L'*')
            regex += L".*";
        else
            regex += c;
    }
    return regex;
}

// The ';'-separated parts of `filter`, empty parts included.
std::vector<std::wstring> splitFilter(const std::wstring& filter) {
    std::vector<std::wstring> parts;
    std::wstring::size_type start = 0;
    for (;;) {
        std::wstring::size_type end = filter.find(L';', start);
        parts.push_back(filter.substr(start, end - start));
        if (end == std::wstring::npos) return parts;
        start = end + 1;
    }
}

} // namespace

bool Format::is(const std::wstring& fileName) const {
    if (fileName.size() > limits::kMaxMatchedNameLength) return false;
    for (const std::wstring& pattern : m_regex)
        if (fullMatch(pattern, fileName, true)) return true;
    for (const std::wstring& filter : m_filterExtensions)
        for (const std::wstring& glob : splitFilter(filter))
            if (fullMatch(globToRegex(glob), fileName, false)) return true;
    return false;
}

void Format::readObject(const JsonValue& value) {
    VX_TRACE();
    json::readMembersOrThrow(value, "Format::readFrom > !jsonObject.IsObject()", *this);
}

void Format::writeObject(JsonValue& value, JsonAllocator& allocator) const {
    VX_TRACE();
    json::writeMembers(value, allocator, *this);
}

// ---- VarnexInfo ------------------------------------------------------------------------

namespace {

// A list of nested objects written only when it holds something; reading
// appends one new element per object and skips other elements.
struct OptionalObjects {
    template <class T>
    bool write(JsonValue& v, JsonAllocator& a, const T& x) const { return json::optional.write(v, a, x); }
    template <class T>
    void read(const JsonValue& v, T& x) const { json::objectsOnly.read(v, x); }
};
constexpr OptionalObjects optionalObjects{};

template <class T>
T& appendNew(std::vector<std::shared_ptr<T>>& list) {
    list.push_back(std::make_shared<T>());
    return *list.back();
}

// Appends `element`; a null one adds nothing and is logged as
// "VarnexInfo: attempt to add null <what> object.".
template <class T>
void appendSet(std::vector<std::shared_ptr<T>>& list, const std::shared_ptr<T>& element, const char* what) {
    if (element)
        list.push_back(element);
    else
        VX_LOG(vx_link::LevelWarning, "VarnexInfo: attempt to add null " << what << " object.");
}

// Appends the elements of `elements` (which may be `list` itself), each as
// appendSet does.
template <class T>
void appendAll(std::vector<std::shared_ptr<T>>& list, std::vector<std::shared_ptr<T>> elements, const char* what) {
    for (const auto& element : elements) appendSet(list, element, what);
}

} // namespace

template <class Io, class Self>
void VarnexInfo::members(Io& io, Self& self) {
    io(L"name", self.m_name);
    io(L"version", self.m_version);
    io(L"varnex_interface", self.m_requestedInterface, json::knownOrZero);
    io(L"thirdparty_cores", self.m_thirdpartyCores, optionalObjects);
    io(L"parasolid_mode", self.m_parasolidMode, json::knownOrZero);
    io(L"import_formats", self.m_importFormats, optionalObjects);
    io(L"export_formats", self.m_exportFormats, optionalObjects);
    io(L"modeler_version", self.m_modelerMajorVersion);
}

VarnexInfo::~VarnexInfo() = default;

ThirdpartyCore& VarnexInfo::newThirdpartyCore() { return appendNew(m_thirdpartyCores); }
Format& VarnexInfo::newImportFormat() { return appendNew(m_importFormats); }
Format& VarnexInfo::newExportFormat() { return appendNew(m_exportFormats); }

void VarnexInfo::addThirdpartyCore(const std::shared_ptr<ThirdpartyCore>& core) {
    appendSet(m_thirdpartyCores, core, "Thirdparty Core");
}

void VarnexInfo::addImportFormat(const std::shared_ptr<Format>& format) {
    appendSet(m_importFormats, format, "Import Format");
}

void VarnexInfo::addExportFormat(const std::shared_ptr<Format>& format) {
    appendSet(m_exportFormats, format, "Export Format");
}

void VarnexInfo::addImportFormats(const std::vector<std::shared_ptr<Format>>& formats) {
    appendAll(m_importFormats, formats, "Import Format");
}

void VarnexInfo::addExportFormats(const std::vector<std::shared_ptr<Format>>& formats) {
    appendAll(m_exportFormats, formats, "Export Format");
}

void VarnexInfo::writeObject(std::wostream& out) const {
    VX_TRACE();
    json::writeDocument(out, *this);
}

void VarnexInfo::readObject(std::wistream& in) {
    VX_TRACE();
    JsonDocument doc;
    json::readDocument(in, doc, "VarnexInfo::readObject: invalid json document");
    json::Reader reader(doc);
    members(reader, *this);
}

} // namespace xch
