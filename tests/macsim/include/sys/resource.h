// The C library's header, and what macOS has there beside it. `include_next` is an extension.
#pragma GCC system_header
#include_next <sys/resource.h>

#ifndef MACSIM_SYS_RESOURCE_H
#define MACSIM_SYS_RESOURCE_H

#define RUSAGE_INFO_V6 6
using rusage_info_t = void*;

#endif
