# How programs and modules are loaded.
#
# Sections begin at pages of the file, so that they are mapped: Wine reads each section that does not into the process at
# every start. What the run-time brings of debugging information would be loaded as well, and is left out.
if(WIN32)
  add_link_options(LINKER:--file-alignment,4096,--strip-debug)
endif()

# quivane_late_library(NAME module FUNCTIONS function...)
#
# Makes the library late_NAME: whoever links it takes these functions from the system's module NAME.dll, which is loaded
# when one of them is first called, and not at the program's start. All of them are in every Windows that the program
# runs on: calling one of a module that is missing ends the program. The linker notes them in no directory of the
# program; they are listed, a module and a function in each line, in the build's late_functions.txt.
if(WIN32)
  file(WRITE ${PROJECT_BINARY_DIR}/late_functions.txt "")
endif()

function(quivane_late_library)
  cmake_parse_arguments(PARSE_ARGV 0 LATE "" "NAME" "FUNCTIONS")
  if(LATE_UNPARSED_ARGUMENTS OR LATE_KEYWORDS_MISSING_VALUES OR NOT LATE_NAME OR NOT LATE_FUNCTIONS)
    message(FATAL_ERROR "quivane_late_library(${ARGV}): unknown or missing arguments.")
  endif()
  set(stem ${PROJECT_BINARY_DIR}/late/${LATE_NAME})
  list(JOIN LATE_FUNCTIONS "\n" functions)
  file(CONFIGURE OUTPUT ${stem}.def CONTENT "LIBRARY ${LATE_NAME}.dll\nEXPORTS\n${functions}\n" @ONLY)
  list(TRANSFORM LATE_FUNCTIONS PREPEND "${LATE_NAME}.dll " OUTPUT_VARIABLE lines)
  list(JOIN lines "\n" lines)
  file(APPEND ${PROJECT_BINARY_DIR}/late_functions.txt "${lines}\n")
  add_custom_command(OUTPUT ${stem}.a DEPENDS ${stem}.def VERBATIM
    COMMAND ${CMAKE_DLLTOOL} -m i386:x86-64 -d ${stem}.def -y ${stem}.a)
  add_custom_target(late_${LATE_NAME}_file DEPENDS ${stem}.a)
  add_library(late_${LATE_NAME} INTERFACE)
  add_dependencies(late_${LATE_NAME} late_${LATE_NAME}_file)
  target_link_libraries(late_${LATE_NAME} INTERFACE ${stem}.a delayimp)
  set_property(TARGET late_${LATE_NAME} PROPERTY INTERFACE_LINK_DEPENDS ${stem}.a)
endfunction()

# Each of these takes longer to load than a window to make, and most sessions need none of them.
if(WIN32)
  quivane_late_library(NAME comdlg32 FUNCTIONS ChooseColorW CommDlgExtendedError GetOpenFileNameW GetSaveFileNameW)
  quivane_late_library(NAME oleacc FUNCTIONS CreateStdAccessibleObject LresultFromObject)
  quivane_late_library(NAME shell32 FUNCTIONS DragFinish DragQueryFileW)
  quivane_late_library(NAME usp10
    FUNCTIONS ScriptItemize ScriptStringAnalyse ScriptStringFree ScriptStringOut ScriptString_pSize)
endif()
