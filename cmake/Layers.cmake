# The layers of the tree, told by folders alone. Every file under src/ belongs to one:
#   screens  <subsystem>/screens/, widgets/ and session/: the desktop program (tavrelle_gui)
#   batch    batch/: the batch program
#   formats  formats/: the .xls and .xlsx readers and writers and their libraries
#            (tavrelle_formats)
#   engine   everything else: tavrelle_engine, the standard library only
# Inside the engine the folders stand in one order, each including only itself and those below:
#   base < population < checking < analysis < nulls < results < run < report
# The build sorts sources with these functions and the layer check (tests/LayerRule.cmake)
# holds the includes to them, so the two can never disagree.

set(TAVRELLE_ENGINE_ORDER base population checking analysis nulls results run report)

# The layer of `path`, relative to src/ ("analysis/screens/frmSeedDialog.h").
function(tavrelle_layer_of path out)
    if(path MATCHES "^batch/")
        set(${out} batch PARENT_SCOPE)
    elseif(path MATCHES "^formats/")
        set(${out} formats PARENT_SCOPE)
    elseif(path MATCHES "^session/")
        set(${out} session PARENT_SCOPE)
    elseif(path MATCHES "^widgets/")
        set(${out} widgets PARENT_SCOPE)
    elseif(path MATCHES "^[^/]+/screens/")
        set(${out} screens PARENT_SCOPE)
    else()
        set(${out} engine PARENT_SCOPE)
    endif()
endfunction()

# The place of an engine path's folder in TAVRELLE_ENGINE_ORDER, or -1 for a folder the order
# does not name (which the check refuses, so that a new folder is placed on purpose).
function(tavrelle_engine_rank path out)
    string(REGEX REPLACE "/.*$" "" folder "${path}")
    list(FIND TAVRELLE_ENGINE_ORDER "${folder}" rank)
    set(${out} ${rank} PARENT_SCOPE)
endfunction()

# The sources under `source_dir`/src of the given layers (engine, formats, screens, widgets,
# session, batch), as absolute paths.
function(tavrelle_layer_sources source_dir out)
    # A configure run globs again when files come or go; a script run (the check) globs once.
    set(again CONFIGURE_DEPENDS)
    if(CMAKE_SCRIPT_MODE_FILE)
        set(again "")
    endif()
    file(GLOB_RECURSE all ${again} ${source_dir}/src/*.cpp ${source_dir}/src/*.h)
    set(picked "")
    foreach(source IN LISTS all)
        file(RELATIVE_PATH relative ${source_dir}/src ${source})
        tavrelle_layer_of(${relative} layer)
        if(layer IN_LIST ARGN)
            list(APPEND picked ${source})
        endif()
    endforeach()
    set(${out} ${picked} PARENT_SCOPE)
endfunction()
