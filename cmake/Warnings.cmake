# Warnings are errors on every target of ours; third-party code is not compiled here.
function(tavrelle_warnings target)
    target_compile_options(${target} PRIVATE
        -Wall -Wextra -Wpedantic -Werror -Wshadow -Wconversion -Wsign-conversion
        -Wnon-virtual-dtor -Wold-style-cast -Wcast-align -Woverloaded-virtual
        -Wnull-dereference -Wdouble-promotion -Wformat=2 -Wimplicit-fallthrough)
endfunction()
