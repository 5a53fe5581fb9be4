#pragma once

#include <string>

#include "data/handles/history_step.h"

/// What is taken back or done again, in words: "Undo deletion of 'Ulysses'", or "Undo" alone without a step.
/// A long name of the record is cut.
std::wstring historyText(HistoryWay way, const HistoryStep& step);
