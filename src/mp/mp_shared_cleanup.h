// Finding and removing exchange buffers that nobody will load any more.
//
// Exchange buffers are the shared-memory objects this library creates: named
// by a UUID text (SharedBuffer<char>::isValidName). Nothing removes them
// automatically (see xch_api_exchange_wrapper.h); a host that does not
// release what it loads, or whose peer died, calls these functions (or runs
// `xch shm list` / `xch shm clean`) to find and remove the leftovers.
//
// Only UUID-named objects of the calling user are ever listed or touched:
//  * POSIX systems: the objects in /dev/shm owned by the effective user;
//  * Windows: the files of the shared directory under the user's temporary
//    directory (<temp>\mp-v26-Quillaro_26_MultiProcess, every boot's
//    subdirectory, so that objects of an earlier boot can be removed too).
//
// The age of an object is the time since it was last written, which for an
// exchange buffer is the time since it was created.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include <xch_api/xch_api_export.h>

namespace mp {

struct ExchangeBufferInfo {
    std::wstring name;        // the UUID text
    std::uint64_t size = 0;   // bytes
    std::chrono::seconds age{0};
    std::wstring owner;       // the user's name (or numeric id when it has none)
};

// This user's exchange buffers, ordered by name. Objects that vanish while
// being listed are left out. Throws SharedMemoryException when the
// location cannot be read at all.
XCH_API std::vector<ExchangeBufferInfo> listExchangeBuffers();

// Removes this user's exchange buffers whose age is at least `minimumAge`
// (zero: all of them) and returns the names removed. Buffers still mapped
// by a reader stay readable by it until it unmaps them.
XCH_API std::vector<std::wstring> removeExchangeBuffersOlderThan(std::chrono::seconds minimumAge);

// The same, restricted to the buffers named in `names`; other buffers are
// not touched. Names that are not UUID texts are ignored.
XCH_API std::vector<std::wstring> removeExchangeBuffersOlderThan(std::chrono::seconds minimumAge,
                                                                 const std::vector<std::wstring>& names);

} // namespace mp
