#include "views/form_view.h"

void FormView::show() {
  ShowWindow(wrapper_.window(), SW_SHOW);
}

void FormView::hide() {
  ShowWindow(wrapper_.window(), SW_HIDE);
}
