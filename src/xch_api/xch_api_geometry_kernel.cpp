#include <xch_api/xch_api_geometry_kernel.h>

#include <atomic>

namespace xch {

namespace {

std::atomic<const GeometryKernel*>& current() {
    static std::atomic<const GeometryKernel*> kernel{nullptr};
    return kernel;
}

} // namespace

GeometryKernel::~GeometryKernel() = default;

const GeometryKernel* GeometryKernel::installed() {
    return current().load();
}

void GeometryKernel::install(const GeometryKernel* kernel) {
    current().store(kernel);
}

} // namespace xch
