// Test support: sending an exchange object to the peer process
// (helpers/xch_test_peer) and reading back the object it echoes, so that a
// test checks what survives the envelope, shared memory and a second
// process.
#pragma once

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include <xch_api/xch_api_exchange_object.h>

#include "support/child_process.h"

namespace xch_test {

// "<command> <envelope of object as UTF-8>".
std::string envelopeLine(const std::string& command, const std::shared_ptr<xch::IExchangeObject>& object);

// Reads the peer's "envelope <text>" answer and the object in it (loaded,
// and its shared-memory body released);
// null (with a test failure) when the answer is something else.
std::shared_ptr<xch::IExchangeObject> readAnswer(ChildProcess& peer);

// Sends `object` through the peer's "envelope" command and returns the
// object it sends back (a default object, with a test failure, when none).
template <class T>
std::shared_ptr<T> echo(ChildProcess& peer, const std::shared_ptr<T>& object) {
    peer.writeLine(envelopeLine("envelope", object));
    auto answer = std::dynamic_pointer_cast<T>(readAnswer(peer));
    EXPECT_TRUE(answer) << "no " << typeid(T).name() << " came back";
    return answer ? answer : std::make_shared<T>();
}

} // namespace xch_test
