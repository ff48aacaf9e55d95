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

configure_file(${TAVRELLE_PACKAGING}/tavrelle-batch.1.in ${CMAKE_BINARY_DIR}/packaging/tavrelle-batch.1
               @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/packaging/tavrelle-batch.1 DESTINATION share/man/man1)
install(FILES ${CMAKE_SOURCE_DIR}/LICENSE ${CMAKE_SOURCE_DIR}/NEWS.md
              ${CMAKE_SOURCE_DIR}/CITATION.cff ${CMAKE_SOURCE_DIR}/README.md
              ${CMAKE_SOURCE_DIR}/docs/workflows.md
        DESTINATION share/doc/tavrelle)
install(DIRECTORY ${CMAKE_SOURCE_DIR}/docs/workflows/ DESTINATION share/doc/tavrelle/workflows)

# The Debian package: library dependencies found by dpkg-shlibdeps on the built programs.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tavrelle)
set(CPACK_PACKAGE_VENDOR "The Tavrelle developers")
set(CPACK_PACKAGE_CONTACT "The Tavrelle developers <tavrelle@users.noreply.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY
    "check microsatellite genotypes for null alleles, stutter and large allele drop-out")
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
set(CPACK_STRIP_FILES ON)
include(CPack)
