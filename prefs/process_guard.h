#pragma once

namespace velmorant
{

// Prepares a process so that whatever happens around it ends a run, or fails a write, in the way
// that the package knows. A program calls this before anything else.
//
// - A standard stream that is closed becomes /dev/null: no file that is opened later takes its place,
//   so no message can get into an image.
// - A reader of standard output that goes away, and a limit on the size of files, fail a write
//   instead of ending the process by a signal.
// - Where `new` finds no memory the run ends with "can't allocate memory".
void guard_process();

} // namespace velmorant
