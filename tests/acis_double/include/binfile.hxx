// TEST DOUBLE of the ACIS geometry kernel (see acis.hxx): the file
// interfaces that save and restore go through.
//
// A BinaryFile implementation supplies four hooks: read and write of raw
// bytes, and set_mark / goto_mark (tell and seek). The kernel encodes its
// values on top of them; the stand-in's encoding is its own (savres.hxx).
#pragma once

#include <string>

#include "acis.hxx"

class ACIS_DOUBLE_API FileInterface {
public:
    virtual ~FileInterface();
};

class ACIS_DOUBLE_API BinaryFile : public FileInterface {
public:
    BinaryFile();
    ~BinaryFile() override;

    // The current position (of the last read or write).
    virtual FilePosition set_mark() = 0;
    // Moves to `position`; returns the position moved to.
    virtual FilePosition goto_mark(FilePosition position) = 0;

    // ---- the kernel's value encoding (one tag byte, then little-endian data)
    void write_long(long value);
    long read_long();
    void write_real(double value);
    double read_real();
    void write_string(const char* text);
    std::string read_string();
    void write_id(const char* id);
    std::string read_id();
    void write_pointer(long index);
    long read_pointer();
    void write_bytes(const void* data, std::size_t length);
    // Reads exactly `length` bytes; a short read is an error.
    void read_bytes(void* data, std::size_t length);

protected:
    // Reads at most `length` bytes; returns how many were read.
    virtual std::size_t read(void* buffer, std::size_t length, logical swap) = 0;
    // Writes `length` bytes.
    virtual void write(const void* data, std::size_t length, logical swap) = 0;

private:
    void expect_tag(char tag);
    void write_int32(char tag, long value);
    long read_int32(char tag);
    std::string read_text(char tag);
    void write_text(char tag, const char* text);
};
