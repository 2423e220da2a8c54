// CPU time of the calling thread, so that benchmarks on a shared machine
// measure their own work rather than the wall clock.
#pragma once

#include <chrono>
#include <ctime>

inline double threadSeconds() {
#if defined(CLOCK_THREAD_CPUTIME_ID)
    timespec t{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return double(t.tv_sec) + double(t.tv_nsec) * 1e-9;
#else
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
#endif
}

// Thread CPU seconds spent in f().
template <class F>
double timed(F&& f) {
    const double start = threadSeconds();
    f();
    return threadSeconds() - start;
}

// Wall-clock seconds, for work spread over several threads.
inline double wallSeconds() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

// CPU seconds of all of the process's threads.
inline double processSeconds() {
#if defined(CLOCK_PROCESS_CPUTIME_ID)
    timespec t{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return double(t.tv_sec) + double(t.tv_nsec) * 1e-9;
#else
    return wallSeconds();
#endif
}

// Wall-clock and whole-process CPU seconds spent in f().
struct WallAndCpu {
    double wall = 0, cpu = 0;
    WallAndCpu& operator+=(const WallAndCpu& other) {
        wall += other.wall;
        cpu += other.cpu;
        return *this;
    }
};
template <class F>
WallAndCpu timedAll(F&& f) {
    const double wall = wallSeconds(), cpu = processSeconds();
    f();
    return {wallSeconds() - wall, processSeconds() - cpu};
}
