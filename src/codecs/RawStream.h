#pragma once
#include "ports/ByteSource.h"
#include <cstdint>
#include <ctime>
#include <vector>

#include <libraw/libraw.h>

/// The thread library of LibRaw. Declared here because its header belongs to one compiler only.
extern "C" {
int omp_get_num_procs();
int omp_get_level();
void omp_set_num_threads(int count);
}

namespace pixelhain {

/// Processor time that one thread may spend, counted from when this was made.
class ThreadTimeLimit {
public:
    explicit ThreadTimeLimit(double seconds)
        : end_(now() + seconds)
    {
    }
    [[nodiscard]] bool isOver() const { return now() > end_; }

private:
    static double now();
    double end_;
};

/// Hands a byte source to LibRaw. The library reads byte by byte, goes on at the end of a file as
/// if there were more, and follows what a broken file says for minutes; this throws the library's
/// own exceptions, which do not leave it, when the time is over or when the reader of directories
/// has asked too often for what is not there.
class RawStream final : public LibRaw_abstract_datastream {
public:
    RawStream(ByteSource const& bytes, ThreadTimeLimit const& limit);

    /// Pixels are read from now on: what is missing is only counted.
    void expectPixels() { expectsPixels_ = true; }
    /// Whether more pixels were asked for behind the end of the file than decoders read ahead.
    [[nodiscard]] bool isCut() const { return missing_ > bytes_.size() / 64; }
    /// Whether pixels were there, at least an eighth of what was asked for in vain. The decoders
    /// make a picture all the same, of whatever lies in memory.
    [[nodiscard]] bool hasPixels() const { return got_ > missing_ / 8; }

    int valid() override { return 1; }
    int read(void* into, size_t size, size_t count) override;
    int seek(INT64 offset, int whence) override;
    INT64 tell() override { return static_cast<INT64>(position_); }
    INT64 size() override { return static_cast<INT64>(bytes_.size()); }
    int get_char() override;
    char* gets(char* into, int size) override;
    int scanf_one(char const* format, void* value) override;
    int eof() override { return position_ >= bytes_.size() ? 1 : 0; }
    void* make_jas_stream() override { return nullptr; }

private:
    [[nodiscard]] bool fill();
    void count();
    void noteEnd(std::uint64_t missing);

    ByteSource const& bytes_;
    ThreadTimeLimit const& limit_;
    std::uint64_t position_ = 0;
    std::uint64_t windowStart_ = 0;
    std::size_t windowLength_ = 0;
    std::vector<std::uint8_t> window_;
    std::uint32_t calls_ = 0;
    std::uint32_t ends_ = 0;
    bool expectsPixels_ = false;
    std::uint64_t missing_ = 0;
    std::uint64_t got_ = 0;
};

} // namespace pixelhain
