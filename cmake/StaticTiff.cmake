# TIFF::TIFF with everything that it stands on, to be linked into programs that need no library.

find_package(PkgConfig REQUIRED)
pkg_check_modules(TIFF REQUIRED libtiff-4)
add_library(tiff_static INTERFACE)
add_library(TIFF::TIFF ALIAS tiff_static)
target_include_directories(tiff_static SYSTEM INTERFACE ${TIFF_STATIC_INCLUDE_DIRS})
target_link_directories(tiff_static INTERFACE ${TIFF_STATIC_LIBRARY_DIRS})
target_link_libraries(tiff_static INTERFACE ${TIFF_STATIC_LIBRARIES})
add_link_options($<IF:$<BOOL:${VELMORANT_HARDEN}>,-static-pie,-static>)
