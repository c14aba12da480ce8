# The one place for warning flags; every target of the tree links dqlib_warnings privately.
add_library(dqlib_warnings INTERFACE)
target_compile_options(
  dqlib_warnings
  # Errors in the tree's own builds only: a host may have a compiler that knows more warnings.
  INTERFACE $<$<BOOL:${PROJECT_IS_TOP_LEVEL}>:-Werror>
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
            # With these g++ 12 complains of its own library: of an empty std::optional that is
            # moved, and of a std::string that gets a literal.
            $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>
            $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
