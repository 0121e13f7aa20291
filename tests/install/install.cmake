# What a former run left would count as installed.
file(REMOVE_RECURSE "${installed}")
set(ENV{DESTDIR} "${installed}")
execute_process(COMMAND "${CMAKE_COMMAND}" --install "${build}" --prefix /usr
    COMMAND_ERROR_IS_FATAL ANY OUTPUT_QUIET)
