# Programs, with what they read, their manual pages and the documentation. An installation may be moved:
# no file of it holds its path.

install(TARGETS tiffgen tiffgen-check)
set(programs tiffgen tiffgen-run tiffgen-check)
if(VELMORANT_NIFTI)
    install(TARGETS nifti-to-raw)
    list(APPEND programs nifti-to-raw)
endif()

# tiffgen-run finds the others, and what it reads, from its own place.
set(VELMORANT_DATADIR_FROM_BINDIR ${CMAKE_INSTALL_FULL_DATADIR}/velmorant)
if(NOT IS_ABSOLUTE "${CMAKE_INSTALL_BINDIR}" AND NOT IS_ABSOLUTE "${CMAKE_INSTALL_DATADIR}")
    file(RELATIVE_PATH VELMORANT_DATADIR_FROM_BINDIR
         /prefix/${CMAKE_INSTALL_BINDIR} /prefix/${velmorant_datadir})
endif()
string(REPLACE "'" "'\\''" VELMORANT_DATADIR_FROM_BINDIR "${VELMORANT_DATADIR_FROM_BINDIR}")
configure_file(${PROJECT_SOURCE_DIR}/companions/tiffgen-run.in tiffgen-run @ONLY)
install(PROGRAMS ${PROJECT_BINARY_DIR}/tiffgen-run DESTINATION ${CMAKE_INSTALL_BINDIR})
foreach(program IN LISTS programs)
    install(FILES ${PROJECT_SOURCE_DIR}/companions/completion.bash
            DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME ${program})
endforeach()

# Complete preference files are what a first run makes.
add_custom_command(OUTPUT preferences/GLOBAL.prf preferences/tiffgen.prf
    COMMAND ${CMAKE_COMMAND} -DTIFFGEN=$<TARGET_FILE:tiffgen>
            -P ${PROJECT_SOURCE_DIR}/cmake/MakePreferences.cmake
    DEPENDS tiffgen ${PROJECT_SOURCE_DIR}/cmake/MakePreferences.cmake
    VERBATIM)
add_custom_target(preferences ALL DEPENDS preferences/GLOBAL.prf preferences/tiffgen.prf)
install(FILES ${PROJECT_BINARY_DIR}/preferences/GLOBAL.prf ${PROJECT_BINARY_DIR}/preferences/tiffgen.prf
        DESTINATION ${velmorant_datadir}/preferences)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/palettes DESTINATION ${velmorant_datadir}
        FILES_MATCHING PATTERN *.plt)
set(executable PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/recipes DESTINATION ${velmorant_datadir}
        PATTERN *.sh ${executable} PATTERN missing-pictures ${executable})

# velmorant_edit(FROM TO REGEX REPLACEMENT): makes a file to install from one of the tree.
function(velmorant_edit from to regex replacement)
    file(READ "${from}" text)
    string(REGEX REPLACE "${regex}" "${replacement}" text "${text}")
    file(WRITE "${to}" "${text}")
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${from}")
endfunction()

# Manual pages, without the lines marked "if nifti" when nifti-to-raw is not built.
set(pages ${PROJECT_SOURCE_DIR}/man)
if(NOT VELMORANT_NIFTI)
    set(pages ${PROJECT_BINARY_DIR}/man)
    file(REMOVE_RECURSE "${pages}")
    file(GLOB names CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR}/man ${PROJECT_SOURCE_DIR}/man/*)
    list(REMOVE_ITEM names nifti-to-raw.1)
    foreach(name IN LISTS names)
        velmorant_edit(${PROJECT_SOURCE_DIR}/man/${name} ${pages}/${name} "[^\n]*\\\\\" if nifti\n" "")
    endforeach()
endif()
foreach(section 1 5)
    install(DIRECTORY ${pages}/ DESTINATION ${CMAKE_INSTALL_MANDIR}/man${section}
            FILES_MATCHING PATTERN *.${section})
endforeach()

# The documentation. A link to what is not installed, or has another name in a package, becomes its text.
set(velmorant_docdir ${CMAKE_INSTALL_DATAROOTDIR}/doc/velmorant)
velmorant_edit(${PROJECT_SOURCE_DIR}/README.md ${PROJECT_BINARY_DIR}/README.md
    "\\[([^]]*)\\]\\((CONTRIBUTING.md|CHANGELOG.md|LICENSE)\\)" "\\1")
install(FILES ${PROJECT_BINARY_DIR}/README.md ${PROJECT_SOURCE_DIR}/CHANGELOG.md
              ${PROJECT_SOURCE_DIR}/CITATION.cff ${PROJECT_SOURCE_DIR}/packaging/copyright
        DESTINATION ${velmorant_docdir})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs DESTINATION ${velmorant_docdir})
install(FILES ${PROJECT_SOURCE_DIR}/examples/convert_image.cpp DESTINATION ${velmorant_docdir}/examples)
