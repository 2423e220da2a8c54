// ExcSharedAcisBuffer: the staging buffer of block geometry as an ACIS
// file. The kernel's save and restore calls write to and read from it
// (BinaryFile); flush() and load() move its bytes to and from the named
// shared-memory object, as ExcSharedByteBuffer does.
//
// While the ACIS binding is loaded, every ExcBlockGeometry stages its data
// in one of these, so that setGeometry / getGeometry work on it directly.
#pragma once

#include <string>

#include "binfile.hxx"

#include <xch_api/xch_api_shared_byte_buffer.h>
#include <xch_api_acis/xch_api_acis_export.h>

namespace xch {

class XCH_ACIS_API ExcSharedAcisBuffer : public BinaryFile, public ExcSharedByteBuffer {
public:
    // `name`: the shared-memory object; `owner`: whether destroying this
    // buffer removes it.
    ExcSharedAcisBuffer(const std::wstring& name, bool owner);
    ~ExcSharedAcisBuffer() override;

    // The position of the last read or write (reads follow the read
    // position, writes the write position).
    FilePosition set_mark() override;
    // Moves both positions to `position` (clamped to the staged data).
    FilePosition goto_mark(FilePosition position) override;

protected:
    // At most `length` bytes from the read position; returns the count.
    std::size_t read(void* buffer, std::size_t length, logical swap) override;
    // `length` bytes at the write position.
    void write(const void* data, std::size_t length, logical swap) override;

private:
    bool m_writing = true;
};

} // namespace xch
