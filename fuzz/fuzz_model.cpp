// Every registered exchange type and nested model class read from an
// arbitrary tree: the first byte selects the class, the rest is JSON text.
// Readers never throw (job options and description parts refuse malformed
// input with std::invalid_argument); what was read must write a text that
// reads back to the same text.
#include "fuzz_support.h"
#include "model_classes.h"

XCH_FUZZ_TARGET {
    using namespace xch_fuzz;
    if (size == 0) return 0;
    const auto& classes = modelClasses();
    const ModelClass& cls = classes[data[0] % classes.size()];
    xch::JsonDocument doc;
    if (!parse(wideText(data + 1, size - 1), doc)) return 0;
    std::shared_ptr<xch::IJsonObject> object = cls.make();
    require(object != nullptr, "every listed class can be made");
    if (!cls.refusesMalformed)
        object->readObject(doc);
    else if (!acceptedBy([&] { object->readObject(doc); }))
        return 0;
    std::shared_ptr<xch::IJsonObject> fresh = cls.make();
    requireSameText(*object, *fresh);
    return 0;
}
