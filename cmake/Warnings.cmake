# Warnings on every target of ours; third-party code is not compiled here. The project's own
# scripts and CI make them errors (TAVRELLE_WERROR=ON); packagers, whose compilers may be newer
# and warn about more, get the warnings without a failed build.
option(TAVRELLE_WERROR "Treat compiler warnings as errors" OFF)

function(tavrelle_warnings target)
    target_compile_options(${target} PRIVATE
        -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion
        -Wnon-virtual-dtor -Wold-style-cast -Wcast-align -Woverloaded-virtual
        -Wnull-dereference -Wdouble-promotion -Wformat=2 -Wimplicit-fallthrough)
    # GCC 12 at -O3 warns of overlapping copies inside std::string's own operator+ ("text" +
    # a temporary string): GCC bug 105329, a false positive in the library, not in our code.
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_GREATER_EQUAL 12
       AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
        target_compile_options(${target} PRIVATE -Wno-restrict)
    endif()
    if(TAVRELLE_WERROR)
        target_compile_options(${target} PRIVATE -Werror)
    endif()
endfunction()
