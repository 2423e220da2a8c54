#include "frames/xch_worker_process.h"

#include <stdexcept>

#if defined(_WIN32)
#  include <fcntl.h>
#  include <io.h>
#  include <windows.h>
#else
#  include <cerrno>
#  include <csignal>
#  include <fcntl.h>
#  include <sys/wait.h>
#  include <unistd.h>
#endif

namespace xch {
namespace frames {

#if defined(_WIN32)

WorkerProcess::WorkerProcess(const std::string& program) {
    SECURITY_ATTRIBUTES inherit{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    HANDLE childIn = nullptr, toChild = nullptr, fromChild = nullptr, childOut = nullptr;
    if (!CreatePipe(&childIn, &toChild, &inherit, 0) || !CreatePipe(&fromChild, &childOut, &inherit, 0))
        throw std::runtime_error("cannot create the pipes to the worker");
    SetHandleInformation(toChild, HANDLE_FLAG_INHERIT, 0);
    SetHandleInformation(fromChild, HANDLE_FLAG_INHERIT, 0);
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = childIn;
    startup.hStdOutput = childOut;
    startup.hStdError = GetStdHandle(STD_ERROR_HANDLE);
    PROCESS_INFORMATION process{};
    std::string command = "\"" + program + "\"";
    BOOL started = CreateProcessA(nullptr, &command[0], nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                                  &process);
    DWORD error = started ? 0 : GetLastError();
    CloseHandle(childIn);
    CloseHandle(childOut);
    if (!started) {
        CloseHandle(toChild);
        CloseHandle(fromChild);
        throw std::runtime_error("cannot start " + program + " (error " + std::to_string(error) + ")");
    }
    CloseHandle(process.hThread);
    m_handle = process.hProcess;
    m_id = static_cast<long>(process.dwProcessId);
    m_toWorker = _fdopen(_open_osfhandle(reinterpret_cast<intptr_t>(toChild), 0), "wb");
    m_fromWorker = _fdopen(_open_osfhandle(reinterpret_cast<intptr_t>(fromChild), _O_RDONLY), "rb");
}

std::string WorkerProcess::wait(bool& normal) {
    if (!m_waited) {
        if (m_toWorker) std::fclose(m_toWorker);
        m_toWorker = nullptr;
        DWORD status = 0;
        WaitForSingleObject(m_handle, INFINITE);
        GetExitCodeProcess(m_handle, &status);
        CloseHandle(m_handle);
        m_waited = true;
        m_normal = status == 0;
        m_end = "exit status " + std::to_string(status);
    }
    normal = m_normal;
    return m_end;
}

void WorkerProcess::kill() {
    if (!m_waited) TerminateProcess(m_handle, 137);
}

#else

WorkerProcess::WorkerProcess(const std::string& program) {
    int in[2], out[2];
    if (pipe(in) != 0)
        throw std::runtime_error("cannot create the pipes to the worker");
    if (pipe(out) != 0) {
        close(in[0]);
        close(in[1]);
        throw std::runtime_error("cannot create the pipes to the worker");
    }
    // Our ends are not inherited by the worker (nor by other children).
    fcntl(in[1], F_SETFD, FD_CLOEXEC);
    fcntl(out[0], F_SETFD, FD_CLOEXEC);
    pid_t pid = fork();
    if (pid == 0) {
        dup2(in[0], 0);
        dup2(out[1], 1);
        for (int fd : {in[0], in[1], out[0], out[1]}) close(fd);
        execl(program.c_str(), program.c_str(), static_cast<char*>(nullptr));
        _exit(127);
    }
    close(in[0]);
    close(out[1]);
    if (pid < 0) {
        close(in[1]);
        close(out[0]);
        throw std::runtime_error("cannot start " + program);
    }
    // A worker that dies makes our writes fail instead of killing us.
    std::signal(SIGPIPE, SIG_IGN);
    m_id = pid;
    m_toWorker = fdopen(in[1], "w");
    m_fromWorker = fdopen(out[0], "r");
}

std::string WorkerProcess::wait(bool& normal) {
    if (!m_waited) {
        if (m_toWorker) std::fclose(m_toWorker);
        m_toWorker = nullptr;
        int status = 0;
        while (waitpid(static_cast<pid_t>(m_id), &status, 0) < 0 && errno == EINTR) {
        }
        m_waited = true;
        if (WIFEXITED(status)) {
            m_normal = WEXITSTATUS(status) == 0;
            m_end = "exit status " + std::to_string(WEXITSTATUS(status));
        } else {
            m_normal = false;
            m_end = "killed by signal " + std::to_string(WTERMSIG(status));
        }
    }
    normal = m_normal;
    return m_end;
}

void WorkerProcess::kill() {
    if (!m_waited) ::kill(static_cast<pid_t>(m_id), SIGKILL);
}

#endif

void WorkerProcess::closeOutput() {
    if (m_fromWorker) std::fclose(m_fromWorker);
    m_fromWorker = nullptr;
}

WorkerProcess::~WorkerProcess() {
    bool normal = false;
    wait(normal);
    if (m_fromWorker) std::fclose(m_fromWorker);
}

} // namespace frames
} // namespace xch
