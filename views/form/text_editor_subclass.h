#pragma once

#include "views/form/text_field_editor.h"

/// What the text editors of the form do with the messages of their control.

/// Registers the editor, whose control was created, and puts the procedure in front of its own. An
/// editor for which the registry has no slot left stays a plain control.
void attachTextEditor(TextFieldEditor& editor);

/// Forgets an editor that is about to die.
void detachTextEditor(const TextFieldEditor& editor);
