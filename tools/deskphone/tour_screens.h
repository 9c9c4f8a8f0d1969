// A step of the tour: a factory menu, and a directory as a server sends it.
#pragma once

#include "phone.h"

namespace deskphone {

void tour_screens(Phone& phone);

}  // namespace deskphone
