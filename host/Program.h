#pragma once

namespace Meseta47::host {

/// The whole program: takes the arguments, does what their verb asks for and returns the exit code of host/Failure.h.
/// Whatever goes wrong, the lack of memory included, ends in lines on stderr that begin with "urdimbre: "; nothing is
/// thrown. Once a process at a time: the work has the process's application object.
int runProgram(int argc, char const* const* argv);

/// The same for what main() was given, in UTF-8 whatever the system.
int runCommandLine(int argc, char const* const* argv);

}  // namespace Meseta47::host
