# How every file is compiled and linked: hard to misuse, the same bytes wherever it is built, and
# telling its version.

# Sanitizers do the same work otherwise.
if(NOT CMAKE_CXX_FLAGS MATCHES sanitize)
  add_compile_options(-fstack-protector-strong -ffile-prefix-map=${PROJECT_SOURCE_DIR}=.)
  if(NOT CMAKE_BUILD_TYPE STREQUAL "Debug")
    add_compile_options(-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
  endif()
  if(WIN32) # GCC has no control-flow guard.
    add_link_options(-fstack-protector-strong -Wl,--dynamicbase,--high-entropy-va,--nxcompat
                     -Wl,--no-insert-timestamp)
  else()
    add_compile_options(-fcf-protection=full -fstack-clash-protection)
    add_link_options(-Wl,-z,relro,-z,now,-z,noexecstack,-z,separate-code)
  endif()
endif()
include(CheckPIESupported)
check_pie_supported()

# Gives a library or program its version resource and, for the archives, puts its debug information
# into a file beside it. `file_type` is VFT_DLL or VFT_APP.
function(finish_binary target file_type file_description)
  if(WIN32)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/wexpol.rc.in ${target}.rc @ONLY)
    target_sources(${target} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
  endif()
  if(WEXPOL_ARCHIVE)
    set(file $<TARGET_FILE:${target}>)
    target_link_options(${target} PRIVATE -Wl,-Map=${PROJECT_BINARY_DIR}/${target}.map)
    add_custom_command(TARGET ${target} POST_BUILD
      COMMAND ${CMAKE_OBJCOPY} --only-keep-debug ${file} ${file}.debug
      COMMAND ${CMAKE_STRIP} ${file}
      COMMAND ${CMAKE_OBJCOPY} --add-gnu-debuglink=${file}.debug ${file})
  endif()
endfunction()
