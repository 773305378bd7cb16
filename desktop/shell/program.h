#pragma once

namespace korvel::desktop {

/// The program, with the ports of this machine. Its exit status: 0, or 1 when it could not start.
int RunProgram(int argc, char** argv);

}  // namespace korvel::desktop
