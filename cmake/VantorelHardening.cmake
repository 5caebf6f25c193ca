# SPDX-License-Identifier: MIT
# What is shipped ends at a fault rather than going on with it: whatever breaks the program's memory
# should neither return into it nor find the loader's tables open.
include(CheckCXXCompilerFlag)

if(CMAKE_BUILD_TYPE MATCHES "^(Release|None)$" AND NOT VANTOREL_SANITIZE)
  # The last two are one guard on two kinds of processor.
  foreach(flag -fstack-protector-strong -fstack-clash-protection -fcf-protection=full
               -mbranch-protection=standard)
    string(MAKE_C_IDENTIFIER "VANTOREL_HAS${flag}" has)
    check_cxx_compiler_flag(${flag} ${has})
    if(${has})
      add_compile_options(${flag})
    endif()
  endforeach()
  # Buffers are checked by what the optimiser knows of them. Whoever brings his own flags chooses.
  if(CMAKE_BUILD_TYPE STREQUAL "Release")
    add_compile_options(-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
  endif()
  add_compile_options(-D_GLIBCXX_ASSERTIONS)
  add_link_options(-Wl,-z,relro,-z,now,-z,noexecstack)
endif()
