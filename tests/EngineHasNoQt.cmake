# The engine stays free of Qt: only screens (frm... files), the session folder and gui folders
# may include a Qt header.
file(GLOB_RECURSE sources ${SOURCE_DIR}/src/*.h ${SOURCE_DIR}/src/*.cpp)
set(offenders "")
foreach(source IN LISTS sources)
    file(RELATIVE_PATH relative ${SOURCE_DIR} ${source})
    if(relative MATCHES "/frm[A-Z][^/]*$" OR relative MATCHES "^src/session/"
       OR relative MATCHES "/gui/" OR relative MATCHES "(Painter|Window|Dialog)[^/]*$")
        continue()
    endif()
    file(STRINGS ${source} qt_includes REGEX "#include *<Q")
    if(qt_includes)
        list(APPEND offenders ${relative})
    endif()
endforeach()
if(offenders)
    message(FATAL_ERROR "Engine files include Qt headers: ${offenders}")
endif()
message(STATUS "No engine file includes a Qt header.")
