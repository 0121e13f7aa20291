# What every target is compiled with. Warnings are errors where VELGOR_WERROR is on, as the presets set it;
# a plain configure leaves it off, so that a newer compiler's new warning does not stop a user's build, and compiles
# without ccache, so that a package's build depends on nothing but its packages.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

option(VELGOR_WERROR "Treat warnings as errors" OFF)
set(VELGOR_SANITIZERS "" CACHE STRING "Value for -fsanitize=, for example address,undefined; empty for none")

option(VELGOR_CCACHE "Compile through ccache where it is installed" OFF)
if(VELGOR_CCACHE)
    find_program(CCACHE_PROGRAM ccache)
    if(CCACHE_PROGRAM)
        set(CMAKE_CXX_COMPILER_LAUNCHER "${CCACHE_PROGRAM}")
    endif()
endif()

add_library(velgor_compiler INTERFACE)
target_compile_definitions(velgor_compiler INTERFACE
    QT_NO_CAST_FROM_ASCII
    QT_NO_CAST_TO_ASCII
    QT_NO_CAST_FROM_BYTEARRAY
    QT_NO_URL_CAST_FROM_STRING
    QT_NO_FOREACH
    QT_NO_KEYWORDS
    QT_STRICT_ITERATORS
    QT_DISABLE_DEPRECATED_BEFORE=0x060400)

if(MSVC)
    target_compile_options(velgor_compiler INTERFACE /W4 /permissive- /utf-8 $<$<BOOL:${VELGOR_WERROR}>:/WX>)
else()
    target_compile_options(velgor_compiler INTERFACE
        -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor -Wold-style-cast
        -Woverloaded-virtual -Wcast-align -Wcast-qual -Wformat=2 -Wimplicit-fallthrough -Wunused -Wundef
        $<$<CXX_COMPILER_ID:GNU>:-Wduplicated-cond -Wduplicated-branches -Wlogical-op>
        $<$<BOOL:${VELGOR_WERROR}>:-Werror>)
endif()

if(VELGOR_SANITIZERS)
    # Not every compiler says so itself.
    add_compile_definitions(VELGOR_SANITIZED)
    add_compile_options(-fsanitize=${VELGOR_SANITIZERS} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${VELGOR_SANITIZERS})
endif()
