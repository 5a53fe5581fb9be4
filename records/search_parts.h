#pragma once

#include <chrono>

/// How long a part of a search lasts, in which the windows are neither painted nor listened to.
inline constexpr std::chrono::milliseconds kSearchPart{25};
/// At first nobody is told of a search, nor listened to: its parts may be longer, which costs less. It ends
/// before the half second after which the user is told.
inline constexpr std::chrono::milliseconds kSearchSilence{400};
