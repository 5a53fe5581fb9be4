#pragma once

#include <string>
#include <string_view>

namespace store {

/// How dates in a file compare, whatever ISO form each has: '2001-03-09', '2001-03-09 00:00:00.000' and
/// '2001-03-09T00:00Z' are one moment.

/// The name under which statements ask for it.
inline constexpr const char* kMomentCollation = "quivane_moment";

/// `text` in the one form "YYYY-MM-DD HH:MM:SS[.mmm]" when it is a day, with or without a time, that
/// parseIsoDate reads. Every other text, a time of day alone included, as it is.
std::string momentText(std::string_view text);

/// Negative, 0 or positive, as the momentText of both compare byte by byte.
int compareMoments(std::string_view left, std::string_view right);

/// All texts whose momentText is at or after (at or before) `moment`, which is such a text, are byte by byte
/// at or after lowestText (before endText): what lets an index on the plain texts find them.
std::string lowestText(std::string_view moment);
std::string endText(std::string_view moment);

}  // namespace store
