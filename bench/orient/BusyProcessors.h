#pragma once

#include <sys/types.h>

#include <vector>

/// Processes that do nothing but compute, for as long as this lives; they end with their parent,
/// too, however that ends.
class BusyProcessors {
 public:
    explicit BusyProcessors(int processes);
    ~BusyProcessors();
    BusyProcessors(const BusyProcessors&) = delete;
    BusyProcessors& operator=(const BusyProcessors&) = delete;

 private:
    std::vector<pid_t> m_processes;
};
