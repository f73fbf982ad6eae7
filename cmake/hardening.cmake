# Protections of release builds, as far as compiler and linker know them: a stack that notices being
# overwritten, library functions that know the size of what they write to, tables of the loader that
# are read-only once the program runs.
include(CheckCXXCompilerFlag)
include(CheckLinkerFlag)

if(CMAKE_BUILD_TYPE MATCHES "^(Release|MinSizeRel)$" AND NOT MSVC)
  check_cxx_compiler_flag(-fstack-protector-strong HAS_STACK_PROTECTOR)
  if(HAS_STACK_PROTECTOR)
    add_compile_options(-fstack-protector-strong)
    if(MINGW) # whose library of that is linked on demand
      add_link_options(-fstack-protector-strong)
    endif()
  endif()
  if(NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize|_FORTIFY_SOURCE")
    add_compile_options(-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
  endif()
  check_linker_flag(CXX -Wl,-z,relro,-z,now HAS_READ_ONLY_RELOCATIONS)
  if(HAS_READ_ONLY_RELOCATIONS)
    add_link_options(-Wl,-z,relro,-z,now)
  endif()
endif()
