#pragma once

#include "base/name_list.h"
#include "base/string.h"

/// The five most recent search texts, newest first, in the registry values "FI1" to "FI5" of
/// "RecentUserFinds". Nothing is cached. Both throw std::bad_alloc.
class RecentFinds {
 public:
  static constexpr int kCount = 5;

  /// Replaces the content of `finds` by the texts, newest first; empty and missing ones are skipped.
  static void list(NameList& finds);

  /// Makes `text` the newest. One that is in the list (the same letter for letter) moves to the front,
  /// else the oldest falls off. The empty text is one like the others, which a free place counts as.
  static void remember(const String& text);
};
