# nifti_library: the NIfTI library, whose own description for CMake wants its programs, too, and zlib.

find_path(VELMORANT_NIFTI_INCLUDE nifti2_io.h PATH_SUFFIXES nifti REQUIRED)
if(VELMORANT_STATIC)
    set(CMAKE_FIND_LIBRARY_SUFFIXES .a)
endif()
add_library(nifti_library INTERFACE)
target_include_directories(nifti_library SYSTEM INTERFACE ${VELMORANT_NIFTI_INCLUDE})
foreach(part nifti2 znz z)
    find_library(VELMORANT_${part}_LIBRARY ${part} REQUIRED)
    target_link_libraries(nifti_library INTERFACE ${VELMORANT_${part}_LIBRARY})
endforeach()
