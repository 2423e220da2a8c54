// Test support: a second process started from a test, talked to through a
// pipe in each direction, one UTF-8 line per message.
#pragma once

#include <string>
#include <vector>

namespace xch_test {

// Full path of a helper executable built with the tests.
std::string helperPath(const std::string& name);

class ChildProcess {
public:
    // Starts `program` with `arguments`; its standard input and output are
    // connected to this object.
    explicit ChildProcess(const std::string& program, const std::vector<std::string>& arguments = {});
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    // Writes `line` and a line feed to the child's standard input.
    void writeLine(const std::string& line);
    // Reads one line (without its line end) from the child's standard
    // output; false at end of output.
    bool readLine(std::string& line);
    // Closes the child's input, waits for it to end, returns its status.
    int wait();

private:
    struct Pipes; // the operating system's handles
    Pipes* m_pipes;
    std::string m_pending;
    int m_status = -1;
};

// The other end, used inside a helper executable: lines on standard input
// and output.
bool readStdinLine(std::string& line);
void writeStdoutLine(const std::string& line);

} // namespace xch_test
