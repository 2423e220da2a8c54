// How a host and a translator worker put documents on a byte stream: each
// frame is a header line "<kind> <byte count>" followed by that many bytes,
// the UTF-8 text of one JSON document. Kinds: "command" (host to worker),
// "info", "envelope" and "result" (worker to host).
//
// The peer may die at any moment. Nothing here waits for it forever: its
// death ends our input (end of file) and makes our writes fail, and both
// are reported as errors instead of ending the process silently.
//
// Used by the example host and worker, the Open CASCADE worker and
// `xch import`; a small static library beside the core, which knows nothing
// of pipes.
#pragma once

#include <cstdio>
#include <string>

namespace xch {
namespace frames {

// Prepares standard input and output for frames: binary mode (Windows), and
// on POSIX systems a write to a peer that has gone fails with an error
// (EPIPE) instead of killing this process with SIGPIPE.
void prepareStandardStreams();

// Writes one frame and flushes. Throws std::runtime_error "cannot write a
// frame: <reason>" when the peer has gone.
void writeFrame(std::FILE* out, const std::string& kind, const std::wstring& text);

// Reads one frame; false when the input ends between frames. Throws
// std::runtime_error "input ended inside a frame" when it ends within one
// (the peer died while writing it), "malformed frame header" on anything
// that is not a frame. Memory grows with the bytes that arrive, never from
// the declared size alone.
bool readFrame(std::FILE* in, std::string& kind, std::wstring& text);

// The same, keeping the frame's bytes as read (UTF-8). When it throws,
// `bytes` holds what had arrived of the frame, for a caller that wants to
// look at a frame its peer did not finish.
bool readFrameBytes(std::FILE* in, std::string& kind, std::string& bytes);

} // namespace frames
} // namespace xch
