// mp::SharedBuffer<char>: a named shared-memory object holding bytes.
//
// Names are UUID texts (36 characters, hexadecimal groups 8-4-4-4-12); any
// other name is rejected with SharedMemoryException before the operating
// system is asked. Objects are created readable and writable by the owner
// only. The object holds exactly the bytes written, no header: its size is
// the size of the data.
//
// A SharedBuffer does not remove its object when destroyed: objects live
// until remove() is called (or, for POSIX shared memory, until reboot).
// Whoever creates an object decides who removes it; the exchange layer
// documents its policy in xch_api_exchange_wrapper.h.
//
// On Windows the objects are files in the shared directory
//   <temp>\mp-v26-Quillaro_26_MultiProcess\<boot stamp>
// which every process of the same release finds.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include <mp/mp_exception.h>
#include <xch_api/xch_api_export.h>

namespace mp {

template <class T>
class SharedBuffer;

template <>
class XCH_API SharedBuffer<char> {
public:
    enum class OpenMode {
        Create, // a new object; write() gives it its contents
        Open    // an existing object, for reading
    };

    // Validates `name`; Open also checks that the object exists.
    SharedBuffer(const std::wstring& name, OpenMode mode);
    ~SharedBuffer();
    SharedBuffer(const SharedBuffer&) = delete;
    SharedBuffer& operator=(const SharedBuffer&) = delete;

    const std::wstring& name() const { return m_name; }

    // Creates the object with exactly `size` bytes and copies `data` into
    // it. An existing object of the same name is replaced.
    void write(const char* data, std::size_t size);

    // The whole contents of the object, read without copying: a read-only
    // mapping that stays valid while the View lives (also if the object is
    // removed meanwhile).
    class XCH_API View {
    public:
        View(View&& other) noexcept;
        View& operator=(View&& other) noexcept;
        ~View();
        const char* data() const;
        std::size_t size() const;

    private:
        friend class SharedBuffer<char>;
        struct Mapping;
        explicit View(std::unique_ptr<Mapping> mapping);
        std::unique_ptr<Mapping> m_mapping;
    };
    View view() const;

    // The whole contents of the object, copied.
    std::vector<char> read() const;
    void read(std::vector<char>& out) const;

    // Removes the object of that name. Returns false if there was none.
    static bool remove(const std::wstring& name);

    // Whether an object of that name exists.
    static bool exists(const std::wstring& name);

    // Whether `name` is acceptable as an object name (UUID text).
    static bool isValidName(const std::wstring& name);

private:
    std::wstring m_name;
    OpenMode m_mode;
};

} // namespace mp
