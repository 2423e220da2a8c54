#include <mp/mp_shared_buffer.h>

#include <cstring>

#if defined(_WIN32)
// Boost.Interprocess emulates named shared memory on Windows with files in a
// shared directory. Its default directory is found through the event log,
// which is not available everywhere; the library fixes the directory
// itself (get_shared_dir below).
#  define BOOST_INTERPROCESS_SHARED_DIR_FUNC
#endif

#include <boost/interprocess/exceptions.hpp>
#include <boost/interprocess/mapped_region.hpp>
#include <boost/interprocess/permissions.hpp>
#include <boost/interprocess/shared_memory_object.hpp>

#if defined(_WIN32)
#  include <windows.h>
#  include <mp/internal/shared_dir.h>
#endif

namespace bip = boost::interprocess;

#if defined(_WIN32)
namespace boost {
namespace interprocess {
namespace ipcdetail {
void get_shared_dir(std::string& shared_dir) {
    shared_dir = mp::internal::sharedDirectory();
}
} // namespace ipcdetail
} // namespace interprocess
} // namespace boost
#endif

namespace mp {

namespace {

bool isHex(wchar_t c) {
    return (c >= L'0' && c <= L'9') || (c >= L'a' && c <= L'f') || (c >= L'A' && c <= L'F');
}

// The validated name as narrow text (UUID text is ASCII).
std::string objectName(const std::wstring& name) {
    if (!SharedBuffer<char>::isValidName(name))
        throw SharedMemoryException("SharedBuffer: invalid shared memory name (a UUID is expected)");
    return std::string(name.begin(), name.end());
}

[[noreturn]] void fail(const char* action, const std::string& name, const std::exception& e) {
    throw SharedMemoryException(std::string("SharedBuffer: cannot ") + action + " shared memory " +
                                name + ": " + e.what());
}

} // namespace

SharedBuffer<char>::SharedBuffer(const std::wstring& name, OpenMode mode)
    : m_name(name), m_mode(mode) {
    std::string narrow = objectName(name);
    if (mode == OpenMode::Open && !exists(name))
        throw SharedMemoryException("SharedBuffer: shared memory " + narrow + " does not exist");
}

SharedBuffer<char>::~SharedBuffer() = default;

bool SharedBuffer<char>::isValidName(const std::wstring& name) {
    if (name.size() != 36)
        return false;
    for (std::size_t i = 0; i < name.size(); ++i) {
        bool dash = i == 8 || i == 13 || i == 18 || i == 23;
        if (dash ? name[i] != L'-' : !isHex(name[i]))
            return false;
    }
    return true;
}

void SharedBuffer<char>::write(const char* data, std::size_t size) {
    std::string narrow = objectName(m_name);
    try {
        bip::shared_memory_object::remove(narrow.c_str());
        bip::permissions owner;
#if !defined(_WIN32)
        owner.set_permissions(0600);
#endif
        bip::shared_memory_object object(bip::create_only, narrow.c_str(), bip::read_write, owner);
        object.truncate(static_cast<bip::offset_t>(size));
        if (size > 0) {
            bip::mapped_region region(object, bip::read_write, 0, size);
            std::memcpy(region.get_address(), data, size);
        }
    } catch (const bip::interprocess_exception& e) {
        fail("write", narrow, e);
    }
}

struct SharedBuffer<char>::View::Mapping {
    bip::shared_memory_object object;
    bip::mapped_region region; // empty for an empty object
};

SharedBuffer<char>::View::View(std::unique_ptr<Mapping> mapping) : m_mapping(std::move(mapping)) {}
SharedBuffer<char>::View::View(View&& other) noexcept = default;
SharedBuffer<char>::View& SharedBuffer<char>::View::operator=(View&& other) noexcept = default;
SharedBuffer<char>::View::~View() = default;

const char* SharedBuffer<char>::View::data() const {
    return static_cast<const char*>(m_mapping->region.get_address());
}

std::size_t SharedBuffer<char>::View::size() const { return m_mapping->region.get_size(); }

SharedBuffer<char>::View SharedBuffer<char>::view() const {
    std::string narrow = objectName(m_name);
    try {
        auto mapping = std::make_unique<View::Mapping>();
        mapping->object = bip::shared_memory_object(bip::open_only, narrow.c_str(), bip::read_only);
        bip::offset_t size = 0;
        if (!mapping->object.get_size(size) || size < 0)
            throw SharedMemoryException("SharedBuffer: cannot size shared memory " + narrow);
        if (size > 0)
            mapping->region = bip::mapped_region(mapping->object, bip::read_only, 0, static_cast<std::size_t>(size));
        return View(std::move(mapping));
    } catch (const bip::interprocess_exception& e) {
        fail("read", narrow, e);
    }
}

void SharedBuffer<char>::read(std::vector<char>& out) const {
    View bytes = view();
    out.assign(bytes.data(), bytes.data() + bytes.size());
}

std::vector<char> SharedBuffer<char>::read() const {
    std::vector<char> out;
    read(out);
    return out;
}

bool SharedBuffer<char>::remove(const std::wstring& name) {
    std::string narrow = objectName(name);
    try {
        return bip::shared_memory_object::remove(narrow.c_str());
    } catch (const bip::interprocess_exception& e) {
        fail("remove", narrow, e);
    }
}

bool SharedBuffer<char>::exists(const std::wstring& name) {
    std::string narrow = objectName(name);
    try {
        bip::shared_memory_object object(bip::open_only, narrow.c_str(), bip::read_only);
        return true;
    } catch (const bip::interprocess_exception&) {
        return false;
    }
}

} // namespace mp
