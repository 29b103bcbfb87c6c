# One set of warnings for every target; a warning is an error.
add_library(penlog_warnings INTERFACE)
target_compile_options(penlog_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Werror)
# g++ 12 takes the inlined `"text" + std::string` of an optimised build for overlapping copies
# (GCC bug 105651, corrected in 13).
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  target_compile_options(penlog_warnings INTERFACE -Wno-restrict)
endif()
