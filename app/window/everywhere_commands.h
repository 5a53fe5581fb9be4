#pragma once

/// Runs the dialog of the search through all tables, and goes to the place that the user chooses there.
void findEverywhere();
