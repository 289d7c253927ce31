# The warnings that every target of the project is built with; presets turn them into errors.
add_library(phoneme_warnings INTERFACE)
target_compile_options(
  phoneme_warnings
  INTERFACE -Wall
            -Wextra
            -Wpedantic
            -Wshadow
            -Wconversion
            -Wsign-conversion
            -Wold-style-cast
            -Wcast-align
            -Wnon-virtual-dtor)
