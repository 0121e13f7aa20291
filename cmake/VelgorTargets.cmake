# A layer is one static library for one folder of src/. It exposes its own headers only, and they travel with the
# link: a file can include what its layer uses, and an include of anything above it does not compile.
#
#   velgor_add_layer(velgor_models SOURCES a.cpp HEADERS a.h USES velgor_format)
function(velgor_add_layer name)
    cmake_parse_arguments(LAYER "" "" "SOURCES;HEADERS;USES" ${ARGN})
    add_library(${name} STATIC ${LAYER_SOURCES})
    target_sources(${name} PUBLIC FILE_SET HEADERS BASE_DIRS "${CMAKE_CURRENT_SOURCE_DIR}" FILES ${LAYER_HEADERS})
    target_link_libraries(${name} PUBLIC ${LAYER_USES} PRIVATE velgor_compiler)
    set_target_properties(${name} PROPERTIES AUTOMOC ON VERIFY_INTERFACE_HEADER_SETS ON)
endfunction()

# A test is one executable for one class, run once by CTest. It finds no display and needs none.
#
#   velgor_add_test(tst_SPatch USES velgor_format)
function(velgor_add_test name)
    cmake_parse_arguments(TEST "" "" "SOURCES;USES" ${ARGN})
    add_executable(${name} ${name}.cpp ${TEST_SOURCES})
    target_link_libraries(${name} PRIVATE ${TEST_USES} velgor_test_support Qt6::Test velgor_compiler)
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen" TIMEOUT 600)
endfunction()
