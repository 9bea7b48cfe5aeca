# Shared helpers for the tests: temporary program folders, message-box capture, the loopback
# HTTP server and fake tools. The demo server in tools/ links the same library.
file(GLOB QMK_TEST_SUPPORT CONFIGURE_DEPENDS
    ${CMAKE_SOURCE_DIR}/tests/support/*.cpp ${CMAKE_SOURCE_DIR}/tests/support/*.h)
list(FILTER QMK_TEST_SUPPORT EXCLUDE REGEX ".*/tests/support/(probe_|main_).*")
add_library(quillmark_testsupport STATIC ${QMK_TEST_SUPPORT})
target_include_directories(quillmark_testsupport PUBLIC ${CMAKE_SOURCE_DIR}/tests ${CMAKE_SOURCE_DIR})
target_link_libraries(quillmark_testsupport PUBLIC quillmark_core Qt5::Test Qt5::Network)

# Small programs that tests start as child processes (tests/support/probe_<name>.cpp).
file(GLOB QMK_TEST_PROBES CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/tests/support/probe_*.cpp)
foreach(src ${QMK_TEST_PROBES})
    get_filename_component(probe ${src} NAME_WE)
    add_executable(${probe} ${src})
    target_link_libraries(${probe} PRIVATE quillmark_testsupport)
    set_target_properties(${probe} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
endforeach()

# One line registers a test: quillmark_add_test(TestName [extra sources...]).
function(quillmark_add_test name)
    add_executable(${name} ${CMAKE_SOURCE_DIR}/tests/${name}.cpp ${ARGN})
    target_link_libraries(${name} PRIVATE quillmark_testsupport)
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
    add_test(NAME ${name} COMMAND ${name} WORKING_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
    set_tests_properties(${name} PROPERTIES
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;QMK_TEST_SOURCE_DIR=${CMAKE_SOURCE_DIR}"
        TIMEOUT 600)
endfunction()

file(GLOB QMK_TESTS CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/tests/Test*.cpp)
foreach(src ${QMK_TESTS})
    get_filename_component(test_name ${src} NAME_WE)
    quillmark_add_test(${test_name})
endforeach()
