#pragma once

#include <cstddef>

#define CTL_KERN 1
#define KERN_PROC 14
#define KERN_PROC_PID 1
#define KERN_PROCARGS2 49

extern "C" {
int sysctl(int* name, unsigned parts, void* old, std::size_t* oldLength, void* replacement,
           std::size_t replacementLength);
int sysctlbyname(const char* name, void* old, std::size_t* oldLength, void* replacement, std::size_t replacementLength);
}
