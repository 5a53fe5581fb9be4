#pragma once

/// Keeps from every edit control that this process makes from now on, those of the system's own dialogs
/// included, what base/showable_text.h says no layout may meet, whichever way it comes: set, pasted, typed,
/// or left over where the letter before a mark is deleted. A text that is set or pasted is altered as
/// showableText does, a typed mark that can't stand is refused, and a deleted letter takes its marks
/// along. Who sets a text that is to be read back asks isShowable before.
///
/// Nor does one paint into what is no device context, whatever message asks for it.
///
/// A paste after which the control would hold more than kMostShownCount characters
/// (views/shared/shown_text.h) is refused with a message. To be called before each edit control and each
/// dialog is made: the first call costs as much as an edit control, which not every start needs; further
/// calls change nothing. User-interface thread only.
void guardEditControls();
