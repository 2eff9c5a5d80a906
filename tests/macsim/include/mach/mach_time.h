#pragma once
#pragma GCC system_header // a record and a function of one name, as the system has it

#include <mach/mach.h>

struct mach_timebase_info {
    std::uint32_t numer;
    std::uint32_t denom;
};
using mach_timebase_info_data_t = mach_timebase_info;
using mach_timebase_info_t = mach_timebase_info*;

extern "C" kern_return_t mach_timebase_info(mach_timebase_info_t info);
