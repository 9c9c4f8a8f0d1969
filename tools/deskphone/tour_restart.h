// The last step of the tour: the phone ends, and starts again in a new process.
#pragma once

#include "phone.h"

namespace deskphone {

void tour_restart(Phone& phone);

}  // namespace deskphone
