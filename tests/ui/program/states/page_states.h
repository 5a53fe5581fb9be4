#pragma once

#include <cstddef>
#include <span>

#include "tests/ui/program/states/modelled_pages.h"

/// A state of the pages in which everything is done.
struct State {
  const char* name;
  std::size_t database;
  void (*prepare)(Pages& pages);
};

std::span<const State> pageStates();
