#pragma once

// What libfault.so, loaded in front of libc, does to the calls of its process: it makes one of a
// family fail, and keeps the balance of allocations. Null where it is not loaded.

enum FaultFamily {
  kMemory,
  kOpen,
  kSpawn,
  kPopen,
  kSystem,
  kThread,
  kRead,
  kName,
  kGuard,
  kFamilies
};

extern "C" {

/// From now on the family's call number `nth` (from 1) fails, and with `lasting` all behind it.
__attribute__((weak)) void faultArm(int family, bool lasting, long nth);

/// What has happened since, and the blocks of the process that are not released. Calls pass again.
struct FaultCount {
  long failed;
  long spared;  // passed although it was their turn: no caller could help what would follow
};
__attribute__((weak)) FaultCount faultDisarm();
__attribute__((weak)) long faultBalance();

}  // extern "C"
