#pragma once

namespace velmorant
{

// Ends the process with an exit status: 1 for a completed run, 0 for one that ended with an error
// report, -1 for a usage text or an ECAT 6 file that lacks something. Nothing else in the package
// ends a process, but for `abort_run`.
[[noreturn]] void end_run(int status);

// Ends the process by SIGABRT, once what it has printed is written out.
[[noreturn]] void abort_run();

// A program that lives on where a run ends, to make one run after another, brings definitions of
// its own, which throw: they are taken instead of these, and what the run held is released on the
// way.

} // namespace velmorant
