#include <xch_api/xch_api_json_binary_io.h>

#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <vector>

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

template <class T>
void storeLE(unsigned char* out, T value) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof(T));
    for (std::size_t i = 0; i < sizeof(T); ++i)
        out[i] = static_cast<unsigned char>(bits >> (8 * i));
}

template <class T>
T loadLE(const unsigned char* in) {
    std::uint64_t bits = 0;
    for (std::size_t i = 0; i < sizeof(T); ++i)
        bits |= static_cast<std::uint64_t>(in[i]) << (8 * i);
    T value;
    std::memcpy(&value, &bits, sizeof(T));
    return value;
}

// ---- writing ----------------------------------------------------------------

// Appends to a string; counts are patched in place.
class StringSink {
public:
    explicit StringSink(std::string& out) : m_out(out) {}
    std::uint64_t position() const { return m_out.size(); }
    void put(const void* data, std::size_t size) { m_out.append(static_cast<const char*>(data), size); }
    void patch(std::uint64_t at, const unsigned char (&bytes)[8]) {
        std::memcpy(&m_out[static_cast<std::size_t>(at)], bytes, 8);
    }

private:
    std::string& m_out;
};

// Writes to a seekable byte stream; counts are patched by seeking back.
class StreamSink {
public:
    explicit StreamSink(std::ostream& out) : m_out(out) {}
    std::uint64_t position() const { return static_cast<std::uint64_t>(std::streamoff(m_out.tellp())); }
    void put(const void* data, std::size_t size) {
        m_out.write(static_cast<const char*>(data), static_cast<std::streamsize>(size));
    }
    void patch(std::uint64_t at, const unsigned char (&bytes)[8]) {
        auto end = m_out.tellp();
        m_out.seekp(static_cast<std::streamoff>(at));
        put(bytes, 8);
        m_out.seekp(end);
    }

private:
    std::ostream& m_out;
};

template <class Sink>
class Encoder {
public:
    explicit Encoder(Sink& sink) : m_sink(sink) {}

    void value(const JsonValue& v, std::size_t depth) {
        switch (v.GetType()) {
        case rapidjson::kNullType: tag(TagNull); break;
        case rapidjson::kFalseType: tag(TagFalse); break;
        case rapidjson::kTrueType: tag(TagTrue); break;
        case rapidjson::kStringType: string(v.GetString(), v.GetStringLength()); break;
        case rapidjson::kNumberType: number(v); break;
        case rapidjson::kObjectType: {
            std::uint64_t placeholder = open(TagObject, depth);
            for (const auto& member : v.GetObject()) {
                string(member.name.GetString(), member.name.GetStringLength());
                value(member.value, depth + 1);
            }
            close(placeholder);
            break;
        }
        case rapidjson::kArrayType: {
            std::uint64_t placeholder = open(TagArray, depth);
            for (const auto& element : v.GetArray())
                value(element, depth + 1);
            close(placeholder);
            break;
        }
        }
    }

private:
    void tag(Tag t) {
        unsigned char byte = t;
        m_sink.put(&byte, 1);
    }

    template <class T>
    void scalar(Tag t, T x) {
        unsigned char bytes[1 + sizeof(T)];
        bytes[0] = t;
        storeLE(bytes + 1, x);
        m_sink.put(bytes, sizeof bytes);
    }

    void number(const JsonValue& v) {
        if (v.IsInt()) scalar(TagInt32, static_cast<std::int32_t>(v.GetInt()));
        else if (v.IsUint()) scalar(TagUint32, static_cast<std::uint32_t>(v.GetUint()));
        else if (v.IsInt64()) scalar(TagInt64, static_cast<std::int64_t>(v.GetInt64()));
        else if (v.IsUint64()) scalar(TagUint64, static_cast<std::uint64_t>(v.GetUint64()));
        else if (v.IsDouble()) scalar(TagDouble, v.GetDouble());
        else throw std::invalid_argument("JsonBinaryIO: Unknown number type");
    }

    std::uint64_t open(Tag t, std::size_t depth) {
        if (depth >= limits::kMaxJsonDepth)
            throw std::length_error(kTooDeep);
        unsigned char bytes[9] = {t};
        m_sink.put(bytes, sizeof bytes);
        return m_sink.position();
    }

    void close(std::uint64_t afterPlaceholder) {
        unsigned char count[8];
        storeLE(count, m_sink.position() - afterPlaceholder);
        m_sink.patch(afterPlaceholder - 8, count);
    }

    // The string as UTF-16LE code units, converted block by block.
    void string(const wchar_t* text, std::size_t length) {
        std::uint64_t units = length;
        if constexpr (sizeof(wchar_t) == 4) {
            for (std::size_t i = 0; i < length; ++i)
                if (static_cast<std::uint32_t>(text[i]) > 0xFFFF) ++units;
        }
        scalar(TagString, units);

        unsigned char block[8192];
        std::size_t used = 0;
        auto unit = [&](std::uint32_t u) {
            if (used + 2 > sizeof block) {
                m_sink.put(block, used);
                used = 0;
            }
            block[used++] = static_cast<unsigned char>(u);
            block[used++] = static_cast<unsigned char>(u >> 8);
        };
        for (std::size_t i = 0; i < length; ++i) {
            std::uint32_t c = static_cast<std::uint32_t>(text[i]);
            if (sizeof(wchar_t) == 4 && c > 0xFFFF) {
                if (c > 0x10FFFF) c = 0x10FFFF; // not a character; keep the count right
                c -= 0x10000;
                unit(0xD800 + (c >> 10));
                unit(0xDC00 + (c & 0x3FF));
            } else {
                unit(c & 0xFFFF);
            }
        }
        if (used) m_sink.put(block, used);
    }

    Sink& m_sink;
};

// ---- reading ----------------------------------------------------------------

// Bytes from memory.
class SpanSource {
public:
    SpanSource(const char* data, std::size_t size)
        : m_data(reinterpret_cast<const unsigned char*>(data)), m_size(size) {}
    std::uint64_t position() const { return m_pos; }
    std::uint64_t available() const { return m_size - m_pos; }
    // Takes up to `size` bytes; returns how many were taken.
    std::size_t take(unsigned char* out, std::size_t size) {
        std::size_t n = size < m_size - m_pos ? size : m_size - m_pos;
        if (n) std::memcpy(out, m_data + m_pos, n);
        m_pos += n;
        return n;
    }
    // Takes exactly `size` bytes (known to be available) without copying.
    const unsigned char* takeInPlace(std::size_t size, std::vector<unsigned char>&) {
        const unsigned char* at = m_data + m_pos;
        m_pos += size;
        return at;
    }

private:
    const unsigned char* m_data;
    std::size_t m_size;
    std::size_t m_pos = 0;
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
    // Takes exactly `size` bytes (known to be available) into `scratch`.
    const unsigned char* takeInPlace(std::size_t size, std::vector<unsigned char>& scratch) {
        scratch.resize(size);
        if (take(scratch.data(), size) != size)
            throw std::length_error("JsonBinaryIO: Failed to read all the bytes of string");
        return scratch.data();
    }
    std::size_t take(unsigned char* out, std::size_t size) {
        std::size_t done = 0;
        while (done < size) {
            std::streamsize n = m_in.readsome(reinterpret_cast<char*>(out + done),
                                              static_cast<std::streamsize>(size - done));
            if (n <= 0) break;
            done += static_cast<std::size_t>(n);
        }
        m_pos += done;
        return done;
    }

private:
    std::istream& m_in;
    std::uint64_t m_pos = 0;
};

template <class Source>
class Decoder {
public:
    Decoder(Source& source, JsonAllocator& allocator)
        : m_source(source), m_allocator(allocator), m_budget(limits::maxDecodedBytes(source.available())) {}

    void value(JsonValue& out, std::size_t depth) {
        charge(sizeof(JsonValue));
        unsigned char t;
        if (m_source.take(&t, 1) != 1)
            throw std::length_error("JsonBinaryIO: Failed to parse all bytes of type");
        switch (t) {
        case TagNull: out.SetNull(); break;
        case TagFalse: out.SetBool(false); break;
        case TagTrue: out.SetBool(true); break;
        case TagObject: {
            std::uint64_t end = containerEnd(depth);
            out.SetObject();
            while (m_source.position() < end) {
                JsonValue name, member;
                value(name, depth + 1);
                if (!name.IsString())
                    throw std::invalid_argument("JsonBinaryIO: Object member name is not a string");
                value(member, depth + 1);
                out.AddMember(name, member, m_allocator);
            }
            break;
        }
        case TagArray: {
            std::uint64_t end = containerEnd(depth);
            out.SetArray();
            while (m_source.position() < end) {
                JsonValue element;
                value(element, depth + 1);
                out.PushBack(element, m_allocator);
            }
            break;
        }
        case TagString: string(out); break;
        case TagInt32: out.SetInt(number<std::int32_t>()); break;
        case TagUint32: out.SetUint(number<std::uint32_t>()); break;
        case TagInt64: out.SetInt64(number<std::int64_t>()); break;
        case TagUint64: out.SetUint64(number<std::uint64_t>()); break;
        case TagDouble: out.SetDouble(number<double>()); break;
        default: throw std::invalid_argument("JsonBinaryIO: Unknown value type");
        }
    }

private:
    // Counts `bytes` of tree against what the input's size allows.
    void charge(std::uint64_t bytes) {
        if (bytes > m_budget) throw std::length_error(kTooLarge);
        m_budget -= bytes;
    }

    template <class T>
    T number() {
        unsigned char bytes[sizeof(T)];
        if (m_source.take(bytes, sizeof bytes) != sizeof bytes)
            throw std::length_error("JsonBinaryIO: Failed to read all the number of bytes");
        return loadLE<T>(bytes);
    }

    std::uint64_t containerEnd(std::size_t depth) {
        if (depth >= limits::kMaxJsonDepth)
            throw std::length_error(kTooDeep);
        std::uint64_t count = number<std::uint64_t>();
        std::uint64_t position = m_source.position();
        return count > UINT64_MAX - position ? UINT64_MAX : position + count;
    }

    void string(JsonValue& out) {
        std::uint64_t units = number<std::uint64_t>();
        // Checked before anything is allocated from the declared length.
        if (units > m_source.available() / 2)
            throw std::length_error("JsonBinaryIO: Failed to read all the bytes of string");
        if (units > 0xFFFFFFFFu)
            throw std::length_error("JsonBinaryIO: String longer than a JSON value can hold");
        std::size_t count = static_cast<std::size_t>(units);
        charge(units * sizeof(wchar_t));
        const unsigned char* bytes = m_source.takeInPlace(count * 2, m_bytes);
        m_text.resize(count);
        std::size_t length = 0;
        for (std::size_t i = 0; i < count; ++i) {
            std::uint32_t c = bytes[2 * i] | (static_cast<std::uint32_t>(bytes[2 * i + 1]) << 8);
            if (sizeof(wchar_t) == 4 && c >= 0xD800 && c <= 0xDBFF && i + 1 < count) {
                std::uint32_t low = bytes[2 * i + 2] | (static_cast<std::uint32_t>(bytes[2 * i + 3]) << 8);
                if (low >= 0xDC00 && low <= 0xDFFF) {
                    c = 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00);
                    ++i;
                }
            }
            m_text[length++] = static_cast<wchar_t>(c);
        }
        // An empty scratch buffer has no data pointer; rapidjson wants one.
        out.SetString(length ? m_text.data() : L"", static_cast<rapidjson::SizeType>(length), m_allocator);
    }

    Source& m_source;
    JsonAllocator& m_allocator;
    std::uint64_t m_budget;
    std::vector<unsigned char> m_bytes;
    std::vector<wchar_t> m_text;
};

} // namespace

std::ostream& JsonBinaryIO::write(std::ostream& out, const JsonDocument& doc) {
    StreamSink sink(out);
    Encoder<StreamSink>(sink).value(doc, 0);
    return out;
}

void JsonBinaryIO::write(std::string& out, const JsonDocument& doc) {
    StringSink sink(out);
    Encoder<StringSink>(sink).value(doc, 0);
}

std::istream& JsonBinaryIO::read(std::istream& in, JsonDocument& doc) {
    doc.SetNull();
    StreamSource source(in);
    Decoder<StreamSource>(source, doc.GetAllocator()).value(doc, 0);
    return in;
}

std::size_t JsonBinaryIO::read(const char* data, std::size_t size, JsonDocument& doc) {
    doc.SetNull();
    SpanSource source(data, size);
    Decoder<SpanSource>(source, doc.GetAllocator()).value(doc, 0);
    return static_cast<std::size_t>(source.position());
}

} // namespace xch
