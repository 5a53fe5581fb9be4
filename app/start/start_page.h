#pragma once

/// What is shown once the program has started: the last session, if the user wants it reopened, else no
/// page.
void showFirstPage();
