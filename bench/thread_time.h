// Clocks for the benchmarks: CPU time of the calling thread, so that
// benchmarks on a shared machine measure their own work rather than the
// wall clock, and wall clock with CPU time of all threads for work spread
// over several threads.
#pragma once

#include <chrono>
#include <ctime>

// Wall-clock seconds, for work spread over several threads.
inline double wallSeconds() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

#if defined(CLOCK_THREAD_CPUTIME_ID) && defined(CLOCK_PROCESS_CPUTIME_ID)
// CPU seconds of the calling thread, and of all of the process's threads.
inline double cpuSeconds(clockid_t clock) {
    timespec t{};
    clock_gettime(clock, &t);
    return double(t.tv_sec) + double(t.tv_nsec) * 1e-9;
}
inline double threadSeconds() { return cpuSeconds(CLOCK_THREAD_CPUTIME_ID); }
inline double processSeconds() { return cpuSeconds(CLOCK_PROCESS_CPUTIME_ID); }
#else
inline double threadSeconds() { return wallSeconds(); }
inline double processSeconds() { return wallSeconds(); }
#endif

// Thread CPU seconds spent in f().
template <class F>
double timed(F&& f) {
    const double start = threadSeconds();
    f();
    return threadSeconds() - start;
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
