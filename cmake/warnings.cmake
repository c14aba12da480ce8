# The one place for warning flags; every target of the tree links dqlib_warnings privately.
add_library(dqlib_warnings INTERFACE)
target_compile_options(
  dqlib_warnings
  INTERFACE -Werror
            -Wall
            -Wextra
            -Wpedantic
            -Wshadow
            -Wconversion
            -Wno-sign-conversion
            -Wnon-virtual-dtor
            -Wold-style-cast
            -Woverloaded-virtual
            -Wcast-align
            -Wimplicit-fallthrough
            -Wformat=2
            # An empty format is a text like any other.
            -Wno-format-zero-length
            # g++ 12 takes the content of an empty std::optional that is moved for one that is used.
            $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
