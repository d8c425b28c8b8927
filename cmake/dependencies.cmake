# The libraries of others, out of build/deps and Debian's packages: third_party_headers,
# OpenSSL::Crypto, Threads::Threads, gtest, and benchmark on the host.
set(WEXPOL_DEPS ${PROJECT_SOURCE_DIR}/build/deps)
if(NOT EXISTS ${WEXPOL_DEPS}/sqlite3mc/sqlite3.c)
  message(FATAL_ERROR "Dependencies are missing. Run scripts/bootstrap, then configure again.")
endif()

# The engine without its key function would leave every file in the clear.
file(STRINGS ${WEXPOL_DEPS}/sqlite3mc/sqlite3.h key_function REGEX "int sqlite3_key\\(")
if(NOT key_function)
  message(FATAL_ERROR "The engine in ${WEXPOL_DEPS}/sqlite3mc has no sqlite3_key.")
endif()

# RapidJSON, CLI11 and the engine's header, without the rest of /usr/include.
add_library(third_party_headers INTERFACE)
target_include_directories(third_party_headers SYSTEM INTERFACE ${WEXPOL_DEPS}/include
                                                                ${WEXPOL_DEPS}/sqlite3mc)
target_compile_definitions(third_party_headers INTERFACE RAPIDJSON_SSE2)

if(WIN32)
  if(NOT EXISTS ${WEXPOL_DEPS}/openssl-mingw64/lib/libcrypto.a)
    message(FATAL_ERROR "libcrypto for Windows is missing. Run scripts/bootstrap.")
  endif()
  set(OPENSSL_ROOT_DIR ${WEXPOL_DEPS}/openssl-mingw64)
  set(OPENSSL_USE_STATIC_LIBS ON)
endif()
find_package(OpenSSL 3.0 REQUIRED COMPONENTS Crypto)
find_package(Threads REQUIRED)

if(PROJECT_IS_TOP_LEVEL)
  set(INSTALL_GTEST OFF)
  set(BUILD_GMOCK OFF)
  add_subdirectory(/usr/src/googletest third_party/googletest EXCLUDE_FROM_ALL SYSTEM)
endif()
if(PROJECT_IS_TOP_LEVEL AND NOT WIN32)
  find_package(benchmark)
endif()
