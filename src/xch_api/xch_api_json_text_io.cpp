#include <xch_api/xch_api_json_text_io.h>

#include <fstream>
#include <stdexcept>

#include <rapidjson/prettywriter.h>
#include <rapidjson/writer.h>

#include <logging/vx_link_logger.h>
#include <xch_api/internal/json_text_source.h>
#include <xch_api/internal/platform.h>
#include <xch_api/xch_api_limits.h>

namespace xch {

namespace {

const char* const kWriteFailed = "Cannot write object into json document";

// rapidjson output stream that appends to a wide string: documents are
// rendered completely before any character reaches the caller's stream.
class WideStringSink {
public:
    using Ch = wchar_t;
    explicit WideStringSink(std::wstring& out) : m_out(out) {}
    void Put(Ch c) { m_out.push_back(c); }
    void Flush() {}

private:
    std::wstring& m_out;
};

// The whole of `in`, read in blocks.
std::wstring readAll(std::wistream& in) {
    std::wstring text;
    std::wstreambuf* buffer = in.rdbuf();
    if (!buffer) return text;
    const std::streamsize available = buffer->in_avail();
    text.resize(available > 0 ? static_cast<std::size_t>(available) + 1 : 4096);
    std::size_t used = 0;
    for (;;) {
        if (used == text.size()) text.resize(2 * text.size());
        const std::streamsize n = buffer->sgetn(&text[used], static_cast<std::streamsize>(text.size() - used));
        if (n <= 0) break;
        used += static_cast<std::size_t>(n);
    }
    text.resize(used);
    return text;
}

// Emits `value` into `writer` as GenericValue::Accept does, but refuses to
// descend beyond limits::kMaxJsonDepth.
template <class W>
bool emit(W& writer, const JsonValue& value, std::size_t depth) {
    switch (value.GetType()) {
    case rapidjson::kNullType: return writer.Null();
    case rapidjson::kFalseType: return writer.Bool(false);
    case rapidjson::kTrueType: return writer.Bool(true);
    case rapidjson::kStringType:
        return writer.String(value.GetString(), value.GetStringLength());
    case rapidjson::kNumberType:
        if (value.IsDouble()) return writer.Double(value.GetDouble());
        if (value.IsInt()) return writer.Int(value.GetInt());
        if (value.IsUint()) return writer.Uint(value.GetUint());
        if (value.IsInt64()) return writer.Int64(value.GetInt64());
        return writer.Uint64(value.GetUint64());
    case rapidjson::kObjectType:
        if (depth >= limits::kMaxJsonDepth || !writer.StartObject()) return false;
        for (const auto& member : value.GetObject()) {
            if (!writer.Key(member.name.GetString(), member.name.GetStringLength()) ||
                !emit(writer, member.value, depth + 1))
                return false;
        }
        return writer.EndObject(value.MemberCount());
    case rapidjson::kArrayType:
        if (depth >= limits::kMaxJsonDepth || !writer.StartArray()) return false;
        for (const auto& element : value.GetArray())
            if (!emit(writer, element, depth + 1)) return false;
        return writer.EndArray(value.Size());
    }
    return false;
}

template <class Stream>
bool render(Stream& stream, const JsonDocument& doc, bool pretty) {
    if (pretty) {
        rapidjson::PrettyWriter<Stream, JsonEncoding, JsonEncoding, JsonHeapAllocator> writer(stream);
        writer.SetIndent(L' ', 2);
        writer.SetFormatOptions(rapidjson::kFormatSingleLineArray);
        return emit(writer, doc, 0);
    }
    rapidjson::Writer<Stream, JsonEncoding, JsonEncoding, JsonHeapAllocator> writer(stream);
    return emit(writer, doc, 0);
}

} // namespace

std::wostream& JsonTextIO::write(std::wostream& out, const JsonDocument& doc, bool pretty) {
    std::wstring text;
    WideStringSink sink(text);
    if (!render(sink, doc, pretty))
        throw std::runtime_error(kWriteFailed);
    out.write(text.data(), static_cast<std::streamsize>(text.size()));
    if (!out)
        throw std::runtime_error(kWriteFailed);
    return out;
}

std::wistream& JsonTextIO::read(std::wistream& in, JsonDocument& doc) {
    const std::wstring text = readAll(in);
    doc.SetNull();
    json::GuardedTextSource source(text.data(), text.size());
    doc.ParseStream<rapidjson::kParseFullPrecisionFlag, JsonEncoding>(source);
    if (source.tooDeep())
        VX_LOG(vx_link::LevelError, "JsonTextIO: JSON text is nested deeper than "
                                        << limits::kMaxJsonDepth << " levels.");
    return in;
}

void JsonTextIO::writeToFile(const JsonDocument& doc, const std::wstring& path) {
    std::wstring text;
    WideStringSink sink(text);
    if (!render(sink, doc, true))
        throw std::runtime_error(kWriteFailed);
    std::string bytes = platform::toNarrow(text);
    // Text mode: line ends become the platform's own (CRLF on Windows).
    std::ofstream file(platform::toNarrow(path), std::ios::out | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
}

void JsonTextIO::writeToFile(const IJsonObject& object, const std::wstring& path) {
    JsonDocument doc;
    object.writeObject(doc, doc.GetAllocator());
    writeToFile(doc, path);
}

} // namespace xch
