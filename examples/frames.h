// How the example host and worker put documents on a byte stream: each
// frame is a header line "<kind> <byte count>" followed by that many bytes,
// the UTF-8 text of one JSON document. Kinds: "command" (host to worker),
// "info", "envelope" and "result" (worker to host).
#pragma once

#include <cstdio>
#include <string>

namespace example {

// Puts stdin and stdout into binary mode (Windows), so frames pass intact.
void useBinaryStandardStreams();

// Writes one frame and flushes.
void writeFrame(std::FILE* out, const std::string& kind, const std::wstring& text);

// Reads one frame; false at end of input. Throws std::runtime_error on a
// malformed frame.
bool readFrame(std::FILE* in, std::string& kind, std::wstring& text);

} // namespace example
