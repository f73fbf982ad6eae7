# Warnings and numerics that hold for every target of the project.

# kv_tr_compile_options(TARGET): the project's warnings, and arithmetic without contraction, so
# that a sum of products has the same bits on every machine.
function(kv_tr_compile_options target)
  if(MSVC)
    target_compile_options(${target} PRIVATE /W4 /utf-8 /fp:precise
                                             $<$<BOOL:${KV_TR_WARNINGS_AS_ERRORS}>:/WX>)
  else()
    target_compile_options(
      ${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -ffp-contract=off
                        $<$<BOOL:${KV_TR_WARNINGS_AS_ERRORS}>:-Werror>)
  endif()
endfunction()
