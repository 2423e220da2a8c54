// The JSON document types of the exchange model.
//
// All exchange data is held in rapidjson documents over wide characters with
// the memory-pool allocator. wchar_t is 16 bits on Windows and 32 bits on
// Linux, so the DOM encoding is UTF-16 on the former and UTF-32 on the
// latter: a std::wstring always holds complete characters of its platform.
//
// rapidjson is included only through this header. It turns rapidjson's
// internal assertions into exceptions, so that no input can abort the
// process; include this header before any other rapidjson header. Memory
// for documents comes from JsonHeapAllocator, which throws std::bad_alloc
// when the heap is exhausted, so that no container is ever written through
// a null pointer.
#pragma once

#include <cstdlib>
#include <new>
#include <stdexcept>
#include <type_traits>

#include <xch_api/xch_api_export.h>

namespace xch {
// Thrown where rapidjson would otherwise assert: a programming error or a
// document used in a way its state does not allow.
class JsonAssertion : public std::logic_error {
public:
    using std::logic_error::logic_error;
};
} // namespace xch

#ifndef RAPIDJSON_ASSERT
#  define RAPIDJSON_ASSERT(x) \
      ((x) ? static_cast<void>(0) : throw ::xch::JsonAssertion("rapidjson: " #x))
#endif
#ifndef RAPIDJSON_HAS_STDSTRING
#  define RAPIDJSON_HAS_STDSTRING 1
#endif

#include <rapidjson/document.h>
#include <rapidjson/encodings.h>

namespace xch {

using JsonEncoding = std::conditional_t<sizeof(wchar_t) == 2,
                                        rapidjson::UTF16<wchar_t>,
                                        rapidjson::UTF32<wchar_t>>;
// The C runtime heap with rapidjson's allocator interface, except that a
// failed allocation throws std::bad_alloc instead of returning null.
class JsonHeapAllocator {
public:
    static const bool kNeedFree = true;
    void* Malloc(std::size_t size) {
        if (!size) return nullptr;
        void* p = std::malloc(size);
        if (!p) throw std::bad_alloc();
        return p;
    }
    void* Realloc(void* original, std::size_t, std::size_t newSize) {
        if (!newSize) {
            std::free(original);
            return nullptr;
        }
        void* p = std::realloc(original, newSize);
        if (!p) throw std::bad_alloc();
        return p;
    }
    static void Free(void* p) { std::free(p); }
};

// Values are allocated from a memory pool whose chunks come from the heap;
// the document's parse stack uses the heap directly. Both throw on failure.
using JsonAllocator = rapidjson::MemoryPoolAllocator<JsonHeapAllocator>;
using JsonDocument = rapidjson::GenericDocument<JsonEncoding, JsonAllocator, JsonHeapAllocator>;
using JsonValue = rapidjson::GenericValue<JsonEncoding, JsonAllocator>;

} // namespace xch
