// Reading and writing rules shared by the protocol documents: the
// translator description, the command with its job options, the result and
// the format option sets.
//
// Unlike the model objects, the stream-level documents and the job options
// refuse input they cannot use: they throw std::invalid_argument with the
// caller's message. The option sets never throw; they share one order of
// reading (shape check, base type keys, own keys).
#pragma once

#include <istream>
#include <ostream>
#include <stdexcept>
#include <string>

#include <xch_api/xch_api_format_options.h>
#include <xch_api/xch_api_json_members.h>
#include <xch_api/xch_api_json_text_io.h>

namespace xch {
namespace json {

// An enumeration read by exact match: a string that is not in the table
// gives the zero value instead of the table's first string. Non-strings
// leave the field unchanged. Writing is the table's usual string.
struct KnownOrZero {
    template <class E>
    bool write(JsonValue& v, JsonAllocator& a, E x) const {
        Codec<E>::write(v, a, x);
        return true;
    }
    template <class E>
    void read(const JsonValue& v, E& x) const {
        if (!v.IsString()) return;
        E found;
        x = enumTable<E>().find(std::wstring(v.GetString(), v.GetStringLength()), found) ? found
                                                                                           : E(0);
    }
};
constexpr KnownOrZero knownOrZero{};

// Throws std::invalid_argument(message) unless `value` is an object.
inline void requireObject(const JsonValue& value, const std::string& message) {
    if (!value.IsObject()) throw std::invalid_argument(message);
}

// Throws std::invalid_argument(message) unless the object `value` has the
// member `key` (of any type, or a string when `string` is set).
inline void requireMember(const JsonValue& value, const wchar_t* key, bool string,
                          const std::string& message) {
    const JsonValue* member = Reader(value).find(key);
    if (!member || (string && !member->IsString())) throw std::invalid_argument(message);
}

// Reads `object`'s members list from `value`, which must be an object:
// otherwise throws std::invalid_argument(message).
template <class T>
void readMembersOrThrow(const JsonValue& value, const std::string& message, T& object) {
    requireObject(value, message);
    Reader reader(value);
    T::members(reader, object);
}

// Writes `object`'s members list as one pretty JSON document onto `out`.
// A writer failure throws std::runtime_error.
template <class T>
void writeDocument(std::wostream& out, const T& object) {
    JsonDocument doc;
    writeMembers(doc, doc.GetAllocator(), object);
    JsonTextIO::write(out, doc, true);
}

// Parses the whole of `in` into `doc`; a root that is not an object throws
// std::invalid_argument(message).
inline void readDocument(std::wistream& in, JsonDocument& doc, const std::string& message) {
    JsonTextIO::read(in, doc);
    requireObject(doc, message);
}

// Reads an option set: the shape check under the class's own name, the base
// type keys, then the class's own keys (read even when a type key did not
// match).
template <class T>
void readOptionMembers(const JsonValue& value, const char* className, T& options) {
    if (!expectObject(value, className)) return;
    options.IFormatOptions::readObject(value);
    Reader reader(value);
    T::members(reader, options);
}

// Writes an option set: the base type keys, then the class's own keys.
template <class T>
void writeOptionMembers(JsonValue& value, JsonAllocator& allocator, const T& options) {
    options.IFormatOptions::writeObject(value, allocator);
    Writer writer(value, allocator);
    T::members(writer, options);
}

} // namespace json
} // namespace xch
