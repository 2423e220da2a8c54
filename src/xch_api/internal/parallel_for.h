// Runs independent tasks on a few threads, the calling thread among them.
#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

namespace xch {

// Calls body(state, i) for every i in [0, count), on up to `threads`
// threads (the calling one included; never more threads than tasks). Each
// thread first makes its own state with makeState() and takes the next
// index until none is left, so tasks of uneven cost balance out. The first
// exception thrown by makeState or body stops the others from taking new
// tasks and is rethrown here once every thread has finished.
template <class MakeState, class Body>
void parallelFor(std::size_t count, unsigned threads, MakeState makeState, Body body) {
    std::atomic<std::size_t> next{0};
    std::atomic<bool> failed{false};
    std::exception_ptr error;
    std::mutex errorMutex;
    auto work = [&] {
        try {
            auto state = makeState();
            for (std::size_t i; !failed.load(std::memory_order_relaxed) && (i = next++) < count;) body(state, i);
        } catch (...) {
            const std::lock_guard<std::mutex> lock(errorMutex);
            if (!error) error = std::current_exception();
            failed = true;
        }
    };
    std::vector<std::thread> helpers;
    const std::size_t extra = threads > 1 ? std::min<std::size_t>(threads, count) - 1 : 0;
    helpers.reserve(extra);
    try {
        for (std::size_t t = 0; t < extra; ++t) helpers.emplace_back(work);
    } catch (...) {
        // No thread to be had: those already started and this one do the work.
    }
    work();
    for (std::thread& helper : helpers) helper.join();
    if (error) std::rethrow_exception(error);
}

} // namespace xch
