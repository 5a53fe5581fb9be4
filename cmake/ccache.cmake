# A compiler cache makes a clean checkout build in a minute or two, in whatever folder it is; without one everything
# works the same.
find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
  # What is below the folder is compiled by relative paths, so that another checkout finds it in the cache.
  # Of a precompiled header it looks at what it was made of.
  set(launcher ${CMAKE_COMMAND} -E env CCACHE_BASEDIR=${PROJECT_SOURCE_DIR}
    CCACHE_SLOPPINESS=pch_defines,time_macros ${CCACHE_PROGRAM})
  set(CMAKE_C_COMPILER_LAUNCHER ${launcher})
  set(CMAKE_CXX_COMPILER_LAUNCHER ${launcher})
  # The folder is in what a debugger is told of the sources, too, and would tell the checkouts apart.
  add_compile_options(-fdebug-prefix-map=${PROJECT_SOURCE_DIR}=.)
endif()
