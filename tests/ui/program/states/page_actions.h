#pragma once

#include <span>

#include "tests/ui/program/states/modelled_pages.h"

/// What the user does. Each does it to the window and to the model.
struct Action {
  const char* name;
  void (*go)(Pages& pages);
};

std::span<const Action> pageActions();

/// Shows a page by its tab.
template <int kPage>
void tab(Pages& pages) {
  pages.showPage(kPage);
}

/// A file that is not there is to be opened: no database is open then.
void openMissing(Pages& pages);
/// A file is to be opened, and its user cancels.
void cancelOpen(Pages& pages);
/// A new database is begun, for which the former one is closed, and its user cancels.
void cancelNew(Pages& pages);
