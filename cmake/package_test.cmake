# Builds tests/package as a host would: in a project of its own, against an installed library.
file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/tests/package/*.cpp)
if(NOT sources)
  return()
endif()

include(ExternalProject)
set(stage ${CMAKE_BINARY_DIR}/stage)
add_custom_target(stage
  COMMAND ${CMAKE_COMMAND} -E rm -rf ${stage}/include
  COMMAND ${CMAKE_COMMAND} --install ${CMAKE_BINARY_DIR} --prefix ${stage} > ${stage}.log
  COMMENT "Installing into ${stage}")
add_dependencies(stage wexpol)
if(TARGET wexpolctl)
  add_dependencies(stage wexpolctl)
endif()

ExternalProject_Add(wexpol_package_test
  DEPENDS stage
  SOURCE_DIR ${CMAKE_SOURCE_DIR}/tests/package
  BINARY_DIR ${CMAKE_BINARY_DIR}/package
  CMAKE_CACHE_ARGS
    -DCMAKE_PREFIX_PATH:PATH=${stage}
    -DCMAKE_FIND_ROOT_PATH:PATH=${stage}
    -DCMAKE_TOOLCHAIN_FILE:FILEPATH=${CMAKE_TOOLCHAIN_FILE}
    -DCMAKE_CXX_COMPILER_LAUNCHER:STRING=${CMAKE_CXX_COMPILER_LAUNCHER}
    -DCMAKE_BUILD_TYPE:STRING=${CMAKE_BUILD_TYPE}
    -DCMAKE_C_FLAGS:STRING=${CMAKE_CXX_FLAGS}
    -DCMAKE_CXX_FLAGS:STRING=${CMAKE_CXX_FLAGS}
    -DCMAKE_CXX_FLAGS_DEBUG:STRING=${CMAKE_CXX_FLAGS_DEBUG}
  BUILD_ALWAYS ON
  INSTALL_COMMAND "")
add_test(NAME wexpol_package_test
  COMMAND ${CMAKE_CROSSCOMPILING_EMULATOR}
    ${CMAKE_BINARY_DIR}/package/wexpol_package_test${CMAKE_EXECUTABLE_SUFFIX}
    --gtest_output=xml:results/wexpol_package_test.xml)
