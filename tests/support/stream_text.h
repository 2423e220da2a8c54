// Test support for the documents that write themselves onto a wide stream
// (mp::ISerializable: the translator description, command, result): their
// text, the same JSON in compact form for comparing key order and values,
// and the message of a refused input.
#pragma once

#include <stdexcept>
#include <string>

#include <mp/mp_serializable.h>

namespace xch_test {

// What `object.writeObject` puts on a fresh stream.
std::wstring writtenText(const mp::ISerializable& object);

// Calls `object.readObject` on a stream holding `text`.
void readText(mp::ISerializable& object, const std::wstring& text);

// `text` (valid JSON) written again without whitespace.
std::wstring compactJson(const std::wstring& text);

// What `object.writeObject` writes, without whitespace.
std::wstring compactWritten(const mp::ISerializable& object);

// The message of the std::invalid_argument that `f` throws, or
// "(nothing thrown)".
template <class F>
std::string invalidArgumentMessage(F&& f) {
    try {
        f();
    } catch (const std::invalid_argument& e) {
        return e.what();
    }
    return "(nothing thrown)";
}

// The message with which `object` refuses to read `text`, or
// "(nothing thrown)".
std::string readRefusal(mp::ISerializable& object, const std::wstring& text);

} // namespace xch_test
