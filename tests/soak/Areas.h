// The operations of each area of the library that the soak calls, grouped with the fixtures they need.
#pragma once

#include "Soak.h"

namespace soak {

void SoakRegistry(Runner& runner);
void SoakRegistryClass(Runner& runner);
void SoakDesktop(Runner& runner);  // clipboard, foreground grabber, sounds, waits
void SoakFiles(Runner& runner);    // version resources, text files
void SoakProcesses(Runner& runner);
void SoakCom(Runner& runner);
void SoakSystem(Runner& runner);  // group membership, OS helpers, dynamic loading, key presses
void SoakSupport(Runner& runner);
void SoakCapi(Runner& runner);  // the C interface's handles

}  // namespace soak
