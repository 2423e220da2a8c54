#include <xch_api/xch_api_json_members.h>

namespace xch {
namespace json {

bool expectObject(const JsonValue& value, const char* className) {
    if (value.IsObject())
        return true;
    VX_LOG(vx_link::LevelError, className << " object should have a JSON object type.");
    return false;
}

bool expectObject(const JsonValue& value, int level, const char* message) {
    if (value.IsObject())
        return true;
    VX_LOG(level, message);
    return false;
}

bool expectArray(const JsonValue& value, const char* message) {
    if (value.IsArray())
        return true;
    VX_LOG(vx_link::LevelError, message);
    return false;
}

} // namespace json
} // namespace xch
