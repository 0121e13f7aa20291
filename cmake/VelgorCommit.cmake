# The commit that the sources are of, for reports about problems. It is asked for at each build, as it changes without a
# new configuration, but only a small source file depends on it, and that is written only when it changed. Sources
# without a repository of their own have the one that "git archive" wrote into them, if it was that; who packages them
# may name another.
set(VELGOR_COMMIT "$ENV{VELGOR_COMMIT}" CACHE STRING "Commit that the sources are of; empty: as Git says")

#   velgor_add_commit(velgor_window)
function(velgor_add_commit target)
    find_package(Git QUIET)
    set(file "${CMAKE_CURRENT_BINARY_DIR}/ProgramCommit.cpp")
    set(command "${CMAKE_COMMAND}"
        "-DCOMMIT=${VELGOR_COMMIT}" "-DGIT=${GIT_EXECUTABLE}" "-DSOURCE=${PROJECT_SOURCE_DIR}" "-DFILE=${file}"
        -P "${PROJECT_SOURCE_DIR}/cmake/WriteCommit.cmake")
    # For what looks at the sources before they are built.
    execute_process(COMMAND ${command})
    add_custom_target(velgor_commit COMMAND ${command} BYPRODUCTS "${file}" VERBATIM COMMENT "Looking for the commit")
    target_sources(${target} PRIVATE "${file}")
    add_dependencies(${target} velgor_commit)
endfunction()
