# The layers of the tree, told by folders alone. Every file under src/ belongs to one:
#   screens  <subsystem>/screens/, widgets/ and session/: the desktop program (tavrelle_gui)
#   batch    batch/: the batch program
#   engine   everything else: tavrelle_core, which includes no Qt
# The build sorts sources with these functions and the layer check (tests/LayerRule.cmake)
# holds the includes to them, so the two can never disagree.

# The layer of `path`, relative to src/ ("analysis/screens/frmSeedDialog.h").
function(tavrelle_layer_of path out)
    if(path MATCHES "^batch/")
        set(${out} batch PARENT_SCOPE)
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

# The sources under `source_dir`/src of the given layers (engine, screens, widgets, session,
# batch), as absolute paths.
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
