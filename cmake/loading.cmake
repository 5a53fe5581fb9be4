# How programs and modules are loaded.
#
# Sections begin at pages of the file, so that they are mapped: Wine reads each section that does not into the process at
# every start. What the run-time brings of debugging information would be loaded as well, and is left out.
if(WIN32)
  add_link_options(LINKER:--file-alignment,4096,--strip-debug)
endif()

# What few sessions need is loaded at the start all the same: taken late, by the run-time's __delayLoadHelper2, its address
# is written into the import section at the first call, which a newer Wine does not allow in every session.
if(WIN32)
  foreach(module comdlg32 oleacc shell32 usp10)
    add_library(late_${module} INTERFACE)
    target_link_libraries(late_${module} INTERFACE ${module})
  endforeach()
endif()
