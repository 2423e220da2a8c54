#include "whole_buffer_deflate.h"

#include <algorithm>
#include <limits>
#include <new>
#include <stdexcept>

#include <zlib.h>

#if defined(XCH_HAVE_LIBDEFLATE)
#  include <libdeflate.h>
#endif

namespace xch {
namespace whole_buffer_deflate {

#if defined(XCH_HAVE_LIBDEFLATE)

namespace {

libdeflate_compressor* compressorOf(void* c) { return static_cast<libdeflate_compressor*>(c); }
libdeflate_decompressor* decompressorOf(void* d) { return static_cast<libdeflate_decompressor*>(d); }

} // namespace

bool available() { return true; }

Deflater::Deflater(int level) : m_compressor(libdeflate_alloc_compressor(level)) {
    if (!m_compressor) throw std::runtime_error("deflate init failed");
}

Deflater::~Deflater() {
    if (m_compressor) libdeflate_free_compressor(compressorOf(m_compressor));
}

std::size_t Deflater::bound(Wrapper wrapper, std::size_t size) const {
    libdeflate_compressor* c = compressorOf(m_compressor);
    switch (wrapper) {
    case Wrapper::Gzip: return libdeflate_gzip_compress_bound(c, size);
    case Wrapper::Zlib: return libdeflate_zlib_compress_bound(c, size);
    case Wrapper::Raw: break;
    }
    return libdeflate_deflate_compress_bound(c, size);
}

std::size_t Deflater::compress(Wrapper wrapper, const char* data, std::size_t size, char* dest,
                               std::size_t room) const {
    libdeflate_compressor* c = compressorOf(m_compressor);
    switch (wrapper) {
    case Wrapper::Gzip: return libdeflate_gzip_compress(c, data, size, dest, room);
    case Wrapper::Zlib: return libdeflate_zlib_compress(c, data, size, dest, room);
    case Wrapper::Raw: break;
    }
    return libdeflate_deflate_compress(c, data, size, dest, room);
}

Inflater::Inflater() : m_decompressor(libdeflate_alloc_decompressor()) {
    if (!m_decompressor) throw std::bad_alloc();
}

Inflater::~Inflater() {
    if (m_decompressor) libdeflate_free_decompressor(decompressorOf(m_decompressor));
}

bool Inflater::inflate(Wrapper wrapper, const char* data, std::size_t size, char* dest, std::size_t room,
                       std::size_t& written, std::size_t& consumed) const {
    libdeflate_decompressor* d = decompressorOf(m_decompressor);
    char none = 0;
    if (room == 0) dest = &none;
    consumed = 0;
    written = 0;
    libdeflate_result result = LIBDEFLATE_BAD_DATA;
    switch (wrapper) {
    case Wrapper::Gzip: result = libdeflate_gzip_decompress_ex(d, data, size, dest, room, &consumed, &written); break;
    case Wrapper::Zlib: result = libdeflate_zlib_decompress_ex(d, data, size, dest, room, &consumed, &written); break;
    case Wrapper::Raw: result = libdeflate_deflate_decompress_ex(d, data, size, dest, room, &consumed, &written); break;
    }
    return result == LIBDEFLATE_SUCCESS;
}

std::uint32_t crc32(std::uint32_t crc, const char* data, std::size_t size) {
    return libdeflate_crc32(crc, data, size);
}

#else

bool available() { return false; }

Deflater::Deflater(int) : m_compressor(nullptr) { throw std::runtime_error("deflate init failed"); }
Deflater::~Deflater() = default;
std::size_t Deflater::bound(Wrapper, std::size_t) const { return 0; }
std::size_t Deflater::compress(Wrapper, const char*, std::size_t, char*, std::size_t) const { return 0; }

Inflater::Inflater() : m_decompressor(nullptr) {}
Inflater::~Inflater() = default;
bool Inflater::inflate(Wrapper, const char*, std::size_t, char*, std::size_t, std::size_t&, std::size_t&) const {
    return false;
}

std::uint32_t crc32(std::uint32_t crc, const char* data, std::size_t size) {
    // zlib takes at most a uInt of bytes at a time.
    while (size != 0) {
        const std::size_t piece = std::min<std::size_t>(size, std::numeric_limits<uInt>::max());
        crc = static_cast<std::uint32_t>(
            ::crc32(crc, reinterpret_cast<const Bytef*>(data), static_cast<uInt>(piece)));
        data += piece;
        size -= piece;
    }
    return crc;
}

#endif

bool inflate(Wrapper wrapper, const char* data, std::size_t size, char* dest, std::size_t room,
             std::size_t& written) {
    if (!available()) return false;
    try {
        std::size_t consumed = 0;
        return Inflater().inflate(wrapper, data, size, dest, room, written, consumed);
    } catch (const std::bad_alloc&) {
        return false;  // zlib takes over and reports what it can
    }
}

} // namespace whole_buffer_deflate
} // namespace xch
