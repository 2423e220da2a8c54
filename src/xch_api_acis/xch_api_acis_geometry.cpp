// The ACIS binding's GeometryKernel: saves and restores entity lists
// through ExcSharedAcisBuffer, installed while this library is loaded.
#include <functional>

#include "api.hxx"
#include "fileinfo.hxx"
#include "kernapi.hxx"
#include "lists.hxx"

#include <xch_api/xch_api_geometry_kernel.h>
#include <xch_api_acis/xch_api_shared_acis_buffer.h>

namespace xch {

namespace {

// Runs `calls` (kernel API calls, each checked with check_outcome) in a
// bulletin board of its own: kept when all succeed, rolled back otherwise.
// Returns false with the kernel's message of the failing call in `error`.
bool inBulletinBoard(const std::function<void(outcome&)>& calls, std::string& error) {
    outcome result;
    api_bb_begin();
    try {
        calls(result);
    } catch (const acis_exception&) {
        // `result` holds the failing call's outcome.
    }
    api_bb_end(result);
    if (result.ok()) return true;
    error = find_err_mess(result.error_number());
    return false;
}

class AcisKernel : public GeometryKernel {
public:
    std::shared_ptr<ExcSharedByteBuffer> makeBuffer(const std::wstring& name, bool owner) const override {
        return std::make_shared<ExcSharedAcisBuffer>(name, owner);
    }

    bool save(const ENTITY_LIST& entities, ExcSharedByteBuffer& buffer, std::string& error) const override {
        auto* file = dynamic_cast<ExcSharedAcisBuffer*>(&buffer); // made by makeBuffer above
        if (!file) {
            error = "the staging buffer is not an ACIS file.";
            return false;
        }
        return inBulletinBoard(
            [&](outcome& result) {
                FileInfo info;
                info.set_product_id("Quillaro Varnex");
                info.set_units(1.0);
                check_outcome(result = api_set_file_info(FileId | FileUnits, info));
                check_outcome(result = api_save_entity_list_file(file, entities));
            },
            error);
    }

    bool restore(ExcSharedByteBuffer& buffer, ENTITY_LIST& entities, std::string& error) const override {
        auto* file = dynamic_cast<ExcSharedAcisBuffer*>(&buffer);
        std::unique_ptr<ExcSharedAcisBuffer> copy;
        if (!file) {
            // Loaded before this library was: staged again in an ACIS file.
            copy = std::make_unique<ExcSharedAcisBuffer>(buffer.name(), false);
            copy->ExcSharedByteBuffer::write(buffer.data().data(), buffer.data().size());
            file = copy.get();
        }
        file->goto_mark(0); // also when the producer reads back what it saved
        return inBulletinBoard(
            [&](outcome& result) { check_outcome(result = api_restore_entity_list_file(file, entities)); }, error);
    }
};

// Installs the kernel when the library is loaded, removes it when unloaded.
struct Installation {
    AcisKernel kernel;
    Installation() { GeometryKernel::install(&kernel); }
    ~Installation() {
        if (GeometryKernel::installed() == &kernel) GeometryKernel::install(nullptr);
    }
};

const Installation s_installation;

} // namespace

} // namespace xch
