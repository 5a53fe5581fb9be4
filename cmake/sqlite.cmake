# SQLite's amalgamation, as tools/setup.sh puts it into QUIVANE_DEPENDENCIES. The hashes are checked
# here once more, so that no other source than the pinned one is ever compiled.
set(QUIVANE_DEPENDENCIES "${PROJECT_SOURCE_DIR}/build/dependencies" CACHE PATH "Folder of the fetched libraries")
set(SQLITE_DIR ${QUIVANE_DEPENDENCIES}/sqlite-3.53.2)

function(check_hash file expected)
  if(NOT EXISTS ${file})
    message(FATAL_ERROR "${file} is missing: run ./run or ./test, which fetch it.")
  endif()
  file(SHA256 ${file} actual)
  if(NOT actual STREQUAL expected)
    message(FATAL_ERROR "${file} is not the pinned source: sha256 ${actual}, expected ${expected}.")
  endif()
endfunction()
check_hash(${SQLITE_DIR}/sqlite3.c 60d2f39a3726cd6b9021da6f4e868608d66fbb6528a9f513dc8ffcc640493422)
check_hash(${SQLITE_DIR}/sqlite3.h 9e69a1353a4288450b0d5239ede11fc7f1f4c8e5eb07491fc8317eacb5b7de7e)

add_library(sqlite STATIC ${SQLITE_DIR}/sqlite3.c)
target_include_directories(sqlite SYSTEM PUBLIC ${SQLITE_DIR})
target_compile_definitions(sqlite PRIVATE
  SQLITE_ENABLE_COLUMN_METADATA       # which table and column a result column comes from
  SQLITE_ENABLE_MATH_FUNCTIONS
  SQLITE_ENABLE_FTS5                  # foreign files use it
  SQLITE_ENABLE_RTREE
  SQLITE_OMIT_LOAD_EXTENSION
  SQLITE_DEFAULT_MEMSTATUS=0
  SQLITE_LIKE_DOESNT_MATCH_BLOBS
  SQLITE_THREADSAFE=2)                # the engine serialises each connection itself
target_compile_definitions(sqlite PUBLIC
  SQLITE_ENABLE_COLUMN_METADATA
  SQLITE_ENABLE_PREUPDATE_HOOK        # what the next one stands on
  SQLITE_ENABLE_SESSION)              # changes that can be taken back
if(WIN32)
  # Read and write after a seek. With an OVERLAPPED structure Wine tells its server of each reading and writing,
  # which is two changes of the process for each page.
  target_compile_definitions(sqlite PRIVATE SQLITE_WIN32_NO_OVERLAPPED)
endif()
find_package(Threads REQUIRED)
target_link_libraries(sqlite PUBLIC Threads::Threads)
