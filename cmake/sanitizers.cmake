# DQLIB_SANITIZE names the sanitizers of a whole build tree, e.g. "address,undefined".
set(DQLIB_SANITIZE "" CACHE STRING "Sanitizers for the whole tree")
if(DQLIB_SANITIZE)
  add_compile_options(-fsanitize=${DQLIB_SANITIZE} -fno-omit-frame-pointer
                      -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${DQLIB_SANITIZE})
endif()
