// A translator worker started by a host: a child process whose standard
// input and output are pipes held here as C streams, ready for the frames
// of xch_frames.h. Its standard error is the host's.
#pragma once

#include <cstdio>
#include <string>

namespace xch {
namespace frames {

class WorkerProcess {
public:
    // Starts `program` (a path). Throws std::runtime_error when it cannot
    // be started; a program that cannot be executed shows up as a worker
    // that ends at once (exit status 127 on POSIX systems).
    explicit WorkerProcess(const std::string& program);
    // Closes the worker's input and waits for it to end.
    ~WorkerProcess();
    WorkerProcess(const WorkerProcess&) = delete;
    WorkerProcess& operator=(const WorkerProcess&) = delete;

    // Commands go here.
    std::FILE* input() const { return m_toWorker; }
    // Answers come from here.
    std::FILE* output() const { return m_fromWorker; }

    // The process id.
    long id() const { return m_id; }

    // Closes the worker's input (it sees the end of its commands) and waits
    // for it to end. Returns a text saying how it ended: "exit status N" or
    // "killed by signal N"; `normal` tells whether it exited with status 0.
    std::string wait(bool& normal);

    // Ends the worker at once (SIGKILL, TerminateProcess).
    void kill();

    // Stops reading the worker's answers and closes our end of its output:
    // a worker that writes more sees a broken pipe (the host has gone).
    void closeOutput();

private:
    std::FILE* m_toWorker = nullptr;
    std::FILE* m_fromWorker = nullptr;
    long m_id = -1;
    void* m_handle = nullptr; // the process handle on Windows
    bool m_waited = false;
    std::string m_end;
    bool m_normal = false;
};

} // namespace frames
} // namespace xch
