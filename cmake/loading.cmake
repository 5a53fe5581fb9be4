# How programs and modules are loaded.
#
# Sections begin at pages of the file, so that they are mapped: Wine reads each section that does not into the process at
# every start. What the run-time brings of debugging information would be loaded as well, and is left out.
if(WIN32)
  add_link_options(LINKER:--file-alignment,4096,--strip-debug)
endif()

# The system's modules are named as their files are. For a name in capitals, as the compiler's import libraries have some,
# Wine reads the whole folder of the system at every start, file names of 735 modules. These copies of the libraries go
# before the compiler's own.
if(MINGW)
  set(import_libraries ${PROJECT_BINARY_DIR}/import_libraries)
  file(MAKE_DIRECTORY ${import_libraries})
  foreach(module advapi32 comctl32 gdi32 kernel32 oleaut32 shcore shell32 user32 uxtheme)
    execute_process(COMMAND ${CMAKE_C_COMPILER} -print-file-name=lib${module}.a OUTPUT_VARIABLE library
      OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    if(NOT IS_ABSOLUTE ${library})
      message(FATAL_ERROR "The compiler has no import library of ${module}.")
    endif()
    execute_process(COMMAND /usr/bin/python3 -B ${PROJECT_SOURCE_DIR}/cmake/name_modules_small.py ${library}
      ${import_libraries}/lib${module}.a COMMAND_ERROR_IS_FATAL ANY)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${library})
  endforeach()
  link_directories(BEFORE ${import_libraries})
endif()
