#include <xch_api/xch_api_json_binary_io.h>

#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <vector>

#include <xch_api/internal/byte_order.h>
#include <xch_api/internal/utf16_units.h>
#include <xch_api/xch_api_limits.h>

namespace xch {

namespace {

enum Tag : std::uint8_t {
    TagNull = 0x00,
    TagFalse = 0x01,
    TagTrue = 0x02,
    TagObject = 0x03,
    TagArray = 0x04,
    TagString = 0x05,
    TagInt32 = 0x06,
    TagUint32 = 0x07,
    TagInt64 = 0x08,
    TagUint64 = 0x09,
    TagDouble = 0x0A
};

const char* const kTooDeep = "JsonBinaryIO: Nesting deeper than the depth limit";
const char* const kTooLarge = "JsonBinaryIO: Decoded document larger than the limit for its encoded size";
const char* const kNoType = "JsonBinaryIO: Failed to parse all bytes of type";
const char* const kShortNumber = "JsonBinaryIO: Failed to read all the number of bytes";
const char* const kShortString = "JsonBinaryIO: Failed to read all the bytes of string";

// ---- writing ----------------------------------------------------------------
//
// Two passes over the tree: the first measures the encoding exactly (and
// refuses what cannot be written before anything is), the second writes
// into memory sized once, with no bounds checks per value. Object and array
// byte counts are patched in place when each closes.

// The encoded size of a number, or 0 when it has none of the five forms.
std::uint64_t numberSize(const JsonValue& v) {
    if (v.IsInt() || v.IsUint()) return 5;
    if (v.IsInt64() || v.IsUint64() || v.IsDouble()) return 9;
    return 0;
}

std::uint64_t measure(const JsonValue& v, std::size_t depth) {
    switch (v.GetType()) {
    case rapidjson::kNullType:
    case rapidjson::kFalseType:
    case rapidjson::kTrueType: return 1;
    case rapidjson::kStringType: return 9 + 2 * std::uint64_t(utf16::unitCount(v.GetString(), v.GetStringLength()));
    case rapidjson::kNumberType: {
        const std::uint64_t size = numberSize(v);
        if (!size) throw std::invalid_argument("JsonBinaryIO: Unknown number type");
        return size;
    }
    case rapidjson::kObjectType: {
        if (depth >= limits::kMaxJsonDepth) throw std::length_error(kTooDeep);
        std::uint64_t size = 9;
        for (const auto& member : v.GetObject()) {
            size += 9 + 2 * std::uint64_t(utf16::unitCount(member.name.GetString(), member.name.GetStringLength()));
            size += measure(member.value, depth + 1);
        }
        return size;
    }
    case rapidjson::kArrayType: {
        if (depth >= limits::kMaxJsonDepth) throw std::length_error(kTooDeep);
        std::uint64_t size = 9;
        for (const auto& element : v.GetArray()) size += measure(element, depth + 1);
        return size;
    }
    }
    return 0; // a value of no known kind writes nothing
}

class Encoder {
public:
    explicit Encoder(unsigned char* out) : m_p(out) {}

    unsigned char* end() const { return m_p; }

    void value(const JsonValue& v) {
        switch (v.GetType()) {
        case rapidjson::kNullType: *m_p++ = TagNull; break;
        case rapidjson::kFalseType: *m_p++ = TagFalse; break;
        case rapidjson::kTrueType: *m_p++ = TagTrue; break;
        case rapidjson::kStringType: string(v.GetString(), v.GetStringLength()); break;
        case rapidjson::kNumberType: number(v); break;
        case rapidjson::kObjectType: {
            unsigned char* count = open(TagObject);
            for (const auto& member : v.GetObject()) {
                string(member.name.GetString(), member.name.GetStringLength());
                value(member.value);
            }
            close(count);
            break;
        }
        case rapidjson::kArrayType: {
            unsigned char* count = open(TagArray);
            for (const auto& element : v.GetArray()) value(element);
            close(count);
            break;
        }
        }
    }

private:
    template <class T>
    void scalar(Tag t, T x) {
        *m_p = t;
        bytes::storeLE(m_p + 1, x);
        m_p += 1 + sizeof(T);
    }

    // The first of int32, uint32, int64, uint64, double that holds the value.
    void number(const JsonValue& v) {
        if (v.IsInt()) scalar(TagInt32, static_cast<std::int32_t>(v.GetInt()));
        else if (v.IsUint()) scalar(TagUint32, static_cast<std::uint32_t>(v.GetUint()));
        else if (v.IsInt64()) scalar(TagInt64, static_cast<std::int64_t>(v.GetInt64()));
        else if (v.IsUint64()) scalar(TagUint64, static_cast<std::uint64_t>(v.GetUint64()));
        else scalar(TagDouble, v.GetDouble());
    }

    unsigned char* open(Tag t) {
        *m_p = t;
        m_p += 9;
        return m_p - 8;
    }

    void close(unsigned char* count) { bytes::storeLE(count, static_cast<std::uint64_t>(m_p - (count + 8))); }

    void string(const wchar_t* text, std::size_t length) {
        const std::size_t units = utf16::unitCount(text, length);
        scalar(TagString, static_cast<std::uint64_t>(units));
        utf16::store(m_p, text, length, units);
        m_p += 2 * units;
    }

    unsigned char* m_p;
};

// ---- reading ----------------------------------------------------------------
//
// The decoded values go onto the document's own parse stack and are moved
// into place when their array or object closes (the document's SAX handler
// interface, as its text parser does): every array and object is allocated
// once at its final size.

// Bytes from memory.
class SpanSource {
public:
    SpanSource(const char* data, std::size_t size)
        : m_begin(reinterpret_cast<const unsigned char*>(data)), m_p(m_begin), m_end(m_begin + size) {}
    std::uint64_t position() const { return static_cast<std::uint64_t>(m_p - m_begin); }
    std::uint64_t available() const { return static_cast<std::uint64_t>(m_end - m_p); }
    // The next `size` bytes, or null when fewer remain.
    const unsigned char* take(std::size_t size) {
        if (static_cast<std::size_t>(m_end - m_p) < size) return nullptr;
        const unsigned char* at = m_p;
        m_p += size;
        return at;
    }

private:
    const unsigned char* m_begin;
    const unsigned char* m_p;
    const unsigned char* m_end;
};

// Bytes that an in-memory stream has available.
class StreamSource {
public:
    explicit StreamSource(std::istream& in) : m_in(in) {}
    std::uint64_t position() const { return m_pos; }
    std::uint64_t available() const {
        std::streamsize n = m_in.rdbuf() ? m_in.rdbuf()->in_avail() : 0;
        return n > 0 ? static_cast<std::uint64_t>(n) : 0;
    }
    const unsigned char* take(std::size_t size) {
        if (m_scratch.size() < size) m_scratch.resize(size);
        std::size_t done = 0;
        while (done < size) {
            std::streamsize n = m_in.readsome(reinterpret_cast<char*>(m_scratch.data() + done),
                                              static_cast<std::streamsize>(size - done));
            if (n <= 0) break;
            done += static_cast<std::size_t>(n);
        }
        m_pos += done;
        return done == size ? m_scratch.data() : nullptr;
    }

private:
    std::istream& m_in;
    std::uint64_t m_pos = 0;
    std::vector<unsigned char> m_scratch;
};

// Generator for JsonDocument::Populate: sends the decoded values to the
// document's handler.
template <class Source>
class Decoder {
public:
    explicit Decoder(Source& source) : m_source(source), m_budget(limits::maxDecodedBytes(source.available())) {}

    bool operator()(JsonDocument& handler) {
        value(handler, 0);
        return true;
    }

private:
    void value(JsonDocument& h, std::size_t depth) {
        const unsigned char* t = m_source.take(1);
        if (!t) throw std::length_error(kNoType);
        valueAfterTag(h, *t, depth);
    }

    void valueAfterTag(JsonDocument& h, unsigned char tag, std::size_t depth) {
        charge(sizeof(JsonValue));
        switch (tag) {
        case TagNull: h.Null(); break;
        case TagFalse: h.Bool(false); break;
        case TagTrue: h.Bool(true); break;
        case TagObject: {
            const std::uint64_t end = containerEnd(depth);
            h.StartObject();
            std::uint64_t members = 0;
            while (m_source.position() < end) {
                name(h, depth + 1);
                value(h, depth + 1);
                ++members;
            }
            h.EndObject(count(members));
            break;
        }
        case TagArray: {
            const std::uint64_t end = containerEnd(depth);
            h.StartArray();
            std::uint64_t elements = 0;
            while (m_source.position() < end) {
                value(h, depth + 1);
                ++elements;
            }
            h.EndArray(count(elements));
            break;
        }
        case TagString: string(h); break;
        case TagInt32: h.Int(number<std::int32_t>()); break;
        case TagUint32: h.Uint(number<std::uint32_t>()); break;
        case TagInt64: h.Int64(number<std::int64_t>()); break;
        case TagUint64: h.Uint64(number<std::uint64_t>()); break;
        case TagDouble: h.Double(number<double>()); break;
        default: throw std::invalid_argument("JsonBinaryIO: Unknown value type");
        }
    }

    // A member name: a string value. Any other value is decoded first (so
    // that its own faults are reported as such) and then refused.
    void name(JsonDocument& h, std::size_t depth) {
        const unsigned char* t = m_source.take(1);
        if (!t) throw std::length_error(kNoType);
        const unsigned char tag = *t;
        valueAfterTag(h, tag, depth);
        if (tag != TagString) throw std::invalid_argument("JsonBinaryIO: Object member name is not a string");
    }

    void charge(std::uint64_t bytes) {
        if (bytes > m_budget) throw std::length_error(kTooLarge);
        m_budget -= bytes;
    }

    static rapidjson::SizeType count(std::uint64_t n) {
        if (n > 0xFFFFFFFFu) throw std::length_error(kTooLarge);
        return static_cast<rapidjson::SizeType>(n);
    }

    template <class T>
    T number() {
        const unsigned char* bytes = m_source.take(sizeof(T));
        if (!bytes) throw std::length_error(kShortNumber);
        return bytes::loadLE<T>(bytes);
    }

    std::uint64_t containerEnd(std::size_t depth) {
        if (depth >= limits::kMaxJsonDepth) throw std::length_error(kTooDeep);
        const std::uint64_t count = number<std::uint64_t>();
        const std::uint64_t position = m_source.position();
        return count > UINT64_MAX - position ? UINT64_MAX : position + count;
    }

    void string(JsonDocument& h) {
        const std::uint64_t units = number<std::uint64_t>();
        // Checked before anything is allocated from the declared length.
        if (units > m_source.available() / 2) throw std::length_error(kShortString);
        if (units > 0xFFFFFFFFu) throw std::length_error("JsonBinaryIO: String longer than a JSON value can hold");
        charge(units * sizeof(wchar_t));
        const std::size_t n = static_cast<std::size_t>(units);
        const unsigned char* bytes = m_source.take(2 * n);
        if (!bytes) throw std::length_error(kShortString);
        if (m_text.size() < n + 1) m_text.resize(n + 1);
        const std::size_t length = utf16::load(m_text.data(), bytes, n);
        h.String(m_text.data(), static_cast<rapidjson::SizeType>(length), true);
    }

    Source& m_source;
    std::uint64_t m_budget;
    std::vector<wchar_t> m_text;
};

template <class Source>
void decode(Source& source, JsonDocument& doc) {
    doc.SetNull();
    Decoder<Source> decoder(source);
    doc.Populate(decoder);
}

} // namespace

std::ostream& JsonBinaryIO::write(std::ostream& out, const JsonDocument& doc) {
    std::string bytes;
    write(bytes, doc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return out;
}

void JsonBinaryIO::write(std::string& out, const JsonDocument& doc) {
    const std::uint64_t size = measure(doc, 0);
    if (size > out.max_size() - out.size()) throw std::length_error("JsonBinaryIO: Encoding larger than memory");
    const std::size_t start = out.size();
    out.resize(start + static_cast<std::size_t>(size));
    Encoder encoder(reinterpret_cast<unsigned char*>(&out[0]) + start);
    encoder.value(doc);
}

std::istream& JsonBinaryIO::read(std::istream& in, JsonDocument& doc) {
    StreamSource source(in);
    decode(source, doc);
    return in;
}

std::size_t JsonBinaryIO::read(const char* data, std::size_t size, JsonDocument& doc) {
    SpanSource source(data, size);
    decode(source, doc);
    return static_cast<std::size_t>(source.position());
}

} // namespace xch
