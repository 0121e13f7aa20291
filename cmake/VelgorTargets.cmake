# Most of a file's compile time goes into the headers of Qt. The presets translate them once a target; a plain configure
# does not, so that it shows an include that is missing.
option(VELGOR_PRECOMPILED_HEADERS "Precompile the headers of Qt" OFF)
set(VELGOR_CORE_OPTIONS "" CACHE STRING "Further compiler options for the layers that read and write files")

#   velgor_precompile(velgor_models core)      kind: core, widgets, core_test or widgets_test
function(velgor_precompile target kind)
    if(VELGOR_PRECOMPILED_HEADERS AND kind)
        target_precompile_headers(${target} PRIVATE "${PROJECT_SOURCE_DIR}/cmake/precompiled_${kind}.h")
    endif()
endfunction()

# A layer is one static library for one folder of src/. It exposes its own headers only, and they travel with the
# link: a file can include what its layer uses, and an include of anything above it does not compile.
#
#   velgor_add_layer(velgor_models PRECOMPILED core SOURCES a.cpp HEADERS a.h USES velgor_format)
function(velgor_add_layer name)
    cmake_parse_arguments(LAYER "" "PRECOMPILED" "SOURCES;HEADERS;USES" ${ARGN})
    add_library(${name} STATIC ${LAYER_SOURCES})
    target_sources(${name} PUBLIC FILE_SET HEADERS BASE_DIRS "${CMAKE_CURRENT_SOURCE_DIR}" FILES ${LAYER_HEADERS})
    target_link_libraries(${name} PUBLIC ${LAYER_USES} PRIVATE velgor_compiler)
    set_target_properties(${name} PROPERTIES AUTOMOC ON VERIFY_INTERFACE_HEADER_SETS ON)
    velgor_precompile(${name} ${LAYER_PRECOMPILED})
    # What the fuzz targets reach tells them which branches an input took.
    if(VELGOR_FUZZERS AND NOT LAYER_PRECOMPILED STREQUAL "widgets" AND CMAKE_CXX_COMPILER_ID MATCHES "Clang")
        target_compile_options(${name} PRIVATE -fsanitize=fuzzer-no-link)
    endif()
endfunction()

# A test program holds the test classes of one folder; CTest runs each class by itself, under the name of its file. It
# finds no display and needs none. For one file or two, precompiled headers take longer than they save.
#
#   velgor_add_tests(velgor_format_tests PRECOMPILED core_test TESTS tst_SPatch tst_SUserIR USES velgor_format)
function(velgor_add_tests program)
    cmake_parse_arguments(TEST "" "PRECOMPILED" "TESTS;SOURCES;USES;LABELS" ${ARGN})
    list(TRANSFORM TEST_TESTS APPEND .cpp OUTPUT_VARIABLE files)
    add_executable(${program} ${files} ${TEST_SOURCES})
    target_link_libraries(${program}
        PRIVATE ${TEST_USES} velgor_test_support velgor_test_program velgor_compiler)
    # Optimising a test takes longer than running it without.
    if(NOT MSVC)
        target_compile_options(${program} PRIVATE -O0)
    endif()
    set_target_properties(${program} PROPERTIES AUTOMOC ON)
    velgor_precompile(${program} "${TEST_PRECOMPILED}")
    foreach(test ${TEST_TESTS})
        add_test(NAME ${test} COMMAND ${program} ${test})
        set_tests_properties(${test} PROPERTIES
            ENVIRONMENT "QT_QPA_PLATFORM=offscreen"
            LABELS "${TEST_LABELS}"
            TIMEOUT 600)
    endforeach()
endfunction()
