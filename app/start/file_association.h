#pragma once

/// Makes this program the opener of ".cdb" files, in HKEY_CLASSES_ROOT. The icon and the command name
/// the folder that the installer recorded, and are written only where there is such a record. Failures
/// are silent: without the rights to write there, everything else works. Throws std::bad_alloc.
void registerFileAssociation();
