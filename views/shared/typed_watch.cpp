#include "views/shared/typed_watch.h"

void (*typedWatch)() noexcept = nullptr;
