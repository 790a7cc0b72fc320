#pragma once

// What libfault.so, loaded in front of libc, does to the calls of its process: it counts those of
// each family, makes one of them fail, and keeps the balance of allocations. The symbols are weak:
// null where it is not loaded.

enum FaultFamily {
  kMemoryFault,  // malloc, calloc, realloc, and what is built on them: strdup, operator new, …
  kOpenFault,    // open, fopen
  kForkFault,    // fork
  kPopenFault,   // popen
  kSystemFault,  // system
  kThreadFault,  // pthread_create
  kReadFault,    // read, fgets, fread
  kNameFault,    // mktemp
  kFaultFamilies
};

extern "C" {

/// From now on the family's call number `nth` (from 1) fails, and with `lasting` all behind it.
__attribute__((weak)) void faultArm(FaultFamily family, long nth, bool lasting);

/// Lets calls pass again; returns how many have failed.
__attribute__((weak)) long faultDisarm();

/// Blocks allocated and not released, in the whole process.
__attribute__((weak)) long faultBalance();

/// Calls since the last question that were let pass although it was their turn: see isBeyondHelp.
__attribute__((weak)) long faultSpared();

/// Blocks since the last question that a failing regcomp of glibc has lost: not in the balance.
__attribute__((weak)) long faultLost();

}  // extern "C"
