// What the readers ask about processes.
#pragma once

#include <sys/proc_info.h>
#include <sys/resource.h>

#include <cstdint>

extern "C" {
int proc_listallpids(void* buffer, int size);
int proc_pidinfo(int pid, int flavor, std::uint64_t arg, void* buffer, int size);
int proc_pidpath(int pid, void* buffer, std::uint32_t size);
int proc_pid_rusage(int pid, int flavor, rusage_info_t* buffer);
}
