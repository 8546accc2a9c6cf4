# One place for the warning set so every target of the project is held to it. `-Wshadow=local`
# is GCC's; clang (the fuzz build) has no equivalent that stays as narrow, so it goes without.
function(vlx_set_warnings target)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wnon-virtual-dtor
                                             $<$<CXX_COMPILER_ID:GNU>:-Wshadow=local>)
endfunction()
