// The steps of the tour. A family that has something to show adds a step in a file of its own, and
// a line to the table in tour.cpp; a step takes less than a screenful and throws Failure when the
// phone does not do what it shows.
#pragma once

#include "phone.h"

namespace deskphone {

struct TourStep {
  const char* title;
  void (*run)(Phone& phone);
};

/// Throws Failure, naming what was expected, unless it holds.
void expect_on_tour(bool holds, const char* what);

/// Steps of other families.
void tour_messages(Phone& phone);
void tour_dialrules(Phone& phone);

}  // namespace deskphone
