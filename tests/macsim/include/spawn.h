#pragma once
#pragma GCC system_header

#include_next <spawn.h>

#define POSIX_SPAWN_CLOEXEC_DEFAULT 0 // it takes a kernel that knows of it
