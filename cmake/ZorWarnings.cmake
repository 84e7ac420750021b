# zor_warnings: what every target of this project compiles with.
add_library(zor_warnings INTERFACE)
target_compile_options(zor_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion
  $<$<BOOL:${ZOR_WERROR}>:-Werror>)
