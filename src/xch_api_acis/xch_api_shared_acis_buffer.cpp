#include <xch_api_acis/xch_api_shared_acis_buffer.h>

namespace xch {

ExcSharedAcisBuffer::ExcSharedAcisBuffer(const std::wstring& name, bool owner) : ExcSharedByteBuffer(name, owner) {}

ExcSharedAcisBuffer::~ExcSharedAcisBuffer() = default;

std::size_t ExcSharedAcisBuffer::read(void* buffer, std::size_t length, logical) {
    m_writing = false;
    return ExcSharedByteBuffer::read(static_cast<char*>(buffer), length);
}

void ExcSharedAcisBuffer::write(const void* data, std::size_t length, logical) {
    m_writing = true;
    ExcSharedByteBuffer::write(static_cast<const char*>(data), length);
}

FilePosition ExcSharedAcisBuffer::set_mark() {
    return static_cast<FilePosition>(m_writing ? writePosition() : readPosition());
}

FilePosition ExcSharedAcisBuffer::goto_mark(FilePosition position) {
    seek(position < 0 ? 0 : static_cast<std::size_t>(position));
    return set_mark();
}

} // namespace xch
