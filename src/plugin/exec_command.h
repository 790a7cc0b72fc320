#pragma once

namespace libquilp {

/// Runs argv[0] (searched along PATH when it holds no "/") with `argv`, its output going to
/// /dev/null, and waits for it without a time limit. Returns its exit status, or 1 when a signal
/// ended it.
///
/// It handles no error of its own: a child that cannot be forked, or a wait that a signal
/// interrupts, gives status 0 (the interrupted wait goes on all the same, until the child has
/// ended). Where the program cannot be executed the forked child returns from here too, with status
/// 0. ShellCall, its only user, ends that child.
int ExecCommand(char** argv);

}  // namespace libquilp
