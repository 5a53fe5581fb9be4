# header_libraries: libraries of others that are headers alone, from Debian's packages. They are reached through
# links in a folder of their own, because the cross compiler must not see the rest of the system's headers.
set(QUIVANE_SYSTEM_HEADERS /usr/include CACHE PATH "Where the headers of CLI11 and nlohmann-json are installed")
set(HEADER_LIBRARIES ${PROJECT_BINARY_DIR}/headers)

file(MAKE_DIRECTORY ${HEADER_LIBRARIES})
foreach(folder CLI nlohmann)
  if(NOT EXISTS ${QUIVANE_SYSTEM_HEADERS}/${folder})
    message(FATAL_ERROR "The headers ${folder} are missing in ${QUIVANE_SYSTEM_HEADERS}: run ./run or ./test, which "
                        "install them (Debian's packages libcli11-dev and nlohmann-json3-dev).")
  endif()
  file(CREATE_LINK ${QUIVANE_SYSTEM_HEADERS}/${folder} ${HEADER_LIBRARIES}/${folder} SYMBOLIC)
endforeach()

add_library(header_libraries INTERFACE)
target_include_directories(header_libraries SYSTEM INTERFACE ${HEADER_LIBRARIES})
