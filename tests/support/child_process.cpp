#include "support/child_process.h"

#include <cstdio>
#include <iostream>
#include <stdexcept>

#if defined(_WIN32)
#  include <fcntl.h>
#  include <io.h>
#  include <windows.h>
#else
#  include <signal.h>
#  include <sys/wait.h>
#  include <unistd.h>
#endif

namespace xch_test {

// Helpers are built into the directory of the running test.
std::string helperPath(const std::string& name) {
#if defined(_WIN32)
    char self[MAX_PATH + 1] = {0};
    DWORD n = GetModuleFileNameA(nullptr, self, MAX_PATH);
    std::string dir(self, n);
    return dir.substr(0, dir.find_last_of("\\/") + 1) + name + ".exe";
#else
    char self[4096];
    ssize_t n = readlink("/proc/self/exe", self, sizeof self - 1);
    std::string dir(self, n > 0 ? static_cast<std::size_t>(n) : 0);
    return dir.substr(0, dir.find_last_of('/') + 1) + name;
#endif
}

#if defined(_WIN32)

struct ChildProcess::Impl {
    PROCESS_INFORMATION process{};
    HANDLE toChild = nullptr;
    HANDLE fromChild = nullptr;
    std::string pending;
    bool waited = false;
    DWORD status = 0;
};

namespace {
std::string quote(const std::string& arg) {
    std::string out = "\"";
    for (char c : arg) {
        if (c == '"') out += '\\';
        out += c;
    }
    return out + "\"";
}
} // namespace

ChildProcess::ChildProcess(const std::string& program, const std::vector<std::string>& args)
    : m_impl(new Impl) {
    SECURITY_ATTRIBUTES inherit{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    HANDLE childIn = nullptr, childOut = nullptr;
    // Closes whatever was opened when the child cannot be started.
    auto abandon = [&](const std::string& message) {
        for (HANDLE h : {childIn, childOut, m_impl->toChild, m_impl->fromChild})
            if (h) CloseHandle(h);
        delete m_impl;
        throw std::runtime_error(message);
    };
    if (!CreatePipe(&childIn, &m_impl->toChild, &inherit, 0) ||
        !CreatePipe(&m_impl->fromChild, &childOut, &inherit, 0))
        abandon("CreatePipe failed");
    SetHandleInformation(m_impl->toChild, HANDLE_FLAG_INHERIT, 0);
    SetHandleInformation(m_impl->fromChild, HANDLE_FLAG_INHERIT, 0);
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = childIn;
    startup.hStdOutput = childOut;
    startup.hStdError = GetStdHandle(STD_ERROR_HANDLE);
    std::string command = quote(program);
    for (const std::string& arg : args) command += " " + quote(arg);
    // Starting a process can fail for a moment while the system is busy
    // (seen under Wine with several tests starting processes at once).
    DWORD error = 0;
    for (int attempt = 0; attempt < 5; ++attempt) {
        if (CreateProcessA(nullptr, &command[0], nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                           &m_impl->process)) {
            error = 0;
            break;
        }
        error = GetLastError();
        Sleep(200);
    }
    if (error)
        abandon("cannot start " + program + " (error " + std::to_string(error) + ")");
    CloseHandle(childIn);
    CloseHandle(childOut);
}

ChildProcess::~ChildProcess() {
    closeInput();
    if (!m_impl->waited) wait();
    if (m_impl->fromChild) CloseHandle(m_impl->fromChild);
    CloseHandle(m_impl->process.hProcess);
    CloseHandle(m_impl->process.hThread);
    delete m_impl;
}

void ChildProcess::writeLine(const std::string& line) {
    std::string data = line + "\n";
    DWORD written = 0;
    if (!WriteFile(m_impl->toChild, data.data(), static_cast<DWORD>(data.size()), &written, nullptr) ||
        written != data.size())
        throw std::runtime_error("cannot write to child");
}

bool ChildProcess::readLine(std::string& line) {
    for (;;) {
        std::size_t end = m_impl->pending.find('\n');
        if (end != std::string::npos) {
            line = m_impl->pending.substr(0, end);
            if (!line.empty() && line.back() == '\r') line.pop_back();
            m_impl->pending.erase(0, end + 1);
            return true;
        }
        char buffer[65536];
        DWORD got = 0;
        if (!ReadFile(m_impl->fromChild, buffer, sizeof buffer, &got, nullptr) || got == 0)
            return false;
        m_impl->pending.append(buffer, got);
    }
}

void ChildProcess::closeInput() {
    if (m_impl->toChild) {
        CloseHandle(m_impl->toChild);
        m_impl->toChild = nullptr;
    }
}

int ChildProcess::wait() {
    if (!m_impl->waited) {
        closeInput();
        WaitForSingleObject(m_impl->process.hProcess, INFINITE);
        GetExitCodeProcess(m_impl->process.hProcess, &m_impl->status);
        m_impl->waited = true;
    }
    return static_cast<int>(m_impl->status);
}

#else

struct ChildProcess::Impl {
    pid_t pid = -1;
    int toChild = -1;
    int fromChild = -1;
    std::string pending;
    bool waited = false;
    int status = 0;
};

ChildProcess::ChildProcess(const std::string& program, const std::vector<std::string>& args)
    : m_impl(new Impl) {
    int in[2], out[2];
    if (pipe(in) != 0 || pipe(out) != 0)
        throw std::runtime_error("pipe failed");
    std::vector<char*> argv;
    argv.push_back(const_cast<char*>(program.c_str()));
    for (const std::string& arg : args) argv.push_back(const_cast<char*>(arg.c_str()));
    argv.push_back(nullptr);
    pid_t pid = fork();
    if (pid < 0)
        throw std::runtime_error("fork failed");
    if (pid == 0) {
        dup2(in[0], 0);
        dup2(out[1], 1);
        close(in[0]); close(in[1]); close(out[0]); close(out[1]);
        execv(program.c_str(), argv.data());
        _exit(127);
    }
    close(in[0]);
    close(out[1]);
    m_impl->pid = pid;
    m_impl->toChild = in[1];
    m_impl->fromChild = out[0];
    signal(SIGPIPE, SIG_IGN);
}

ChildProcess::~ChildProcess() {
    closeInput();
    if (!m_impl->waited) wait();
    if (m_impl->fromChild >= 0) close(m_impl->fromChild);
    delete m_impl;
}

void ChildProcess::writeLine(const std::string& line) {
    std::string data = line + "\n";
    std::size_t done = 0;
    while (done < data.size()) {
        ssize_t n = ::write(m_impl->toChild, data.data() + done, data.size() - done);
        if (n <= 0) throw std::runtime_error("cannot write to child");
        done += static_cast<std::size_t>(n);
    }
}

bool ChildProcess::readLine(std::string& line) {
    for (;;) {
        std::size_t end = m_impl->pending.find('\n');
        if (end != std::string::npos) {
            line = m_impl->pending.substr(0, end);
            m_impl->pending.erase(0, end + 1);
            return true;
        }
        char buffer[65536];
        ssize_t got = ::read(m_impl->fromChild, buffer, sizeof buffer);
        if (got <= 0) return false;
        m_impl->pending.append(buffer, static_cast<std::size_t>(got));
    }
}

void ChildProcess::closeInput() {
    if (m_impl->toChild >= 0) {
        close(m_impl->toChild);
        m_impl->toChild = -1;
    }
}

int ChildProcess::wait() {
    if (!m_impl->waited) {
        closeInput();
        int status = 0;
        waitpid(m_impl->pid, &status, 0);
        m_impl->status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
        m_impl->waited = true;
    }
    return m_impl->status;
}

#endif

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
