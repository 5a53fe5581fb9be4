#pragma once

#include "views/form/date_field_editor.h"

/// What the date editors of the form do with the messages of their control.

/// Registers the editor, whose control was created, and puts the procedure in front of its own. An
/// editor for which the registry has no slot left stays a plain text.
void attachDateEditor(DateFieldEditor& editor);

/// Forgets an editor that is about to die.
void detachDateEditor(const DateFieldEditor& editor);
