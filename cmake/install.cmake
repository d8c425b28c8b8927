# What a host gets: the library, the headers of its interface with those they include, the schema,
# and a package for find_package(wexpol).
set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/wexpol)
set(header_folder ${CMAKE_INSTALL_INCLUDEDIR}/wexpol)

# Public are the headers of include/ and those of src/ that they include, directly or not.
set(public_headers "")
file(GLOB unread CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/include/*.h)
while(unread)
  list(POP_FRONT unread header)
  if(NOT EXISTS ${header}) # of another library
    continue()
  endif()
  list(APPEND public_headers ${header})
  file(STRINGS ${header} includes REGEX "^#include \"")
  list(TRANSFORM includes REPLACE "^#include \"(.*)\".*" "${CMAKE_SOURCE_DIR}/src/\\1")
  list(APPEND unread ${includes})
  list(REMOVE_DUPLICATES unread)
  list(REMOVE_ITEM unread ${public_headers})
endwhile()
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${public_headers})
target_sources(wexpol PUBLIC FILE_SET HEADERS
  BASE_DIRS ${CMAKE_SOURCE_DIR}/src ${CMAKE_SOURCE_DIR}/include FILES ${public_headers})
target_compile_features(wexpol INTERFACE cxx_std_17)

install(TARGETS wexpol EXPORT wexpol FILE_SET HEADERS DESTINATION ${header_folder})
install(FILES ${WEXPOL_DEPS}/sqlite3mc/sqlite3.h DESTINATION ${header_folder})
install(DIRECTORY ${WEXPOL_DEPS}/include/rapidjson/ DESTINATION ${header_folder}/rapidjson)
install(FILES schema/wexpol.sql DESTINATION ${CMAKE_INSTALL_DATADIR}/wexpol OPTIONAL)
if(TARGET wexpolctl)
  install(TARGETS wexpolctl)
endif()

include(CMakePackageConfigHelpers)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/wexpolConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/wexpolConfigVersion.cmake DESTINATION ${package_folder})
install(EXPORT wexpol FILE wexpolConfig.cmake NAMESPACE wexpol:: DESTINATION ${package_folder})
