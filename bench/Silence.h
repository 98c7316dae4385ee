#pragma once

#include <cstdio>

#include <fcntl.h>
#include <unistd.h>

namespace korvane::bench {

/// Swallows what is written to standard output meanwhile: each transaction says a line there at its end.
class Silence {
public:
    Silence() {
        std::fflush(stdout);
        ::dup2(nowhere_, STDOUT_FILENO);
    }
    Silence(const Silence&) = delete;
    Silence& operator=(const Silence&) = delete;
    ~Silence() {
        std::fflush(stdout);
        ::dup2(output_, STDOUT_FILENO);
        ::close(output_);
        ::close(nowhere_);
    }

private:
    const int output_ = ::dup(STDOUT_FILENO);
    const int nowhere_ = ::open("/dev/null", O_WRONLY);
};

} // namespace korvane::bench
