# What an archive holds beyond an installation, and the debug information that goes beside it.
set(doc_folder ${CMAKE_INSTALL_DATADIR}/doc/wexpol)
install(TARGETS agent)
install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DATADIR}/wexpol)
install(DIRECTORY samples/console DESTINATION ${CMAKE_INSTALL_DATADIR}/wexpol/samples)
install(FILES README.md CHANGELOG.md SECURITY.md LICENSE.md DESTINATION ${doc_folder})
install(DIRECTORY docs DESTINATION ${doc_folder})

# The notices of what is linked in or compiled in.
install(FILES third_party/notices/engine.txt DESTINATION ${doc_folder}/notices)
set(parts libssl-dev rapidjson-dev libcli11-dev)
if(WIN32)
  list(APPEND parts gcc-mingw-w64-x86-64-posix-runtime mingw-w64-x86-64-dev)
else()
  list(APPEND parts libstdc++-12-dev)
endif()
foreach(part IN LISTS parts)
  install(FILES /usr/share/doc/${part}/copyright DESTINATION ${doc_folder}/notices RENAME ${part}.txt)
endforeach()

# The bill of materials is read from what the linker took.
add_custom_command(OUTPUT bom.json DEPENDS wexpol wexpolctl scripts/bom third_party/package-lock.json
  COMMAND ${PROJECT_SOURCE_DIR}/scripts/bom ${PROJECT_BINARY_DIR} ${PROJECT_VERSION} > bom.json)
add_custom_target(bom DEPENDS bom.json)
install(FILES ${PROJECT_BINARY_DIR}/bom.json DESTINATION ${doc_folder})

# The reference of the interface, out of the headers.
find_package(Doxygen 1.9 REQUIRED)
list(JOIN public_headers "\" \"" DOXYGEN_HEADERS)
configure_file(docs/Doxyfile.in Doxyfile @ONLY)
add_custom_command(OUTPUT reference/html/index.html
  DEPENDS ${public_headers} docs/Doxyfile.in docs/reference.md scripts/reference
  COMMAND ${PROJECT_SOURCE_DIR}/scripts/reference ${PROJECT_BINARY_DIR})
add_custom_target(reference DEPENDS reference/html/index.html)
install(DIRECTORY ${PROJECT_BINARY_DIR}/reference/html/ DESTINATION ${doc_folder}/reference)

# For Microsoft's linker: the names of the C interface and of the engine.
if(WIN32)
  find_program(LLVM_DLLTOOL llvm-dlltool REQUIRED)
  add_custom_command(OUTPUT wexpol.lib DEPENDS wexpol scripts/module-definition
    COMMAND ${PROJECT_SOURCE_DIR}/scripts/module-definition $<TARGET_FILE:wexpol> > wexpol.def
    COMMAND ${LLVM_DLLTOOL} -m i386:x86-64 -d wexpol.def -l wexpol.lib)
  add_custom_target(import_library DEPENDS wexpol.lib)
  install(FILES ${PROJECT_BINARY_DIR}/wexpol.lib ${PROJECT_BINARY_DIR}/wexpol.def
          DESTINATION ${CMAKE_INSTALL_LIBDIR})
endif()

# Beside the archive.
install(FILES $<TARGET_FILE:wexpolctl>.debug DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT debug)
if(WIN32)
  install(FILES $<TARGET_FILE:wexpol>.debug DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT debug)
else()
  install(FILES $<TARGET_FILE:wexpol>.debug DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT debug)
endif()
add_custom_command(TARGET wexpol_static POST_BUILD
  COMMAND ${CMAKE_STRIP} -D --strip-debug $<TARGET_FILE:wexpol_static>)

set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/same_date.cmake)
include(CPack)
