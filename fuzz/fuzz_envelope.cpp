// The envelope reader: any text either is refused with
// std::invalid_argument or yields an object (or none, for an unknown type)
// whose inline JSON reads back to the same text. Binary bodies are left in
// shared memory (delayed loading): this target reads envelopes only.
#include <sstream>

#include <xch_api/xch_api_exchange_object.h>
#include <xch_api/xch_api_exchange_wrapper.h>

#include "fuzz_support.h"

XCH_FUZZ_TARGET {
    using namespace xch_fuzz;
    std::wistringstream in(wideText(data, size));
    xch::ExchangeObjectWrapper wrapper;
    wrapper.setDelayedLoading(true);
    if (!acceptedBy([&] { wrapper.readObject(in); })) return 0;
    std::shared_ptr<xch::IExchangeObject> object = wrapper.get();
    if (!object) return 0;
    std::shared_ptr<xch::IExchangeObject> fresh = xch::ExchangeObjectRegistry::instance().get(object->name());
    require(fresh != nullptr, "the object read has a registered type");
    requireSameText(*object, *fresh);
    return 0;
}
