#include <xch_api/xch_api_json_text_io.h>

#include <fstream>
#include <stdexcept>

#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <logging/vx_link_logger.h>
#include <xch_api/internal/platform.h>
#include <xch_api/xch_api_limits.h>

namespace xch {

namespace {

const char* const kWriteFailed = "Cannot write object into json document";

// rapidjson output stream that buffers characters and hands them to a wide
// stream in blocks, so that large documents are not copied as a whole.
class WideStreamSink {
public:
    using Ch = wchar_t;
    explicit WideStreamSink(std::wostream& out) : m_out(out) {}
    ~WideStreamSink() { Flush(); }
    void Put(Ch c) {
        if (m_used == kSize) Flush();
        m_buffer[m_used++] = c;
    }
    void Flush() {
        if (m_used) m_out.write(m_buffer, static_cast<std::streamsize>(m_used));
        m_used = 0;
    }

private:
    static constexpr std::size_t kSize = 4096;
    std::wostream& m_out;
    Ch m_buffer[kSize];
    std::size_t m_used = 0;
};

// rapidjson input stream over a wide stream buffer. It follows string
// state so that it can see the nesting depth, and reports end of input when
// an array or object would open beyond limits::kMaxJsonDepth: the parse then
// fails instead of recursing without bound.
class DepthLimitedSource {
public:
    using Ch = wchar_t;
    explicit DepthLimitedSource(std::wstreambuf* buffer) : m_buffer(buffer) {}

    Ch Peek() const {
        if (m_tooDeep || !m_buffer) return 0;
        auto c = m_buffer->sgetc();
        if (c == std::wstreambuf::traits_type::eof()) return 0;
        Ch ch = std::wstreambuf::traits_type::to_char_type(c);
        if (!m_inString && (ch == L'{' || ch == L'[') && m_depth >= limits::kMaxJsonDepth) {
            m_tooDeep = true;
            return 0;
        }
        return ch;
    }

    Ch Take() {
        Ch ch = Peek();
        if (ch == 0) return 0;
        m_buffer->sbumpc();
        ++m_count;
        follow(ch);
        return ch;
    }

    std::size_t Tell() const { return m_count; }
    bool tooDeep() const { return m_tooDeep; }

    // Not used for reading; required by the stream concept.
    Ch* PutBegin() { return nullptr; }
    void Put(Ch) {}
    void Flush() {}
    std::size_t PutEnd(Ch*) { return 0; }

private:
    void follow(Ch ch) {
        if (m_inString) {
            if (m_escaped) m_escaped = false;
            else if (ch == L'\\') m_escaped = true;
            else if (ch == L'"') m_inString = false;
            return;
        }
        switch (ch) {
        case L'"': m_inString = true; break;
        case L'{': case L'[': ++m_depth; break;
        case L'}': case L']': if (m_depth) --m_depth; break;
        default: break;
        }
    }

    std::wstreambuf* m_buffer;
    std::size_t m_count = 0;
    std::size_t m_depth = 0;
    bool m_inString = false;
    bool m_escaped = false;
    mutable bool m_tooDeep = false;
};

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
        rapidjson::PrettyWriter<Stream, JsonEncoding, JsonEncoding> writer(stream);
        writer.SetIndent(L' ', 2);
        writer.SetFormatOptions(rapidjson::kFormatSingleLineArray);
        return emit(writer, doc, 0);
    }
    rapidjson::Writer<Stream, JsonEncoding, JsonEncoding> writer(stream);
    return emit(writer, doc, 0);
}

} // namespace

std::wostream& JsonTextIO::write(std::wostream& out, const JsonDocument& doc, bool pretty) {
    bool ok;
    {
        WideStreamSink sink(out);
        ok = render(sink, doc, pretty);
    }
    if (!ok || !out)
        throw std::runtime_error(kWriteFailed);
    return out;
}

std::wistream& JsonTextIO::read(std::wistream& in, JsonDocument& doc) {
    doc.SetNull();
    DepthLimitedSource source(in.rdbuf());
    doc.ParseStream<rapidjson::kParseDefaultFlags, JsonEncoding>(source);
    if (source.tooDeep())
        VX_LOG(vx_link::LevelError, "JsonTextIO: JSON text is nested deeper than "
                                        << limits::kMaxJsonDepth << " levels.");
    return in;
}

void JsonTextIO::writeToFile(const JsonDocument& doc, const std::wstring& path) {
    rapidjson::GenericStringBuffer<JsonEncoding> text;
    if (!render(text, doc, true))
        throw std::runtime_error(kWriteFailed);
    std::string bytes = platform::toNarrow(text.GetString(), text.GetSize() / sizeof(wchar_t));
    std::ofstream file(platform::toNarrow(path), std::ios::out | std::ios::trunc | std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
}

void JsonTextIO::writeToFile(const IJsonObject& object, const std::wstring& path) {
    JsonDocument doc;
    object.writeObject(doc, doc.GetAllocator());
    writeToFile(doc, path);
}

} // namespace xch
