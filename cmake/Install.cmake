# Install rules and the Debian package. The programs go to bin/, everything they read to
# share/tavrelle/, where they look for it when it is not beside them (base/InstallPaths.h).
#   cmake --install build --prefix /opt/tavrelle
#   cpack --config build/CPackConfig.cmake -B build/package     (a .deb)

set(TAVRELLE_SHARE share/tavrelle)
set(TAVRELLE_APP_ID org.tavrelle.Tavrelle)
set(TAVRELLE_PACKAGING ${CMAKE_SOURCE_DIR}/packaging)

foreach(program tavrelle tavrelle-batch tavrelle-simulate)
    if(TARGET ${program})
        install(TARGETS ${program} RUNTIME DESTINATION bin)
    endif()
endforeach()

foreach(table IN LISTS TAVRELLE_TABLES)
    install(FILES ${CMAKE_BINARY_DIR}/bin/${table} DESTINATION ${TAVRELLE_SHARE})
endforeach()
install(DIRECTORY ${CMAKE_SOURCE_DIR}/DemoFiles/ DESTINATION ${TAVRELLE_SHARE}/DemoFiles)

# The documents the desktop program opens, made by tools/docs.
if(TARGET tavrelle_help)
    install(DIRECTORY ${CMAKE_BINARY_DIR}/bin/TavrelleHelp DESTINATION ${TAVRELLE_SHARE})
endif()
if(TARGET tavrelle_user_guide)
    install(FILES ${CMAKE_BINARY_DIR}/bin/User_Guide.pdf DESTINATION ${TAVRELLE_SHARE})
endif()
if(TARGET tavrelle_questionnaire)
    install(FILES ${CMAKE_BINARY_DIR}/bin/Questionnaire.xls DESTINATION ${TAVRELLE_SHARE})
endif()

# The desktop's entry, icons and software-centre metadata.
if(TARGET tavrelle)
    install(FILES ${TAVRELLE_PACKAGING}/${TAVRELLE_APP_ID}.desktop DESTINATION share/applications)
    # Genepop files get a type of their own, which the desktop entry opens.
    install(FILES ${TAVRELLE_PACKAGING}/tavrelle-genepop.xml DESTINATION share/mime/packages
            RENAME tavrelle.xml)
    configure_file(${TAVRELLE_PACKAGING}/${TAVRELLE_APP_ID}.metainfo.xml.in
                   ${CMAKE_BINARY_DIR}/packaging/${TAVRELLE_APP_ID}.metainfo.xml @ONLY)
    install(FILES ${CMAKE_BINARY_DIR}/packaging/${TAVRELLE_APP_ID}.metainfo.xml
            DESTINATION share/metainfo)
    file(GLOB TAVRELLE_ICON_SIZES ${CMAKE_SOURCE_DIR}/resources/icons/hicolor/*.png)
    foreach(icon IN LISTS TAVRELLE_ICON_SIZES)
        get_filename_component(size ${icon} NAME_WE)
        install(FILES ${icon} DESTINATION share/icons/hicolor/${size}/apps
                RENAME ${TAVRELLE_APP_ID}.png)
    endforeach()
    install(FILES ${CMAKE_SOURCE_DIR}/resources/icons/tavrelle.svg
            DESTINATION share/icons/hicolor/scalable/apps RENAME ${TAVRELLE_APP_ID}.svg)
endif()

# Manual pages for every program, and the Debian changelog, compressed as Debian ships them
# (gzip -n: no name or time stamp, so the package is the same from build to build).
function(tavrelle_gzipped source destination)
    get_filename_component(name ${source} NAME)
    string(REGEX REPLACE "\\.in$" "" name ${name})
    set(plain ${CMAKE_BINARY_DIR}/packaging/${name})
    configure_file(${source} ${plain} @ONLY)
    execute_process(COMMAND gzip -9n -c ${plain} OUTPUT_FILE ${plain}.gz COMMAND_ERROR_IS_FATAL ANY)
    install(FILES ${plain}.gz DESTINATION ${destination})
endfunction()
set(TAVRELLE_MAN_PAGES tavrelle-batch tavrelle-simulate tavrelle-merge-csv)
if(TARGET tavrelle)
    list(APPEND TAVRELLE_MAN_PAGES tavrelle)
endif()
foreach(page IN LISTS TAVRELLE_MAN_PAGES)
    tavrelle_gzipped(${TAVRELLE_PACKAGING}/${page}.1.in share/man/man1)
endforeach()
tavrelle_gzipped(${TAVRELLE_PACKAGING}/changelog.in share/doc/tavrelle)
install(FILES ${TAVRELLE_PACKAGING}/copyright DESTINATION share/doc/tavrelle)
install(FILES ${CMAKE_SOURCE_DIR}/NEWS.md ${CMAKE_SOURCE_DIR}/CITATION.cff
              ${CMAKE_SOURCE_DIR}/README.md ${CMAKE_SOURCE_DIR}/docs/workflows.md
        DESTINATION share/doc/tavrelle)
# The workflows are run, not read: beside the program's other files, the scripts with their run
# bits, and the merge step on the PATH.
install(FILES ${CMAKE_SOURCE_DIR}/docs/workflows/Snakefile DESTINATION ${TAVRELLE_SHARE}/workflows)
install(PROGRAMS ${CMAKE_SOURCE_DIR}/docs/workflows/merge-csv.sh
                 ${CMAKE_SOURCE_DIR}/docs/workflows/tavrelle-array.sbatch
        DESTINATION ${TAVRELLE_SHARE}/workflows)
install(PROGRAMS ${CMAKE_SOURCE_DIR}/docs/workflows/merge-csv.sh DESTINATION bin
        RENAME tavrelle-merge-csv)

# The Debian package: library dependencies found by dpkg-shlibdeps on the built programs.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tavrelle)
set(CPACK_PACKAGE_VENDOR "The Tavrelle developers")
set(CPACK_PACKAGE_CONTACT "The Tavrelle developers <tavrelle@users.noreply.invalid>")
# At most 80 characters, as Debian's synopsis.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "microsatellite genotype checks for null alleles, stutter, drop-out")
# The long description under the summary line.
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
    "Tavrelle checks microsatellite genotype data of diploid organisms for null
alleles and for scoring errors from stuttering and large allele drop-out.
It reads Genepop files and Excel workbooks, shows graphs of every locus and
estimates null allele frequencies. The batch program tavrelle-batch runs
the same analysis for scripts, pipelines and cluster job arrays.")
set(CPACK_RESOURCE_FILE_LICENSE ${CMAKE_SOURCE_DIR}/LICENSE)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Qt draws text with whatever font fontconfig finds; this one is what the tests were made with.
# The user guide, the questionnaire and web pages open through xdg-open.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "fonts-dejavu-core, xdg-utils")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "snakemake")
# Files under /usr/share/doc and /usr/share/man are the package's own, not its configuration.
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_STRIP_FILES ON)
include(CPack)
