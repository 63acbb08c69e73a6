#pragma once

#include "base/Bytes.h"
#include "simulator/messages/FirmwareFault.h"

namespace tavocal::simulator {

// The fault has to do with the answers to this command.
bool spoils(const FirmwareFault& fault, FirmwareCommand command);

// With this fault the command is not even carried out.
bool preventsCommand(const FirmwareFault& fault);

// What becomes of a good answer. Empty for none at all.
// REQUIRES: the fault spoils the command.
Bytes spoiled(Bytes answer, const FirmwareFault& fault);

}  // namespace tavocal::simulator
