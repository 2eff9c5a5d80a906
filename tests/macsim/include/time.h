// The C library's header, and the one clock of macOS that it lacks. `include_next` is an extension.
#pragma GCC system_header
#include_next <time.h>

#ifndef MACSIM_TIME_H
#define MACSIM_TIME_H

#ifdef __cplusplus
#include <cstdint>

#define CLOCK_UPTIME_RAW 8

extern "C" std::uint64_t clock_gettime_nsec_np(int clock);
#endif

#endif
