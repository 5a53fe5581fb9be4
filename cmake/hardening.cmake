# What the system does to protect a running program: it loads each module at an address that nobody can guess and never
# runs data. These are the linker's defaults, but not every version's. The time of linking is left out of the modules,
# so that the same sources give the same bytes. Control-flow guard is not to be had from this compiler.
if(WIN32)
  add_link_options(LINKER:--dynamicbase,--high-entropy-va,--nxcompat,--no-insert-timestamp)
endif()
