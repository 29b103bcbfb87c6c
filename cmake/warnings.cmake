# One set of warnings for every target; a warning is an error.
add_library(penlog_warnings INTERFACE)
target_compile_options(penlog_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Werror)
