# One place for the warning set so every target of the project is held to it.
function(vlx_set_warnings target)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow=local -Wnon-virtual-dtor)
endfunction()
