# quivane_options: what every target of our own is compiled with. Libraries of others don't link it.
option(QUIVANE_SANITIZE "Build with AddressSanitizer and UndefinedBehaviorSanitizer" OFF)
option(QUIVANE_FUZZ "Build the fuzz targets for libFuzzer, with sanitizers (needs clang)" OFF)
option(QUIVANE_BENCHMARKS "Build the benchmarks" OFF)

# -Wrestrict is wrong in GCC 12 about concatenations of std::string at -O3 (GCC bug 105651).
add_library(quivane_options INTERFACE)
target_compile_options(quivane_options INTERFACE
  $<$<COMPILE_LANGUAGE:CXX>:-Wall -Wextra -Wshadow -Wconversion -Werror
    $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>>)
target_include_directories(quivane_options INTERFACE ${PROJECT_SOURCE_DIR})
if(WIN32)
  target_compile_definitions(quivane_options INTERFACE
    UNICODE _UNICODE WINVER=0x0A00 _WIN32_WINNT=0x0A00 _WIN32_IE=0x0A00 NOMINMAX WIN32_LEAN_AND_MEAN)
endif()

if(QUIVANE_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
  add_link_options(-fsanitize=fuzzer-no-link)
endif()
if(QUIVANE_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()
