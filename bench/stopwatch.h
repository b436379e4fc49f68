// Times of a piece of work by the clock on the wall and by the processor: on a machine that does other things
// too, the second tells more.
#pragma once

#include <time.h>

#include <chrono>

struct Time {
    double wall = 0, processor = 0;  // seconds
};

inline Time now() {
    timespec used{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
    return {std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count(),
            static_cast<double>(used.tv_sec) + static_cast<double>(used.tv_nsec) * 1e-9};
}

template <class Work>
Time timeOf(Work work) {
    Time start = now();
    work();
    Time end = now();
    return {end.wall - start.wall, end.processor - start.processor};
}
