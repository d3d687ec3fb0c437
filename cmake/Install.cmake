# What `cmake --install` puts where, and `cpack -G DEB` into a package.

include(GNUInstallDirs)
include(CMakePackageConfigHelpers)
set(velmorant_datadir ${CMAKE_INSTALL_DATADIR}/velmorant)
set(velmorant_cmakedir ${CMAKE_INSTALL_LIBDIR}/cmake/Velmorant)

if(VELMORANT_PROGRAMS)
    include(${CMAKE_CURRENT_LIST_DIR}/InstallPrograms.cmake)
endif()

# The image library, as the target Velmorant::image and for pkg-config. Headers that only the library's
# own procedures include stay here.
set_target_properties(velmorant_image PROPERTIES EXPORT_NAME image)
target_include_directories(velmorant_image
    PUBLIC $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/velmorant>)
install(TARGETS velmorant_image EXPORT VelmorantTargets)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/prefs ${PROJECT_SOURCE_DIR}/image ${PROJECT_SOURCE_DIR}/ecat
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/velmorant
        FILES_MATCHING PATTERN *.h
        PATTERN internal_buffer.h EXCLUDE PATTERN largest_pixels.h EXCLUDE
        PATTERN volume_statistics.h EXCLUDE PATTERN wide_vectors.h EXCLUDE)
install(EXPORT VelmorantTargets NAMESPACE Velmorant:: DESTINATION ${velmorant_cmakedir})
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/VelmorantConfig.cmake.in VelmorantConfig.cmake
    INSTALL_DESTINATION ${velmorant_cmakedir})
# Before version 1 a new minor version may break what is built on the one before.
write_basic_package_version_file(VelmorantConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/VelmorantConfig.cmake
              ${PROJECT_BINARY_DIR}/VelmorantConfigVersion.cmake
        DESTINATION ${velmorant_cmakedir})
# Relative to the file itself, unless a folder was configured as an absolute one.
set(velmorant_pc_prefix ${CMAKE_INSTALL_PREFIX})
if(NOT IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
    file(RELATIVE_PATH velmorant_pc_prefix /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
    set(velmorant_pc_prefix "\${pcfiledir}/${velmorant_pc_prefix}")
endif()
foreach(dir LIBDIR INCLUDEDIR)
    set(velmorant_pc_${dir} ${CMAKE_INSTALL_${dir}})
    if(NOT IS_ABSOLUTE "${CMAKE_INSTALL_${dir}}")
        set(velmorant_pc_${dir} "\${prefix}/${CMAKE_INSTALL_${dir}}")
    endif()
endforeach()
configure_file(${PROJECT_SOURCE_DIR}/cmake/velmorant.pc.in velmorant.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/velmorant.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# The package is installed below /usr, whatever this build's prefix, and its paths say so.
set(CPACK_SET_DESTDIR ON)
set(CPACK_INSTALL_PREFIX /usr)
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME velmorant)
set(CPACK_PACKAGE_VENDOR Velmorant)
set(CPACK_PACKAGE_CONTACT "The Velmorant developers <velmorant@example.org>")
set(CPACK_STRIP_FILES ON)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/CompressForDebian.cmake)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "bash-completion, g++, cmake | pkgconf")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "pictures of tomographic brain images")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
    "tiffgen lays all slices of one frame and bed of a PET study out as a
montage, in colour or gray, and writes it as a TIFF file. It reads ECAT 6
matrix files and raw volumes with a text header. tiffgen-run runs it with
ordinary manners, for people and batch engines; tiffgen-check proves a
picture whole and says what a study lacks; nifti-to-raw makes raw
volumes from NIfTI images.
.
The image library that reads and writes these formats is included, with
its headers.")
include(CPack)
