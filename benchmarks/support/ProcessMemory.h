#pragma once

#include <unistd.h>

#include <sys/resource.h>

#include <fstream>

namespace NELK
{

/// Bytes of this process that lie in memory.
inline double residentBytes()
{
    std::ifstream statistics("/proc/self/statm");
    double wholePages = 0.0;
    double residentPages = 0.0;
    statistics >> wholePages >> residentPages;
    return residentPages * static_cast<double>(sysconf(_SC_PAGESIZE));
}

/// The most bytes of this process that have lain in memory at one time.
inline double peakResidentBytes()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) * 1024.0;
}

} // namespace NELK
