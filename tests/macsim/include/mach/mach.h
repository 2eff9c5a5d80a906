// What the readers call of Mach, under the system's names. Only for the build of the readers over the fakes.
#pragma once

#include <cstdint>

using kern_return_t = int;
using integer_t = int;
using natural_t = unsigned int;
using mach_port_t = natural_t;
using task_t = mach_port_t;
using host_t = mach_port_t;
using vm_address_t = std::uintptr_t;
using vm_size_t = std::uintptr_t;
using mach_msg_type_number_t = natural_t;
using processor_flavor_t = int;
using processor_info_array_t = integer_t*;
using host_flavor_t = integer_t;
using host_info64_t = integer_t*;

#define KERN_SUCCESS 0
#define KERN_FAILURE 5
#define MACH_PORT_NULL 0
#define PROCESSOR_CPU_LOAD_INFO 2
#define HOST_VM_INFO64 4
#define HOST_VM_INFO64_COUNT static_cast<mach_msg_type_number_t>(38)

extern "C" {
extern mach_port_t mach_task_self_;
#define mach_task_self() mach_task_self_

host_t mach_host_self();
kern_return_t mach_port_deallocate(task_t task, mach_port_t name);
kern_return_t vm_deallocate(task_t task, vm_address_t address, vm_size_t size);
kern_return_t host_processor_info(host_t host, processor_flavor_t flavor, natural_t* processors,
                                  processor_info_array_t* info, mach_msg_type_number_t* count);
kern_return_t host_statistics64(host_t host, host_flavor_t flavor, host_info64_t info, mach_msg_type_number_t* count);
kern_return_t host_page_size(host_t host, vm_size_t* size);
}
