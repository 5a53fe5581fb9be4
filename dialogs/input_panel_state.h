#pragma once

/// Whether the input panel is up at this moment. False when the shell does not answer.
bool inputPanelIsUp();
