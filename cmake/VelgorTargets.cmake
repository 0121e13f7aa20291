# Most of a file's compile time goes into the headers of Qt. The presets translate them once for the targets that are
# compiled alike; a plain configure does not, so that it shows an include that is missing.
option(VELGOR_PRECOMPILED_HEADERS "Precompile the headers of Qt" OFF)
# GCC takes headers only for a target with the very same definitions, and tests have their directories as such.
if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    set(VELGOR_SHARES_PRECOMPILED ON)
endif()
set(VELGOR_CORE_OPTIONS "" CACHE STRING "Further compiler options for the layers that read and write files")
# Optimising a test takes longer than running it without.
if(NOT MSVC)
    set(VELGOR_TEST_OPTIONS -O0)
endif()
# What the fuzz targets reach tells them which branches an input took.
if(VELGOR_FUZZERS AND CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    set(VELGOR_FUZZED_OPTIONS -fsanitize=fuzzer-no-link)
endif()

# Headers are precompiled for a library or for a program, as the two are compiled for different places in memory.
#
#   velgor_add_precompiled(core LIBRARY HEADERS cmake/precompiled_core.h <regex> USES Qt6::Core OPTIONS -O1)
function(velgor_add_precompiled kind)
    cmake_parse_arguments(PRECOMPILED "LIBRARY;PROGRAM" "" "HEADERS;USES;INCLUDES;OPTIONS" ${ARGN})
    list(TRANSFORM PRECOMPILED_HEADERS PREPEND "${PROJECT_SOURCE_DIR}/" REGEX "^cmake/")
    set_property(GLOBAL PROPERTY velgor_headers_${kind} "${PRECOMPILED_HEADERS}")
    if(NOT VELGOR_PRECOMPILED_HEADERS OR NOT VELGOR_SHARES_PRECOMPILED)
        return()
    endif()
    set(name velgor_precompiled_${kind})
    set(source "${PROJECT_BINARY_DIR}/precompiled/${kind}.cpp")
    file(CONFIGURE OUTPUT "${source}" CONTENT "int main()\n{\n    return 0;\n}\n")
    if(PRECOMPILED_LIBRARY)
        add_library(${name} OBJECT "${source}")
    else()
        add_executable(${name} "${source}")
    endif()
    target_link_libraries(${name} PRIVATE ${PRECOMPILED_USES} velgor_compiler)
    target_include_directories(${name} SYSTEM PRIVATE ${PRECOMPILED_INCLUDES})
    target_compile_options(${name} PRIVATE ${PRECOMPILED_OPTIONS})
    target_precompile_headers(${name} PRIVATE ${PRECOMPILED_HEADERS})
endfunction()

#   velgor_precompile(velgor_models core)
function(velgor_precompile target kind)
    if(VELGOR_PRECOMPILED_HEADERS AND VELGOR_SHARES_PRECOMPILED)
        target_precompile_headers(${target} REUSE_FROM velgor_precompiled_${kind})
    elseif(VELGOR_PRECOMPILED_HEADERS)
        get_property(headers GLOBAL PROPERTY velgor_headers_${kind})
        target_precompile_headers(${target} PRIVATE ${headers})
    endif()
endfunction()

# A layer is one static library for one folder of src/. It exposes its own headers only, and they travel with the
# link: a file can include what its layer uses, and an include of anything above it does not compile.
#
# ROOMS names the folders below it in which it keeps some of its files.
#
#   velgor_add_layer(velgor_models PRECOMPILED core SOURCES a.cpp HEADERS a.h USES velgor_format)
function(velgor_add_layer name)
    cmake_parse_arguments(LAYER "" "PRECOMPILED" "ROOMS;SOURCES;HEADERS;USES" ${ARGN})
    list(TRANSFORM LAYER_ROOMS PREPEND "${CMAKE_CURRENT_SOURCE_DIR}/")
    add_library(${name} STATIC ${LAYER_SOURCES})
    target_sources(${name} PUBLIC FILE_SET HEADERS BASE_DIRS "${CMAKE_CURRENT_SOURCE_DIR}" FILES ${LAYER_HEADERS})
    target_include_directories(${name} PUBLIC ${LAYER_ROOMS})
    target_link_libraries(${name} PUBLIC ${LAYER_USES} PRIVATE velgor_compiler)
    set_target_properties(${name} PROPERTIES AUTOMOC ON VERIFY_INTERFACE_HEADER_SETS ON)
    velgor_precompile(${name} ${LAYER_PRECOMPILED})
    if(NOT LAYER_PRECOMPILED STREQUAL "widgets")
        target_compile_options(${name} PRIVATE ${VELGOR_FUZZED_OPTIONS})
    endif()
endfunction()

# A test program holds the test classes of one folder; CTest runs each class by itself, under the name of its file. It
# finds no display and needs none. WIDGETS says that most of them include widgets.
#
#   velgor_add_tests(velgor_format_tests TESTS tst_SPatch tst_SUserIR USES velgor_format)
function(velgor_add_tests program)
    cmake_parse_arguments(TEST "WIDGETS" "" "TESTS;SOURCES;USES;LABELS" ${ARGN})
    list(TRANSFORM TEST_TESTS APPEND .cpp OUTPUT_VARIABLE files)
    add_executable(${program} ${files} ${TEST_SOURCES})
    target_link_libraries(${program}
        PRIVATE ${TEST_USES} velgor_test_support velgor_test_program velgor_compiler)
    target_compile_options(${program} PRIVATE ${VELGOR_TEST_OPTIONS})
    set_target_properties(${program} PROPERTIES AUTOMOC ON)
    if(TEST_WIDGETS)
        velgor_precompile(${program} widgets_test)
    else()
        velgor_precompile(${program} core_test)
    endif()
    foreach(test ${TEST_TESTS})
        add_test(NAME ${test} COMMAND ${program} ${test})
        set_tests_properties(${test} PROPERTIES
            ENVIRONMENT "QT_QPA_PLATFORM=offscreen"
            LABELS "${TEST_LABELS}"
            TIMEOUT 600)
    endforeach()
endfunction()
