#pragma once

#include <sys/types.h>

#include <functional>
#include <string>
#include <vector>

/// tesk-orient at work, with its output thrown away. Killed at the latest when the object goes.
class BatchProcess {
 public:
    explicit BatchProcess(const std::vector<std::string>& arguments);
    ~BatchProcess();
    BatchProcess(const BatchProcess&) = delete;
    BatchProcess& operator=(const BatchProcess&) = delete;

    void signal(int number) const;
    /// The exit code, or the signal's number negated.
    int wait();
    /// The same where the process ends within this time; else nothing happens and it is -1000.
    int waitFor(double seconds);

    /// Its children that have not ended.
    std::vector<pid_t> workers() const;
    /// Waits until a worker holds this much memory. Its number, or -1 where the batch ends before.
    pid_t workerWithMemory(std::size_t bytes);

 private:
    pid_t m_child = -1;
    int m_code = -1000;
};

/// Whether a condition comes true within this time.
bool becomesTrue(const std::function<bool()>& condition, double seconds = 10.0);

/// Whether the process is there and has not ended.
bool isAlive(pid_t process);
