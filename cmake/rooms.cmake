# dqlib_room(NAME name SOURCES file... [DEPS target...] [ALIAS alias])
#
# A room is a static library dqlib_<name>, alias dqlib::<name>, with the repository root as its
# include root. DEPS are public: a room's headers may include those of the rooms it names.
function(dqlib_room)
  cmake_parse_arguments(ROOM "" "NAME;ALIAS" "SOURCES;DEPS" ${ARGN})
  set(target dqlib_${ROOM_NAME})
  if(NOT ROOM_ALIAS)
    set(ROOM_ALIAS dqlib::${ROOM_NAME})
  endif()
  # Shared libraries are for ./mutate alone, which links again after every small change.
  if(DQLIB_SHARED_ROOMS)
    add_library(${target} SHARED ${ROOM_SOURCES})
  else()
    add_library(${target} STATIC ${ROOM_SOURCES})
  endif()
  add_library(${ROOM_ALIAS} ALIAS ${target})
  target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>)
  target_compile_features(${target} PUBLIC cxx_std_20)
  target_link_libraries(${target} PUBLIC ${ROOM_DEPS} PRIVATE $<BUILD_INTERFACE:dqlib_warnings>)
  dqlib_precompile(${target})
endfunction()
