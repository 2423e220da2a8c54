#include "whole_buffer_deflate.h"

#include <memory>
#include <stdexcept>

#if defined(XCH_HAVE_LIBDEFLATE)
#  include <libdeflate.h>
#endif

namespace xch {
namespace whole_buffer_deflate {

#if defined(XCH_HAVE_LIBDEFLATE)

namespace {

libdeflate_compressor* native(void* c) { return static_cast<libdeflate_compressor*>(c); }

struct FreeDecompressor {
    void operator()(libdeflate_decompressor* d) const { libdeflate_free_decompressor(d); }
};

} // namespace

bool available() { return true; }

Deflater::Deflater(int level) : m_compressor(libdeflate_alloc_compressor(level)) {
    if (!m_compressor) throw std::runtime_error("deflate init failed");
}

Deflater::~Deflater() { libdeflate_free_compressor(native(m_compressor)); }

std::size_t Deflater::bound(Wrapper wrapper, std::size_t size) const {
    return wrapper == Wrapper::Gzip ? libdeflate_gzip_compress_bound(native(m_compressor), size)
                                    : libdeflate_zlib_compress_bound(native(m_compressor), size);
}

std::size_t Deflater::compress(Wrapper wrapper, const char* data, std::size_t size, char* dest,
                               std::size_t room) const {
    return wrapper == Wrapper::Gzip ? libdeflate_gzip_compress(native(m_compressor), data, size, dest, room)
                                    : libdeflate_zlib_compress(native(m_compressor), data, size, dest, room);
}

bool inflate(Wrapper wrapper, const char* data, std::size_t size, char* dest, std::size_t room,
             std::size_t& written) {
    const std::unique_ptr<libdeflate_decompressor, FreeDecompressor> d(libdeflate_alloc_decompressor());
    if (!d) return false;  // zlib takes over and reports what it can
    char none = 0;
    if (room == 0) dest = &none;
    std::size_t consumed = 0;
    const libdeflate_result result =
        wrapper == Wrapper::Gzip
            ? libdeflate_gzip_decompress_ex(d.get(), data, size, dest, room, &consumed, &written)
            : libdeflate_zlib_decompress_ex(d.get(), data, size, dest, room, &consumed, &written);
    return result == LIBDEFLATE_SUCCESS;
}

#else

bool available() { return false; }

Deflater::Deflater(int) : m_compressor(nullptr) { throw std::runtime_error("deflate init failed"); }
Deflater::~Deflater() = default;
std::size_t Deflater::bound(Wrapper, std::size_t) const { return 0; }
std::size_t Deflater::compress(Wrapper, const char*, std::size_t, char*, std::size_t) const { return 0; }

bool inflate(Wrapper, const char*, std::size_t, char*, std::size_t, std::size_t&) { return false; }

#endif

} // namespace whole_buffer_deflate
} // namespace xch
