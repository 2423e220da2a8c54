#include <xch_api/xch_api_json_binary_io.h>

#include <cstdint>
#include <cstring>
#include <memory>
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
// One pass over the tree straight into the output string, which grows
// geometrically; each value makes sure of its room once. Object and array
// byte counts are patched in place when each closes.

class Encoder {
public:
    Encoder(std::string& out, std::size_t start) : m_out(out), m_start(start) {}

    // Trims the output to what was written.
    void finish() { m_out.resize(m_start + used()); }

    void value(const JsonValue& v, std::size_t depth) {
        switch (v.GetType()) {
        case rapidjson::kNullType: tag(TagNull); break;
        case rapidjson::kFalseType: tag(TagFalse); break;
        case rapidjson::kTrueType: tag(TagTrue); break;
        case rapidjson::kStringType: string(v.GetString(), v.GetStringLength()); break;
        case rapidjson::kNumberType: number(v); break;
        case rapidjson::kObjectType: {
            const std::size_t count = open(TagObject, depth);
            for (const auto& member : v.GetObject()) {
                string(member.name.GetString(), member.name.GetStringLength());
                value(member.value, depth + 1);
            }
            close(count);
            break;
        }
        case rapidjson::kArrayType: {
            const std::size_t count = open(TagArray, depth);
            for (const auto& element : v.GetArray()) value(element, depth + 1);
            close(count);
            break;
        }
        }
    }

private:
    std::size_t used() const { return static_cast<std::size_t>(m_p - m_base); }

    void ensure(std::size_t n) {
        if (static_cast<std::size_t>(m_end - m_p) < n) grow(n);
    }

    void grow(std::size_t n) {
        const std::size_t used = this->used();
        std::size_t capacity = 2 * static_cast<std::size_t>(m_end - m_base);
        if (capacity < used + n) capacity = used + n + 4096;
        m_out.resize(m_start + capacity);
        m_base = reinterpret_cast<unsigned char*>(&m_out[0]) + m_start;
        m_p = m_base + used;
        m_end = m_base + capacity;
    }

    void tag(Tag t) {
        ensure(1);
        *m_p++ = t;
    }

    template <class T>
    void scalar(Tag t, T x) {
        ensure(1 + sizeof(T));
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
        else if (v.IsDouble()) scalar(TagDouble, v.GetDouble());
        else throw std::invalid_argument("JsonBinaryIO: Unknown number type");
    }

    // Writes the tag and room for the byte count; returns where the count goes.
    std::size_t open(Tag t, std::size_t depth) {
        if (depth >= limits::kMaxJsonDepth) throw std::length_error(kTooDeep);
        ensure(9);
        *m_p = t;
        m_p += 9;
        return used() - 8;
    }

    void close(std::size_t count) {
        bytes::storeLE(m_base + count, static_cast<std::uint64_t>(used() - (count + 8)));
    }

    void string(const wchar_t* text, std::size_t length) {
        ensure(9 + 2 * length);
        std::size_t units = length;
        if (!utf16::storeSingleUnits(m_p + 9, text, length)) { // characters beyond the basic plane
            units = utf16::unitCount(text, length);
            ensure(9 + 2 * units);
            utf16::store(m_p + 9, text, length);
        }
        *m_p = TagString;
        bytes::storeLE(m_p + 1, static_cast<std::uint64_t>(units));
        m_p += 9 + 2 * units;
    }

    std::string& m_out;
    const std::size_t m_start;
    unsigned char* m_base = nullptr;
    unsigned char* m_p = nullptr;
    unsigned char* m_end = nullptr;
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
        if (m_textRoom < n + 1) {  // grown, never cleared: every character used is written first
            m_text.reset(new wchar_t[n + 1]);
            m_textRoom = n + 1;
        }
        const std::size_t length = utf16::load(m_text.get(), bytes, n);
        h.String(m_text.get(), static_cast<rapidjson::SizeType>(length), true);
    }

    Source& m_source;
    std::uint64_t m_budget;
    std::unique_ptr<wchar_t[]> m_text;
    std::size_t m_textRoom = 0;
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
    const std::size_t start = out.size();
    Encoder encoder(out, start);
    try {
        encoder.value(doc, 0);
    } catch (...) {
        out.resize(start); // nothing of a refused document stays
        throw;
    }
    encoder.finish();
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
