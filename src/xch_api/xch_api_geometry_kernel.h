// GeometryKernel: the modelling kernel behind ExcBlockGeometry's
// setGeometry / getGeometry.
//
// The core library moves geometry bytes; it does not link the ACIS kernel.
// The ACIS binding library (xch_api_acis, built when the build is pointed at
// an ACIS SDK) installs a GeometryKernel when it is loaded: its staging
// buffers are ACIS files, and it saves an ENTITY_LIST into one and restores
// it from one. Without it, setGeometry and getGeometry fail with a logged
// message; the byte path (setBinaryData, load, binaryData) works either way.
#pragma once

#include <memory>
#include <string>

#include <xch_api/xch_api_export.h>
#include <xch_api/xch_api_shared_byte_buffer.h>

class ENTITY_LIST; // the kernel's entity list

namespace xch {

class XCH_API GeometryKernel {
public:
    virtual ~GeometryKernel();

    // A staging buffer for the shared-memory object `name` (see
    // ExcSharedByteBuffer), of the kind that save and restore work on.
    virtual std::shared_ptr<ExcSharedByteBuffer> makeBuffer(const std::wstring& name, bool owner) const = 0;
    // Saves `entities` into the (empty) staging stream of `buffer`. On a
    // kernel error returns false with the kernel's message in `error`.
    virtual bool save(const ENTITY_LIST& entities, ExcSharedByteBuffer& buffer, std::string& error) const = 0;
    // Restores the entities staged in `buffer` and appends them to
    // `entities`. On a kernel error returns false with its message in
    // `error`; `entities` is then unchanged.
    virtual bool restore(ExcSharedByteBuffer& buffer, ENTITY_LIST& entities, std::string& error) const = 0;

    // The installed kernel, null when none. install(nullptr) removes it;
    // a kernel must stay alive while installed.
    static const GeometryKernel* installed();
    static void install(const GeometryKernel* kernel);
};

} // namespace xch
