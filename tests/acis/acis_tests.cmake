# The ACIS binding's suites (tests/acis/test_*.cpp) and the second process
# of its cross-process test, built when the binding is. Included from
# tests/CMakeLists.txt so that the Windows (Wine) set-up applies to them.
add_library(xch_acis_test_support STATIC ${CMAKE_CURRENT_LIST_DIR}/acis_models.cpp)
target_link_libraries(xch_acis_test_support PUBLIC xch_test_support xch_api_acis)

add_executable(xch_acis_peer ${CMAKE_CURRENT_LIST_DIR}/xch_acis_peer.cpp)
target_link_libraries(xch_acis_peer PRIVATE xch_acis_test_support)

file(GLOB XCH_ACIS_TEST_SUITES CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/test_*.cpp)
foreach(src ${XCH_ACIS_TEST_SUITES})
  get_filename_component(name ${src} NAME_WE)
  add_executable(${name} ${src})
  target_link_libraries(${name} PRIVATE xch_acis_test_support GTest::gtest_main)
  add_dependencies(${name} xch_acis_peer)
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES TIMEOUT 300)
endforeach()
