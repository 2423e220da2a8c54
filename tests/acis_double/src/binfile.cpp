// TEST DOUBLE of the ACIS geometry kernel: the value encoding on top of a
// BinaryFile's hooks, and FileInfo.
#include <cstdint>
#include <cstring>

#include "fileinfo.hxx"
#include "internal.hxx"

namespace {

// Tags of the encoded values.
const char LongTag = 'L', RealTag = 'D', StringTag = 'S', IdTag = 'I', PointerTag = 'P';

void put32(unsigned char* out, std::uint32_t value) {
    for (int i = 0; i < 4; ++i) out[i] = static_cast<unsigned char>(value >> (8 * i));
}

std::uint32_t get32(const unsigned char* in) {
    std::uint32_t value = 0;
    for (int i = 0; i < 4; ++i) value |= static_cast<std::uint32_t>(in[i]) << (8 * i);
    return value;
}

} // namespace

FileInterface::~FileInterface() = default;

BinaryFile::BinaryFile() = default;
BinaryFile::~BinaryFile() = default;

void BinaryFile::write_bytes(const void* data, std::size_t length) {
    write(data, length, FALSE);
}

void BinaryFile::read_bytes(void* data, std::size_t length) {
    if (read(data, length, FALSE) != length) sys_error(ACIS_DOUBLE_END_OF_FILE);
}

void BinaryFile::expect_tag(char tag) {
    char found = 0;
    read_bytes(&found, 1);
    if (found != tag) sys_error(ACIS_DOUBLE_BAD_TOKEN);
}

void BinaryFile::write_int32(char tag, long value) {
    unsigned char bytes[5] = {static_cast<unsigned char>(tag)};
    put32(bytes + 1, static_cast<std::uint32_t>(static_cast<std::int32_t>(value)));
    write_bytes(bytes, sizeof bytes);
}

long BinaryFile::read_int32(char tag) {
    expect_tag(tag);
    unsigned char bytes[4];
    read_bytes(bytes, sizeof bytes);
    return static_cast<std::int32_t>(get32(bytes));
}

void BinaryFile::write_long(long value) {
    write_int32(LongTag, value);
}

long BinaryFile::read_long() {
    return read_int32(LongTag);
}

void BinaryFile::write_real(double value) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    unsigned char bytes[9] = {static_cast<unsigned char>(RealTag)};
    put32(bytes + 1, static_cast<std::uint32_t>(bits));
    put32(bytes + 5, static_cast<std::uint32_t>(bits >> 32));
    write_bytes(bytes, sizeof bytes);
}

double BinaryFile::read_real() {
    expect_tag(RealTag);
    unsigned char bytes[8];
    read_bytes(bytes, sizeof bytes);
    const std::uint64_t bits = get32(bytes) | static_cast<std::uint64_t>(get32(bytes + 4)) << 32;
    double value = 0;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

void BinaryFile::write_text(char tag, const char* text) {
    const std::size_t length = std::strlen(text);
    write_int32(tag, static_cast<long>(length));
    write_bytes(text, length);
}

std::string BinaryFile::read_text(char tag) {
    std::size_t left = static_cast<std::uint32_t>(read_int32(tag));
    std::string text;
    char chunk[4096]; // grows only as far as the file really holds
    while (left > 0) {
        const std::size_t n = left < sizeof chunk ? left : sizeof chunk;
        read_bytes(chunk, n);
        text.append(chunk, n);
        left -= n;
    }
    return text;
}

void BinaryFile::write_string(const char* text) {
    write_text(StringTag, text);
}

std::string BinaryFile::read_string() {
    return read_text(StringTag);
}

void BinaryFile::write_id(const char* id) {
    write_text(IdTag, id);
}

std::string BinaryFile::read_id() {
    return read_text(IdTag);
}

void BinaryFile::write_pointer(long index) {
    write_int32(PointerTag, index);
}

long BinaryFile::read_pointer() {
    return read_int32(PointerTag);
}

// ---- FileInfo

FileInfo::FileInfo() = default;

void FileInfo::set_product_id(const char* id) {
    m_productId = id ? id : "";
}

void FileInfo::reset() {
    *this = FileInfo();
}
