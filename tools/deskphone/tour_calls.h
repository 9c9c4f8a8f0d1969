// A step of the tour: an incoming call, and what the history shows of it.
#pragma once

#include "phone.h"

namespace deskphone {

void tour_calls(Phone& phone);

}  // namespace deskphone
