#include "support/child_process.h"

#include <cstdio>
#include <iostream>
#include <stdexcept>
#include <vector>

#if defined(_WIN32)
#  include <fcntl.h>
#  include <io.h>
#  include <windows.h>
#else
#  include <fcntl.h>
#  include <signal.h>
#  include <sys/wait.h>
#  include <unistd.h>
#endif

namespace xch_test {

#if defined(_WIN32)

struct ChildProcess::Pipes {
    PROCESS_INFORMATION process{};
    HANDLE toChild = nullptr, fromChild = nullptr;
    // Bytes written or read, 0 at the end or on failure.
    std::size_t write(const char* data, std::size_t size) {
        DWORD n = 0;
        return WriteFile(toChild, data, static_cast<DWORD>(size), &n, nullptr) ? n : 0;
    }
    std::size_t read(char* data, std::size_t size) {
        DWORD n = 0;
        return ReadFile(fromChild, data, static_cast<DWORD>(size), &n, nullptr) ? n : 0;
    }
    void closeInput() {
        if (toChild) CloseHandle(toChild);
        toChild = nullptr;
    }
    int wait() {
        DWORD status = 0;
        WaitForSingleObject(process.hProcess, INFINITE);
        GetExitCodeProcess(process.hProcess, &status);
        return static_cast<int>(status);
    }
    ~Pipes() {
        closeInput();
        for (HANDLE h : {fromChild, process.hProcess, process.hThread})
            if (h) CloseHandle(h);
    }
};

// Helpers are built into the directory of the running test.
std::string helperPath(const std::string& name) {
    char self[MAX_PATH + 1] = {0};
    std::string path(self, GetModuleFileNameA(nullptr, self, MAX_PATH));
    return path.substr(0, path.find_last_of("\\/") + 1) + name + ".exe";
}

ChildProcess::ChildProcess(const std::string& program, const std::vector<std::string>& arguments)
    : m_pipes(new Pipes) {
    SECURITY_ATTRIBUTES inherit{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    HANDLE childIn = nullptr, childOut = nullptr;
    DWORD error = 0;
    if (!CreatePipe(&childIn, &m_pipes->toChild, &inherit, 0) ||
        !CreatePipe(&m_pipes->fromChild, &childOut, &inherit, 0)) {
        error = GetLastError();
    } else {
        SetHandleInformation(m_pipes->toChild, HANDLE_FLAG_INHERIT, 0);
        SetHandleInformation(m_pipes->fromChild, HANDLE_FLAG_INHERIT, 0);
        STARTUPINFOA startup{};
        startup.cb = sizeof startup;
        startup.dwFlags = STARTF_USESTDHANDLES;
        startup.hStdInput = childIn;
        startup.hStdOutput = childOut;
        startup.hStdError = GetStdHandle(STD_ERROR_HANDLE);
        std::string command = "\"" + program + "\"";
        for (const std::string& argument : arguments) command += " \"" + argument + "\"";
        // Starting a process can fail for a moment while the system is busy
        // (seen under Wine with several tests starting processes at once).
        for (int attempt = 0; attempt < 5; ++attempt, Sleep(200)) {
            error = CreateProcessA(nullptr, &command[0], nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                                   &m_pipes->process) ? 0 : GetLastError();
            if (!error) break;
        }
    }
    for (HANDLE h : {childIn, childOut})
        if (h) CloseHandle(h);
    if (error) {
        delete m_pipes;
        throw std::runtime_error("cannot start " + program + " (error " + std::to_string(error) + ")");
    }
}

#else

struct ChildProcess::Pipes {
    pid_t pid = -1;
    int toChild = -1, fromChild = -1;
    std::size_t write(const char* data, std::size_t size) {
        ssize_t n = ::write(toChild, data, size);
        return n > 0 ? static_cast<std::size_t>(n) : 0;
    }
    std::size_t read(char* data, std::size_t size) {
        ssize_t n = ::read(fromChild, data, size);
        return n > 0 ? static_cast<std::size_t>(n) : 0;
    }
    void closeInput() {
        if (toChild >= 0) close(toChild);
        toChild = -1;
    }
    int wait() {
        int status = 0;
        waitpid(pid, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }
    ~Pipes() {
        closeInput();
        if (fromChild >= 0) close(fromChild);
    }
};

std::string helperPath(const std::string& name) {
    char self[4096];
    ssize_t n = readlink("/proc/self/exe", self, sizeof self - 1);
    std::string path(self, n > 0 ? static_cast<std::size_t>(n) : 0);
    return path.substr(0, path.find_last_of('/') + 1) + name;
}

ChildProcess::ChildProcess(const std::string& program, const std::vector<std::string>& arguments)
    : m_pipes(new Pipes) {
    // Close-on-exec, so that no other child inherits this one's pipe ends:
    // a copy held elsewhere would hide this child's death (no end of
    // output) from readLine.
    int in[2], out[2];
    if (pipe2(in, O_CLOEXEC) != 0 || pipe2(out, O_CLOEXEC) != 0)
        throw std::runtime_error("pipe failed");
    std::vector<char*> argv{const_cast<char*>(program.c_str())};
    for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    pid_t pid = fork();
    if (pid == 0) {
        dup2(in[0], 0);
        dup2(out[1], 1);
        for (int fd : {in[0], in[1], out[0], out[1]}) close(fd);
        execv(program.c_str(), argv.data());
        _exit(127);
    }
    close(in[0]);
    close(out[1]);
    m_pipes->pid = pid;
    m_pipes->toChild = in[1];
    m_pipes->fromChild = out[0];
    signal(SIGPIPE, SIG_IGN);
    if (pid < 0) {
        delete m_pipes;
        throw std::runtime_error("fork failed");
    }
}

#endif

ChildProcess::~ChildProcess() {
    wait();
    delete m_pipes;
}

void ChildProcess::writeLine(const std::string& line) {
    std::string data = line + "\n";
    for (std::size_t done = 0, n; done < data.size(); done += n)
        if ((n = m_pipes->write(data.data() + done, data.size() - done)) == 0)
            throw std::runtime_error("cannot write to child");
}

bool ChildProcess::readLine(std::string& line) {
    std::size_t end;
    while ((end = m_pending.find('\n')) == std::string::npos) {
        char buffer[65536];
        std::size_t got = m_pipes->read(buffer, sizeof buffer);
        if (got == 0) return false;
        m_pending.append(buffer, got);
    }
    line = m_pending.substr(0, end);
    if (!line.empty() && line.back() == '\r') line.pop_back();
    m_pending.erase(0, end + 1);
    return true;
}

int ChildProcess::wait() {
    if (m_status < 0) {
        m_pipes->closeInput();
        m_status = m_pipes->wait();
    }
    return m_status;
}

bool readStdinLine(std::string& line) {
    if (!std::getline(std::cin, line)) return false;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    return true;
}

void writeStdoutLine(const std::string& line) {
#if defined(_WIN32)
    static bool binary = (_setmode(_fileno(stdout), _O_BINARY), true);
    (void)binary;
#endif
    std::fwrite(line.data(), 1, line.size(), stdout);
    std::fputc('\n', stdout);
    std::fflush(stdout);
}

} // namespace xch_test
