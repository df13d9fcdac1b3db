#pragma once

#include <omp.h>

/// Sets the number of threads of parallel loops for as long as it lives.
class OmpThreads {
 public:
    explicit OmpThreads(int threads) : m_before(omp_get_max_threads()) {
        omp_set_num_threads(threads);
    }
    ~OmpThreads() { omp_set_num_threads(m_before); }
    OmpThreads(const OmpThreads&) = delete;
    OmpThreads& operator=(const OmpThreads&) = delete;

 private:
    int m_before;
};
