# brenlow_layer(NAME DEPS...) — one static library per subsystem folder, built from
# every .cpp in it. Include paths are rooted at src/, so code writes
# #include "store/database.h".
function(brenlow_layer name)
  file(GLOB _sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  if(NOT _sources)
    add_library(brenlow_${name} INTERFACE)
    target_include_directories(brenlow_${name} INTERFACE ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(brenlow_${name} INTERFACE ${ARGN})
    return()
  endif()
  add_library(brenlow_${name} STATIC ${_sources})
  target_include_directories(brenlow_${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(brenlow_${name} PUBLIC ${ARGN})
endfunction()

# brenlow_test(NAME LIBS...) — one GoogleTest program per test folder tests/NAME.
function(brenlow_test name)
  file(GLOB _sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${name}/*.cpp)
  if(NOT _sources)
    return()
  endif()
  add_executable(test_${name} ${_sources})
  target_link_libraries(test_${name} PRIVATE ${ARGN} brenlow_test_support GTest::gtest GTest::gmock GTest::gtest_main)
  gtest_discover_tests(test_${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
    PROPERTIES ENVIRONMENT "BRENLOW_DATA_DIR=${PROJECT_BINARY_DIR}/data")
endfunction()
