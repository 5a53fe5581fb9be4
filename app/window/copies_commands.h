#pragma once

/// The commands of the former states of databases. Each tells the user itself what can't be done.

/// Lists them; the user looks at one, or puts it or one of its tables back.
void goBackToCopy();
