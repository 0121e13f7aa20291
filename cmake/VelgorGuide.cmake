# The user guide: its installation, and the way to it from the program's own place, so that both can be moved together.

set(VELGOR_GUIDE_DIRECTORY "${CMAKE_INSTALL_FULL_DOCDIR}/guide")
file(RELATIVE_PATH VELGOR_GUIDE_FROM_PROGRAM "${CMAKE_INSTALL_FULL_BINDIR}" "${VELGOR_GUIDE_DIRECTORY}")

install(DIRECTORY "${PROJECT_SOURCE_DIR}/docs/guide/" DESTINATION "${CMAKE_INSTALL_DOCDIR}/guide")

# A program that is not installed goes the same way, seen from where it is built.
cmake_path(SET guide_of_build NORMALIZE "${PROJECT_BINARY_DIR}/src/app/${VELGOR_GUIDE_FROM_PROGRAM}")
cmake_path(IS_PREFIX PROJECT_BINARY_DIR "${guide_of_build}" is_guide_in_build)
if(is_guide_in_build AND NOT EXISTS "${guide_of_build}")
    cmake_path(GET guide_of_build PARENT_PATH documents_of_build)
    file(MAKE_DIRECTORY "${documents_of_build}")
    # Not every system lets everybody make links; the program then goes to the project's page.
    file(CREATE_LINK "${PROJECT_SOURCE_DIR}/docs/guide" "${guide_of_build}" RESULT guide_link_result SYMBOLIC)
endif()
