# dqlib_precompile(target)
#
# With DQLIB_PRECOMPILE the target's sources begin with the standard headers that most of them
# include, compiled once for all rooms. Sources name their headers all the same: a tree without the
# option, such as that of ./run, shows what is missing.
option(DQLIB_PRECOMPILE "Compile the standard headers once" OFF)

if(DQLIB_PRECOMPILE)
  file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/precompiled/empty.cpp CONTENT "")
endif()

# dqlib_precompiled_headers(name header...): the target whose headers others reuse.
function(dqlib_precompiled_headers name)
  add_library(${name} OBJECT ${PROJECT_BINARY_DIR}/precompiled/empty.cpp)
  target_compile_features(${name} PUBLIC cxx_std_20)
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR})
  target_precompile_headers(${name} PRIVATE ${ARGN})
endfunction()

if(DQLIB_PRECOMPILE)
  dqlib_precompiled_headers(
    dqlib_precompiled
    <algorithm>
    <array>
    <functional>
    <map>
    <memory>
    <mutex>
    <optional>
    <string>
    <string_view>
    <unordered_map>
    <vector>)
  target_link_libraries(dqlib_precompiled PRIVATE dqlib_warnings)
endif()

function(dqlib_precompile target)
  if(DQLIB_PRECOMPILE)
    target_precompile_headers(${target} REUSE_FROM dqlib_precompiled)
  endif()
endfunction()
