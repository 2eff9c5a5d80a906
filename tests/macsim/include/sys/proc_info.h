// Kinds of records that the kernel has of a process.
#pragma once

#define PROC_PIDTBSDINFO 3
#define PROC_PIDTASKINFO 4
#define PROC_PIDVNODEPATHINFO 9
#define PROC_PIDT_SHORTBSDINFO 13
