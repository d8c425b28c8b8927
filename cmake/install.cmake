# What a host gets: the library, the headers of its interface with those they include, the schema,
# and a package for find_package(wexpol).
set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/wexpol)
set(header_folder ${CMAKE_INSTALL_INCLUDEDIR}/wexpol)

# Public are the headers of include/ and those of src/ that they include, directly or not.
set(public_headers "")
file(GLOB unread CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/include/*.h)
list(APPEND unread ${PROJECT_SOURCE_DIR}/src/wexpol/platform/testing.h) # for tests of hosts
while(unread)
  list(POP_FRONT unread header)
  if(NOT EXISTS ${header}) # of another library
    continue()
  endif()
  list(APPEND public_headers ${header})
  file(STRINGS ${header} includes REGEX "^#include \"")
  list(TRANSFORM includes REPLACE "^#include \"(.*)\".*" "${PROJECT_SOURCE_DIR}/src/\\1")
  list(APPEND unread ${includes})
  list(REMOVE_DUPLICATES unread)
  list(REMOVE_ITEM unread ${public_headers})
endwhile()
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${public_headers})
foreach(target wexpol wexpol_static)
  target_sources(${target} PUBLIC FILE_SET HEADERS
    BASE_DIRS ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR}/include FILES ${public_headers})
  target_compile_features(${target} INTERFACE cxx_std_17)
endforeach()

# A program on the archive links what the library was linked with.
if(WIN32)
  install(FILES ${WEXPOL_DEPS}/openssl-mingw64/lib/libcrypto.a DESTINATION ${CMAKE_INSTALL_LIBDIR}
          RENAME libwexpol-crypto.a)
  target_link_libraries(wexpol_static INTERFACE "$<INSTALL_INTERFACE:\
$<INSTALL_PREFIX>/${CMAKE_INSTALL_LIBDIR}/libwexpol-crypto.a;${WEXPOL_SYSTEM_LIBRARIES}>")
else()
  target_link_libraries(wexpol_static INTERFACE "$<INSTALL_INTERFACE:crypto>")
endif()

set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME wexpol)
install(TARGETS wexpol wexpol_static EXPORT wexpol FILE_SET HEADERS DESTINATION ${header_folder})
install(FILES ${WEXPOL_DEPS}/sqlite3mc/sqlite3.h DESTINATION ${header_folder})
install(DIRECTORY ${WEXPOL_DEPS}/include/rapidjson/ DESTINATION ${header_folder}/rapidjson)
install(FILES schema/wexpol.sql DESTINATION ${CMAKE_INSTALL_DATADIR}/wexpol)

include(CMakePackageConfigHelpers)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/wexpolConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/wexpolConfigVersion.cmake DESTINATION ${package_folder})
install(EXPORT wexpol FILE wexpolConfig.cmake NAMESPACE wexpol:: DESTINATION ${package_folder})
configure_file(cmake/wexpol.pc.in wexpol.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/wexpol.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
