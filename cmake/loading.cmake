# How programs and modules are loaded.
#
# Sections begin at pages of the file, so that they are mapped: Wine reads each section that does not into the process at
# every start. What the run-time brings of debugging information would be loaded as well, and is left out.
if(WIN32)
  add_link_options(LINKER:--file-alignment,4096,--strip-debug)
endif()
